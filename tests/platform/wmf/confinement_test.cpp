// What the program that draws metafiles may do at all.
#include <gtest/gtest.h>
#include <linux/landlock.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <string>

namespace skv::test {

TEST(ConfinementTest, ReadsFontsAndNothingElse) {
  const std::string command =
      ATTEMPTS_PROGRAM " /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf; echo ended with $?";
  std::FILE* const output = ::popen(command.c_str(), "r");
  ASSERT_TRUE(output);
  std::string done;
  for (int c = 0; (c = std::fgetc(output)) != EOF;) done.push_back(static_cast<char>(c));
  ::pclose(output);
  const bool keepsToFonts =
      ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
  EXPECT_EQ(done, std::string(keepsToFonts ? "font\n" : "") + "ended with 0\n");
}

}  // namespace skv::test
