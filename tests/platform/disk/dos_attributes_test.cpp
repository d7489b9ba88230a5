#include "platform/disk/dos_attributes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace skv {
namespace {

std::string bytes(std::initializer_list<int> values) {
  std::string result;
  for (const int value : values) result += static_cast<char>(value);
  return result;
}

TEST(DosAttributesTest, ReadsTheFormsOfWineAndSamba) {
  const std::pair<std::string, unsigned> values[] = {
      {"0x22", dos::hidden | dos::archive},
      {"0x6", dos::hidden | dos::system},
      {std::string("0x2\0", 4), dos::hidden},
      {"0x1", 0},  // read-only is the permissions' business
      // Version 3 after a text: that one is older and the same.
      {"0x20" + bytes({0, 0, 3, 0, 3, 0, 0, 0, 0x11, 0, 0, 0, 0x20, 0, 0, 0}), dos::archive},
      {bytes({0, 0, 3, 0, 3, 0, 0, 0, 0x11, 0, 0, 0, 0x26, 0, 0, 0}),
       dos::hidden | dos::system | dos::archive},
      {bytes({0, 0, 4, 0, 4, 0, 0, 0, 0x51, 0, 0, 0, 0x02, 0, 0, 0, 9, 9}), dos::hidden},
      {bytes({0, 0, 4, 0, 4, 0, 0, 0, 0x50, 0, 0, 0, 0x02, 0, 0, 0}), 0},  // not valid
      {bytes({0, 0, 2, 0, 2, 0, 0, 0, 0x11, 0, 0, 0, 0x02, 0, 0, 0}), 0},  // other layout
      {bytes({0, 0, 4, 0, 4, 0, 0, 0, 0x51, 0, 0, 0, 0x02}), 0},           // cut off
      {"", 0},
      {"22", 0},
      {"0xzz", 0},
  };
  for (const auto& [stored, bits] : values) EXPECT_EQ(dosBitsOf(stored), bits) << stored;
}

}  // namespace
}  // namespace skv
