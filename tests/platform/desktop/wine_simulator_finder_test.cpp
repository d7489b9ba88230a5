#include "platform/desktop/wine_simulator_finder.h"

#include <sys/stat.h>

#include <algorithm>
#include <future>

#include "platform/desktop/timed_search.h"
#include "support/disk_fixture.h"
#include "support/environment_variable.h"

namespace skv::test {

using namespace std::chrono_literals;
using namespace std::string_literals;

const std::string registryHead = "WINE REGISTRY Version 2\n;; All keys relative to \\\\Machine\n\n";

// A home on drive C: of the test, and the prefixes in it.
class WineSimulatorFinderTest : public DiskTest {
 protected:
  WineSimulatorFinderTest() {
    drive.write("C:\\home\\.bashrc", "");
    prefix("home\\.wine");
  }
  // Makes a prefix, whose drive C: is its drive_c.
  void prefix(const std::string& folder) {
    drive.write("C:\\" + folder + "\\drive_c\\windows\\win.ini", "");
    drive.write("C:\\" + folder + "\\dosdevices\\x", "");
    drive.link("C:\\" + folder + "\\dosdevices\\c:", "C:\\" + folder + "\\drive_c");
  }
  void simulator(const std::string& folder) { drive.write("C:\\" + folder + "\\Scenery.cfg", ""); }

  Variable home{"HOME", onMachine("home")};
  Variable wine{"WINEPREFIX", ""};
  Variable config{"XDG_CONFIG_HOME", ""};
  Variable data{"XDG_DATA_HOME", ""};
};

TEST_F(WineSimulatorFinderTest, FindsWhatTheLaunchersKeep) {
  const Lines places = {
      "home\\Games\\one", "home\\.local\\share\\bottles\\bottles\\Old games",
      "home\\.PlayOnLinux\\wineprefix\\fs",
      "home\\.local\\share\\Steam\\steamapps\\compatdata\\4711\\pfx",
      "home\\.var\\app\\com.usebottles.bottles\\data\\bottles\\bottles\\b",
      "home\\Games\\Heroic\\Prefixes\\own", "home\\Games\\Heroic\\Prefixes\\default\\fs\\pfx",
      "home\\Games\\umu\\umu-default", "home\\.var\\app\\org.winehq.Wine\\data\\wine",
      "home\\.var\\app\\com.playonlinux.PlayOnLinux4\\.PlayOnLinux\\wineprefix\\fs",
      // Named by a file of Lutris, of Bottles, of Heroic, of Steam.
      "elsewhere\\lutris fs", "elsewhere\\program", "runner", "games\\made", "my bottles\\b",
      "heroic\\named", "heroic\\new\\fs", "disk\\SteamLibrary\\steamapps\\compatdata\\1\\pfx"};
  for (const std::string& place : places) {
    prefix(place);
    simulator(place + "\\drive_c\\program files\\MICROSOFT GAMES\\fs2002");
  }
  drive.write("C:\\home\\.config\\lutris\\games\\fs-1.yml",
              "game:\n  exe: x\n  prefix: '" + onMachine("elsewhere/lutris fs") + "'\n");
  drive.write("C:\\home\\.local\\share\\lutris\\games\\fs-2.yml",
              "game:\n  exe: " + onMachine("elsewhere/program/drive_c/fs2002/fs2002.exe") + "\n");
  drive.write("C:\\home\\.local\\share\\lutris\\runners\\wine.yml",
              "game:\n  prefix: ~/../runner\n");
  drive.write("C:\\home\\.config\\lutris\\system.yml",
              "system:\n  game_path: " + onMachine("games"));
  drive.write("C:\\home\\.local\\share\\bottles\\data.yml",
              "custom_bottles_path: \"" + onMachine("my bottles") + "\"\n");
  const std::string heroic = "C:\\home\\.var\\app\\com.heroicgameslauncher.hgl\\config\\heroic\\";
  drive.write(heroic + "GamesConfig\\fs.json",
              "{\"fs\":{\"autoSync\":true,\"winePrefix\":\"" + onMachine("heroic/named") + "\"}}");
  drive.write(heroic + "config.json",
              "{\n  \"defaultWinePrefix\": \"" + onMachine("heroic/new") + "\",\n}");
  drive.write("C:\\home\\.local\\share\\Steam\\steamapps\\libraryfolders.vdf",
              "\"libraryfolders\"\n{\n\t\"1\"\n\t{\n\t\t\"path\"\t\t\"" +
                  onMachine("disk/SteamLibrary") + "\"\n");
  auto found = WineSimulatorFinder(drive.drives()).find();
  Lines expected;
  for (const std::string& place : places)
    expected.push_back("C:\\" + place + "\\drive_c\\program files\\MICROSOFT GAMES\\fs2002\\");
  std::sort(found.begin(), found.end());
  std::sort(expected.begin(), expected.end());
  EXPECT_EQ(found, expected);
}

TEST_F(WineSimulatorFinderTest, AsksTheRegistryFirst) {
  simulator("Games\\Flight Simulator 2002");  // on the program's own drive
  simulator("home\\.wine\\drive_c\\Spiele\\Flug\u00fcbungen");
  drive.write(
      "C:\\home\\.wine\\system.reg",
      registryHead +
          "[Software\\\\Microsoft\\\\Microsoft Games\\\\Flight Simulator\\\\7.0] 1\n"
          "\"EXE Path\"=\"C:\\\\windows\"\n\n"
          "[Software\\\\Wow6432Node\\\\microsoft\\\\Microsoft Games\\\\Flight Simulator\\\\8.0] 1\n"
          "#time=1\n@=\"none\"\n\"App\"=dword:00000001\n"
          "\"exe path\"=\"c:\\\\Spiele\\\\Flug\\x00fcbungen\0rest\"\n"s);
  EXPECT_EQ(WineSimulatorFinder(drive.drives()).find(),
            (Lines{"C:\\home\\.wine\\drive_c\\Spiele\\Flug\u00fcbungen\\",
                   "C:\\Games\\Flight Simulator 2002\\"}));
}

TEST_F(WineSimulatorFinderTest, IsNotLedAstray) {
  prefix("home\\Games\\p");
  // The folder is gone, the file is cut, no registry at all, a loop of links, a pipe.
  drive.write("C:\\home\\.wine\\system.reg",
              registryHead +
                  "[Software\\\\Microsoft\\\\Microsoft Games\\\\Flight Simulator\\\\8.0] 1\n"
                  "\"EXE Path\"=\"C:\\\\gone\\\\\"\n");
  for (const char* text : {"[", "\n[Software\\\\",
                           "WINE REGISTRY\n[Software\\\\Microsoft\\\\Microsoft "
                           "Games\\\\Flight Simulator\\\\8.0]\n\"EXE Path\"=\"C:\\\\\\x"}) {
    drive.write("C:\\home\\Games\\p\\system.reg", text);
    EXPECT_TRUE(WineSimulatorFinder(drive.drives()).find().empty()) << text;
  }
  drive.link("C:\\home\\Games\\loop", "loop");
  ASSERT_EQ(mkfifo(onMachine("home/.wine-pipe").c_str(), 0600), 0);
  EXPECT_TRUE(WineSimulatorFinder(drive.drives()).find().empty());
}

// As behind a share whose server is away.
TEST(TimedSearchTest, GivesUpWhatDoesNotAnswer) {
  std::promise<void> server;
  auto answers = server.get_future().share();
  const auto found = foundInTime<std::string>(20ms, [answers](const Tell<std::string>& tell) {
    tell("before");
    answers.wait();
    tell("after");
  });
  EXPECT_EQ(found, Lines{"before"});
  server.set_value();
  // One that ends is not waited for beyond that.
  EXPECT_EQ(foundInTime<std::string>(24h, [](const Tell<std::string>& tell) { tell("all"); }),
            Lines{"all"});
}

}  // namespace skv::test
