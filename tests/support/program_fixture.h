// A whole run of the program over a real disk, with scripted windows.
#pragma once

#include <map>
#include <type_traits>

#include "core/app.h"
#include "platform/desktop/qt_pictures.h"
#include "platform/zip/libzip_zipit.h"
#include "support/disk_fixture.h"
#include "support/metafile_program.h"
#include "support/scripted_desktop.h"
#include "support/scripted_mail.h"
#include "support/scripted_windows.h"
#include "support/text.h"
#include "ui/events.h"
#include "ui/startup.h"

namespace skv::test {

// Settings for the length of one test.
class MemorySettings : public SettingsStore {
 public:
  Outcome state() override {
    if (failedReads == 0) return {};
    --failedReads;
    return Outcome::failure(err::deviceIo, "settings.ini");
  }
  std::string read(std::string_view section, std::string_view key,
                   std::string_view fallback) const override {
    const auto found = values.find(std::string(section) + "/" + std::string(key));
    return found == values.end() ? std::string(fallback) : found->second;
  }
  Outcome writeTogether(std::span<const StoredValue> stored) override {
    bool fails = false;
    for (const auto& [section, key, value] : stored) {
      const std::string name = std::string(section) + "/" + std::string(key);
      values[name] = value;
      fails = fails || name == failedWrite;
    }
    if (fails) failedWrite.clear();
    return fails ? Outcome::failure(err::diskFull, "settings.ini") : Outcome();
  }
  std::map<std::string, std::string> values;  // by "section/key"
  int failedReads = 0;                        // looks at state() that fail from now on
  // The value whose next write fails. It is stored all the same, as when its folder cannot be
  // flushed.
  std::string failedWrite;
};

class FixedClock : public Clock {
 public:
  double now() const override { return 46350.5; }
};

class RecordingShell : public Shell {
 public:
  int open(std::string_view target) override {
    opened.emplace_back(target);
    return 33;
  }
  bool hasProgramFor(std::string_view mediaType) override {
    return wordProcessor || mediaType == "text/html";
  }
  Outcome editText(std::string_view path) override {
    edited.emplace_back(path);
    return {};
  }
  std::vector<std::string> opened, edited;
  bool wordProcessor = true;
};

// Drive C: holds a simulator at C:\FS\ with the Hangar C:\Hangar\, the Packages C:\Packs\ and
// C:\Temp\.
template <class Windows>
class ProgramWith : public DiskTest {
 protected:
  ProgramWith() {
    for (const char* folder :
         {"C:\\FS", "C:\\FS\\aircraft", "C:\\FS\\Gauges", "C:\\FS\\Sound", "C:\\FS\\Texture",
          "C:\\FS\\Effects", "C:\\Packs", "C:\\Temp", "C:\\Temp\\SKVInstallTemp"})
      EXPECT_TRUE(disk.makeFolder(folder).ok()) << folder;
    drive.write("C:\\FS\\Scenery.cfg", "[General]\r\nTitle=FS World Scenery\r\n");
    app.FSRoot = "C:\\FS\\";
    app.HangarDir = "C:\\Hangar\\";
    app.PacksDir = "C:\\Packs\\";
    app.TempDir = "C:\\Temp\\";
    app.InstallTempDir = "C:\\Temp\\SKVInstallTemp\\";
    connectEvents(app);
  }
  // As an earlier run has left them.
  void storeSettings() {
    settings.values = {{"General/FSRoot", app.FSRoot},
                       {"General/HangarDir", app.HangarDir},
                       {"General/PacksDir", app.PacksDir},
                       {"General/AppVersion", versionText()}};
  }
  static Windows windowsOver(FileSystem& files, PictureReader& pictures) {
    if constexpr (std::is_constructible_v<Windows, FileSystem&, PictureReader&>)
      return Windows(files, pictures);
    else
      return Windows();
  }

  MemorySettings settings;
  FixedClock clock;
  RecordingShell shell;
  LibzipEngine zip{CodePage(1252)};
  QtPictureReader pictures{files, metafileProgram()};
  ScriptedClipboard clipboard;
  ScriptedScreen screen;
  ScriptedMail mail;
  MemorySecrets secrets;
  ScriptedWeb web;
  ScriptedSimulators simulators;
  Windows windows = windowsOver(files, pictures);
  App app{Platform{files,
                   settings,
                   clock,
                   shell,
                   zip,
                   pictures,
                   clipboard,
                   screen,
                   mail,
                   secrets,
                   web,
                   simulators,
                   {"C:\\Program\\", "C:\\Temp"}},
          windows};
};

class ProgramTest : public ProgramWith<ScriptedWindows> {
 protected:
  // One row of a list, as "name|folder".
  static std::vector<std::string> rows(const ui::ListView& list) {
    std::vector<std::string> result;
    for (int row = 1; row <= list.count(); ++row)
      result.push_back(list.text(row) + "|" + list.subItem(row, 1));
    return result;
  }
  void put(const std::vector<std::string>& paths) const {
    for (const std::string& path : paths) drive.write(path, "x");
  }
  // The user was told one thing since the last such look.
  void expectTold(const std::string& part) {
    EXPECT_EQ(windows.boxes.size(), 1U);
    EXPECT_TRUE(!windows.boxes.empty() && holds(windows.boxes.back().text, part));
    windows.boxes.clear();
  }
  // The window takes input again and the pointer is normal.
  void expectIdle() {
    EXPECT_TRUE(app.frmMain.enabled);
    EXPECT_TRUE(windows.pointers.empty() || windows.pointers.back() == ui::Pointer::normal);
  }
  void click(auto& control, const std::string& told = "") {
    ui::raise(control.click);
    if (!told.empty()) expectTold(told);
  }
  // Answers how many questions there were.
  std::size_t answer(auto& control, std::deque<ui::Answer> answers) {
    windows.boxes.clear();
    windows.answers = std::move(answers);
    click(control);
    return windows.boxes.size();
  }
  void select(ui::ListView& list, int row) {
    list.select(row);
    ui::raise(list.itemClick);
  }
  // Does it at each yield at which the status line begins so.
  void duringYields(const std::string& status, std::function<void()> does) {
    windows.onYield = [this, status, does = std::move(does)] {
      if (form.lblStatus.caption.get().starts_with(status)) does();
    };
  }
  // Picks a folder in the dialog for one, whenever it comes up.
  void picks(const std::string& folder) {
    app.frmMain.visible = true;
    windows.onShow[&app.frmDirSelect] = [this, folder] {
      app.frmDirSelect.txtDir.text = folder;
      ui::raise(app.frmDirSelect.btnOK.click);
    };
  }

  const ui::Answer yes = ui::Answer::yes, no = ui::Answer::no;
  ui::FrmMain& form = app.frmMain;
};

}  // namespace skv::test
