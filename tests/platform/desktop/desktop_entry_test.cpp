#include "platform/desktop/desktop_entry.h"

#include <sstream>

#include "support/disk_fixture.h"
#include "support/environment_variable.h"

namespace skv::test {

using Words = std::vector<std::string>;

TEST(DesktopEntryTest, TheCodesOfACommandStandForWhatTheyName) {
  const std::string document = "/home/u/My Sim/Scenery.cfg";
  const std::pair<const char*, Words> cases[] = {
      {"gedit", {"gedit", document}},
      {"gedit %U", {"gedit", document}},
      {"/opt/edit --new %f -x", {"/opt/edit", "--new", document, "-x"}},
      {"edit --file=%u", {"edit", "--file=" + document}},
      {"edit %F 100%% %d%N", {"edit", document, "100%"}},
      {"edit %i -t %c %k %f", {"edit", "--icon", "pen", "-t", "My Editor", "/x.desktop", document}},
      {R"("/opt/my edit/e" "a \\"b\\" \\$c" "" %f)",
       {"/opt/my edit/e", "a \"b\" $c", "", document}},
      {"edit\\s%f", {"edit", document}},
      {"\"edit %f", {}},
      {"", {}}};
  for (const auto& [exec, words] : cases) {
    std::istringstream text(
        "[Desktop Action new]\nExec=other\n[Desktop Entry]\nName=My Editor\n"
        "Icon = pen\nExec=" +
        std::string(exec) + "\n[Desktop Action old]\nExec=other\n");
    EXPECT_EQ(commandFor(readDesktopEntry(text, "/x.desktop"), document), words) << exec;
  }
  EXPECT_EQ(commandFor({.Exec = "edit %i %f"}, document), (Words{"edit", document})) << "no icon";
}

class DesktopEntryFinderTest : public DiskTest {};

TEST_F(DesktopEntryFinderTest, TheUsersOwnEntryComesFirst) {
  const Variable home("XDG_DATA_HOME", onMachine("home"));
  const Variable machine("XDG_DATA_DIRS", onMachine("none") + ":" + onMachine("usr"));
  drive.write("C:\\usr\\applications\\e.desktop", "[Desktop Entry]\nExec=theirs\nTerminal=true\n");
  EXPECT_EQ(findDesktopEntry("e.desktop").Exec, "theirs");
  EXPECT_TRUE(findDesktopEntry("e.desktop").Terminal);
  drive.write("C:\\home\\applications\\e.desktop", "[Desktop Entry]\nExec=mine\n");
  EXPECT_EQ(findDesktopEntry("e.desktop").Exec, "mine");
  EXPECT_EQ(findDesktopEntry("other.desktop").Exec, "");
}

}  // namespace skv::test
