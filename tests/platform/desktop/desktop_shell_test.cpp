#include "platform/desktop/desktop_shell.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <thread>

#include "platform/desktop/single_instance.h"
#include "platform/disk/drive_file_system.h"
#include "support/environment_variable.h"
#include "support/temporary_drive.h"

namespace skv {
namespace {

namespace fs = std::filesystem;
using test::Variable;

class DesktopShellTest : public ::testing::Test {
 protected:
  std::string native(const std::string& path) const { return drive.native() + "/" + path; }
  // A program of the desktop.
  void program(const std::string& name, const std::string& script) {
    drive.write("C:\\bin\\" + name, "#!/bin/sh\n" + script + "\n");
    fs::permissions(native("bin/" + name), fs::perms::owner_all);
  }
  // One that tells a text of the shell in C:\told, whole when it is there.
  void teller(const std::string& name, const std::string& text, const std::string& then = "") {
    program(name, "echo \"" + text + "\" > '" + native("t") + "'; /bin/mv '" + native("t") + "' '" +
                      native("told") + "'" + then);
  }
  // What was told since the last look, waited for.
  std::string told() const {
    for (int i = 0; i < 500 && !drive.exists("C:\\told"); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::string text = drive.read("C:\\told");
    drive.remove("C:\\told");
    return text;
  }

  test::TemporaryDrive drive;
  DriveFileSystem disk{drive.drives()};
};

TEST_F(DesktopShellTest, OpeningTellsWhatTheDesktopTells) {
  const Variable path("PATH", native("bin"));
  DesktopShell shell(disk);
  drive.write("C:\\Docs\\a b;$(x).doc", "");
  EXPECT_EQ(shell.open("C:\\docs\\A b;$(x).doc"), 31) << "no opener";
  teller("xdg-open", "$#:$1");
  EXPECT_EQ(shell.open("C:\\docs\\A b;$(x).doc"), 33);
  EXPECT_EQ(told(), "1:" + native("Docs/a b;$(x).doc") + "\n");
  EXPECT_EQ(shell.open("http://example.org/?a=b&c"), 33);
  EXPECT_EQ(told(), "1:http://example.org/?a=b&c\n");
  EXPECT_EQ(shell.open("C:\\docs\\none.doc"), 2);
  EXPECT_EQ(shell.open("C:\\none\\none.doc"), 3);
  program("xdg-open", "exit 3");
  EXPECT_EQ(shell.open("C:\\docs\\a b;$(x).doc"), 31);

  // An opener that stays neither keeps this program waiting nor its lock.
  teller("xdg-open", "$$", "; exec /bin/sleep 100");
  std::optional<Result<SingleInstance>> run = SingleInstance::acquire(native("run"));
  ASSERT_TRUE(run->ok());
  EXPECT_EQ(shell.open("mailto:a@b"), 33);
  run.reset();
  EXPECT_TRUE(SingleInstance::acquire(native("run")).ok());
  EXPECT_EQ(::kill(std::stoi(told()), SIGKILL), 0);
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "no child is left behind";
}

TEST_F(DesktopShellTest, TheTextEditorIsTheDesktops) {
  const Variable path("PATH", native("bin")), data("XDG_DATA_HOME", native("share"));
  const Variable others("XDG_DATA_DIRS", "/nowhere");
  DesktopShell shell(disk);
  EXPECT_EQ(shell.editText("C:\\FS\\Aircraft.cfg").number(), err::fileNotFound);
  teller("kate", "kate $@");
  EXPECT_TRUE(shell.editText("C:\\FS\\Aircraft.cfg").ok()) << "whether the file is there or not";
  EXPECT_EQ(told(), "kate " + native("FS/Aircraft.cfg") + "\n");
  teller("edit", "edit $@");
  program("xdg-mime", "echo my.desktop");
  drive.write("C:\\share\\applications\\my.desktop",
              "[Desktop Action new]\nExec=kate\n[Desktop Entry]\nExec=edit --new %f\n");
  EXPECT_TRUE(shell.editText("C:\\FS\\Aircraft.cfg").ok());
  EXPECT_EQ(told(), "edit --new " + native("FS/Aircraft.cfg") + "\n");
}

TEST(DesktopCommandTest, FieldCodesGiveWayToTheFile) {
  using Words = std::vector<std::string>;
  const struct {
    const char* exec;
    Words words;
  } cases[] = {
      {"gedit %U", {"gedit", "/a b"}},
      {"gedit", {"gedit", "/a b"}},
      {"\"/opt/my editor\" --title \"50%% \\\"x\\\" \\$\" %f",
       {"/opt/my editor", "--title", "50% \"x\" $", "/a b"}},
      {"kate -b %i %c %k %F", {"kate", "-b", "/a b"}},
      {"edit --file=%f", {"edit", "--file=/a b"}},
      {"\"never closed", {}},
      {"", {}},
  };
  for (const auto& [exec, words] : cases) EXPECT_EQ(desktopCommand(exec, "/a b"), words) << exec;
}

}  // namespace
}  // namespace skv
