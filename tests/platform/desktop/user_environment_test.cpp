// What belongs to the user: settings, folders and the one run.
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <future>

#include "platform/desktop/file_settings_store.h"
#include "platform/desktop/process_environment.h"
#include "platform/desktop/single_instance.h"
#include "support/disk_fixture.h"
#include "support/environment_variable.h"

namespace skv::test {

namespace fs = std::filesystem;

class UserEnvironmentTest : public DiskTest {
 protected:
  fs::perms mode(const std::string& path) const {
    return fs::status(onMachine(path)).permissions();
  }
};

TEST_F(UserEnvironmentTest, SettingsComeBackWhateverTheyHold) {
  const std::string file = onMachine("config/FSSkyvault/settings.ini");
  std::string everything;
  for (int c = 0; c < 256; ++c) everything += static_cast<char>(c);
  const std::string values[] = {
      "C:\\FS2002\\",      "",       " blanks ",   "a=b", "[General]", "; no comment",
      "line\r\nKey=other", "100%41", "\"quoted\"", "\\n", everything};
  for (const std::string& value : values) {
    FileSettingsStore store(file);
    EXPECT_TRUE(store.write("General", "Key", value).ok());
    EXPECT_TRUE(store.write("Ge[n]=;", value, "by name").ok());
    const FileSettingsStore later(file);
    EXPECT_EQ(later.read("GENERAL", "kEY", "never"), value);
    EXPECT_EQ(later.read("ge[n]=;", value, "never"), "by name");
    EXPECT_EQ(later.read("General", "Other", "never"), "never");
    EXPECT_EQ(later.read("Other", "Key", "never"), "never");
  }
  EXPECT_EQ(mode("config/FSSkyvault/settings.ini"), fs::perms(0600));
  EXPECT_EQ(mode("config/FSSkyvault"), fs::perms(0700));
}

TEST_F(UserEnvironmentTest, AWriteChangesOneLineOfAFileThatAnEditorHasSaved) {
  const std::string file = onMachine("settings.ini");
  FileSettingsStore store(file);
  EXPECT_TRUE(store.write("General", "FSRoot", "C:\\FS\\").ok());
  drive.write(
      "C:\\settings.ini",
      "\xEF\xBB\xBF; mine\r\n=\r\n[broken\n [ general ] \r\n\tFSRoot = C:\\FS 2002\\ \r\n"
      ";FSRoot=old\r\nwhat is this\r\nbad%zz=%4\r\n\r\n[Window] mine\r\nMainTop=1\r\nMainTop=2");
  const FileSettingsStore saved(file);
  EXPECT_EQ(saved.read("General", "FSRoot", ""), "C:\\FS 2002\\");
  EXPECT_EQ(saved.read("General", "bad%zz", ""), "%4");
  EXPECT_EQ(saved.read("Window", "MainTop", ""), "2") << "the last one holds";
  const StoredValue values[] = {{"General", "FSRoot", "D:\\"},
                                {"Window", "MainTop", "15"},
                                {"General", "HangarDir", " H"},
                                {"Mail", "Type", ""}};
  EXPECT_TRUE(store.writeTogether(values).ok());
  EXPECT_EQ(drive.read("C:\\settings.ini"),
            "\xEF\xBB\xBF; mine\r\n=\r\n[broken\n [ general ] \r\n\tFSRoot = D:\\ \r\n"
            ";FSRoot=old\r\nwhat is this\r\nbad%zz=%4\r\nHangarDir=%20H\r\n\r\n"
            "[Window] mine\r\nMainTop=1\r\nMainTop=15\r\n[Mail]\r\nType=\r\n");
}

TEST_F(UserEnvironmentTest, AFileWithoutASettingIsNoFirstStart) {
  for (const std::string& text :
       {std::string(9, '\0'), std::string("\xFF\xFE[\0G\0]\0\n\0k\0=\0v\0", 16),
        std::string("FSRoot=C:\\FS\\\n"), std::string("[General]\n;k=v\n")}) {
    drive.write("C:\\settings.ini", text);
    FileSettingsStore store(onMachine("settings.ini"));
    EXPECT_TRUE(holds(store.state().description(), "No setting can be made out")) << text;
    EXPECT_FALSE(store.write("General", "FSRoot", "C:\\").ok());
    EXPECT_EQ(drive.read("C:\\settings.ini"), text);
  }
  drive.write("C:\\settings.ini", "\r\n");
  EXPECT_TRUE(FileSettingsStore(onMachine("settings.ini")).state().ok());
}

TEST_F(UserEnvironmentTest, WhatCannotBeReadIsNotReplacedByLess) {
  const std::string file = onMachine("settings.ini");
  FileSettingsStore store(file);
  EXPECT_TRUE(store.write("Window", "MainTop", "15").ok());
  fs::remove(file);
  fs::create_directory(file);
  EXPECT_FALSE(store.write("Window", "MainTop", "30").ok());
  EXPECT_EQ(store.read("Window", "MainTop", ""), "15");
  EXPECT_TRUE(fs::is_directory(file));

  // Nor taken for empty; as soon as it can be read it is there.
  FileSettingsStore away(file);
  EXPECT_FALSE(away.state().ok());
  fs::remove(file);
  fs::create_symlink(onMachine("other.ini"), file);
  EXPECT_FALSE(away.state().ok()) << "a link to a disk that is away";
  EXPECT_FALSE(away.write("Window", "MainTop", "45").ok());
  drive.write("C:\\other.ini", "[General]\nFSRoot=C:\\FS\\\n");
  EXPECT_TRUE(away.state().ok());
  EXPECT_EQ(away.read("General", "FSRoot", ""), "C:\\FS\\");
  EXPECT_TRUE(FileSettingsStore(onMachine("none.ini")).state().ok()) << "a first start";
}

TEST_F(UserEnvironmentTest, TempIsAsItWasSetAndTheCacheIsPrivate) {
  const Variable cache("XDG_CACHE_HOME", onMachine("cache"));
  const std::string own = "C:\\cache\\FSSkyvault";
  const std::pair<std::string, std::string> cases[] = {{"", ""},
                                                       {"D:\\Temp\\", "D:\\Temp\\"},
                                                       {onMachine("Temp"), "C:\\Temp"},
                                                       {"/var/tmp", "Z:\\var\\tmp"},
                                                       {"/no:name", "/no:name"}};
  for (const auto& [set, TEMP] : cases) {
    const Variable variable("TEMP", set);
    EXPECT_EQ(processEnvironment(disk).TEMP, TEMP) << set;
    EXPECT_EQ(processEnvironment(disk).cacheFolder, own) << set;
  }
  EXPECT_EQ(mode("cache/FSSkyvault"), fs::perms(0700));
  if (::geteuid() != 0) return;
  // Somebody else's folder may be filled by somebody else.
  ASSERT_EQ(::chown(onMachine("cache/FSSkyvault").c_str(), 12, 34), 0);
  EXPECT_EQ(processEnvironment(disk).cacheFolder, "");
}

TEST_F(UserEnvironmentTest, DrivesAreFoundOrMade) {
  const Variable home("HOME", onMachine("home")), data("XDG_DATA_HOME", onMachine("data"));
  const Variable told("SKYVAULT_DRIVES", ""), prefix("WINEPREFIX", onMachine("prefix"));
  EXPECT_EQ(findDrivesFolder(), onMachine("data/FSSkyvault/dosdevices"));
  DriveFileSystem made(findDrivesFolder());
  EXPECT_TRUE(made.makeFolder("C:\\FS").ok());
  EXPECT_TRUE(fs::is_directory(onMachine("data/FSSkyvault/drive_c/FS")));
  EXPECT_TRUE(made.attributes("Z:\\").ok());
  fs::create_directories(onMachine("home/.wine/dosdevices"));
  EXPECT_EQ(findDrivesFolder(), onMachine("home/.wine/dosdevices"));
  fs::create_directories(onMachine("prefix/dosdevices"));
  EXPECT_EQ(findDrivesFolder(), onMachine("prefix/dosdevices"));
  ::setenv("SKYVAULT_DRIVES", drive.drives().c_str(), 1);
  EXPECT_EQ(findDrivesFolder(), drive.drives());
}

TEST_F(UserEnvironmentTest, OneRunAtATimeEvenAfterAKill) {
  const std::string folder = onMachine("run");
  int ready[2];
  ASSERT_EQ(::pipe(ready), 0);
  const pid_t other = ::fork();
  if (other == 0) {
    const auto run = SingleInstance::acquire(folder);
    if (::write(ready[1], run.ok() ? "1" : "0", 1) == 1) ::pause();
    ::_exit(0);
  }
  char got = 0;
  ASSERT_EQ(::read(ready[0], &got, 1), 1);
  EXPECT_EQ(got, '1');
  EXPECT_EQ(SingleInstance::acquire(folder).outcome().number(), SingleInstance::alreadyRunning);
  ::kill(other, SIGKILL);
  ::waitpid(other, nullptr, 0);
  EXPECT_TRUE(SingleInstance::acquire(folder).ok());
  ::close(ready[0]);
  ::close(ready[1]);
  drive.write("C:\\file", "");
  EXPECT_EQ(SingleInstance::acquire(onMachine("file")).outcome().number(), err::pathFileAccess);
}

TEST_F(UserEnvironmentTest, ASecondStartAsksTheFirstForItsWindow) {
  const std::string folder = onMachine("run");
  EXPECT_FALSE(SingleInstance::call(folder, std::chrono::milliseconds(0))) << "nobody is there";
  const auto first = SingleInstance::acquire(folder);
  ASSERT_TRUE(first.ok());
  EXPECT_FALSE(SingleInstance::call(folder, std::chrono::milliseconds(0))) << "it hangs";
  EXPECT_TRUE(first.value().answerCall()) << "and answers late";
  const Variable token("XDG_ACTIVATION_TOKEN", "leave");
  auto second = std::async(std::launch::async, [&folder] {
    return SingleInstance::call(folder, std::chrono::minutes(1));
  });
  pollfd come{first.value().calls(), POLLIN, 0};
  ASSERT_EQ(::poll(&come, 1, 60000), 1);
  EXPECT_EQ(first.value().answerCall(), "leave");
  EXPECT_TRUE(second.get());
}

TEST_F(UserEnvironmentTest, TheLockLiesWhereTheSettingsLie) {
  const Variable config("XDG_CONFIG_HOME", onMachine("config"));
  const Variable login("XDG_RUNTIME_DIR", onMachine("run1"));
  const auto first = SingleInstance::acquire();
  ASSERT_TRUE(first.ok());
  const Variable other("XDG_RUNTIME_DIR", onMachine("run2"));
  EXPECT_EQ(SingleInstance::acquire().outcome().number(), SingleInstance::alreadyRunning);
}

}  // namespace skv::test
