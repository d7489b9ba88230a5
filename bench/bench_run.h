// A run of the program on drives of its own: what the benches measure.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

#include "core/app.h"
#include "platform/desktop/keychain_secrets.h"
#include "platform/desktop/lazy_net.h"
#include "platform/desktop/qt_clipboard.h"
#include "platform/desktop/qt_pictures.h"
#include "platform/desktop/wine_simulator_finder.h"
#include "platform/disk/drive_file_system.h"
#include "platform/x11/x11_screen.h"
#include "platform/zip/libzip_zipit.h"
#include "sample/sample_simulator.h"
#include "support/scripted_windows.h"
#include "ui/events.h"
#include "ui/views.h"

namespace skv::bench {

class MemorySettings : public SettingsStore {
 public:
  std::string read(std::string_view section, std::string_view key,
                   std::string_view fallback) const override {
    const auto found = values_.find(std::string(section) + "/" + std::string(key));
    return found == values_.end() ? std::string(fallback) : found->second;
  }
  Outcome writeTogether(std::span<const StoredValue> values) override {
    for (const auto& [section, key, value] : values)
      values_[std::string(section) + "/" + std::string(key)] = value;
    return {};
  }

 private:
  std::map<std::string, std::string> values_;
};

class FixedClock : public Clock {
 public:
  double now() const override { return 37614.75; }
};

class NoShell : public Shell {
 public:
  int open(std::string_view) override { return 33; }
  bool hasProgramFor(std::string_view) override { return true; }
  Outcome editText(std::string_view) override { return {}; }
};

// Before a QApplication: a machine without a screen measures the offscreen window, which draws all
// the same.
inline void useOffscreenWithoutScreen() {
  if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr)
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
}

// Windows for runs that measure the operations alone.
class NoWindows : public test::ScriptedWindows {
 public:
  NoWindows(const FileSystem&, const PictureReader&) {}
};

// Folders C:\FS\, C:\Hangar\, C:\Library\, C:\Packs\ and C:\Temp\ below `folder`/drive_c, made
// where they are missing; Z: is the whole disk. The aircraft view of the simulator is set, no list
// is loaded.
template <class Windows = NoWindows>
class BenchRun {
 public:
  explicit BenchRun(const std::filesystem::path& folder)
      : driveC_(folder / "drive_c"), disk((makeDrivesIn(folder) / "dosdevices").string()) {
    for (const char* name :
         {"FS/aircraft", "FS/Gauges", "FS/Sound", "FS/Texture", "FS/Effects", "Hangar/Aircraft",
          "Hangar/Main", "Packs/Scenery", "Library/Scenery", "Library/Main", "Temp/SKVInstallTemp"})
      std::filesystem::create_directories(driveC_ / name);
    app.FSRoot = app.ListDir = "C:\\FS\\";
    app.ACRoot = "C:\\FS\\aircraft\\";
    app.HangarDir = "C:\\Hangar\\";
    app.PacksDir = "C:\\Packs\\";
    app.SceneryPacksPath = "C:\\Packs\\Scenery\\";
    app.SceneryLib = "C:\\Library\\";
    app.TempDir = "C:\\Temp\\";
    app.InstallTempDir = "C:\\Temp\\SKVInstallTemp\\";
    connectEvents(app);
  }

  const std::filesystem::path& driveC() const { return driveC_; }

 private:
  static const std::filesystem::path& makeDrivesIn(const std::filesystem::path& folder) {
    sample::makeDrives(folder);
    return folder;
  }

  std::filesystem::path driveC_;

 public:
  DriveFileSystem disk;
  MemorySettings settings;
  FixedClock clock;
  NoShell shell;
  LibzipEngine zip{CodePage(1252)};
  QtPictureReader pictures{disk};
  QtClipboard clipboard;
  X11Screen screen;
  LazyNet net;
  KeychainSecrets secrets;
  WineSimulatorFinder simulators{(driveC_.parent_path() / "dosdevices").string()};
  Windows windows{disk, pictures};
  App app{Platform{disk,
                   settings,
                   clock,
                   shell,
                   zip,
                   pictures,
                   clipboard,
                   screen,
                   net,
                   secrets,
                   net,
                   simulators,
                   {"C:\\Program\\", "C:\\Temp"}},
          windows};
};

// A folder of its own on disk, gone with the object. SKYVAULT_BENCH_DIR chooses the disk.
class ScratchFolder {
 public:
  ScratchFolder() {
    const char* chosen = std::getenv("SKYVAULT_BENCH_DIR");
    std::string name =
        (std::filesystem::path(chosen ? chosen : "/var/tmp") / "skyvault-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no folder for the bench");
    path_ = name;
  }
  ~ScratchFolder() { std::filesystem::remove_all(path_); }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace skv::bench
