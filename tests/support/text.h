// Texts as tests write and look for them.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace skv::test {

// A line of a list file.
inline std::string line(const std::string& name, const std::string& folder) {
  return name + "\x01" + folder + "\r\n";
}

// Whether a text says so.
inline ::testing::AssertionResult holds(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "no \"" << part << "\" in \"" << text << "\"";
}

}  // namespace skv::test
