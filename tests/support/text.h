// Texts as tests write and look for them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace skv::test {

// Names or texts in the order in which they come.
using Lines = std::vector<std::string>;

// A line of a list file.
inline std::string line(const std::string& name, const std::string& folder) {
  return name + "\x01" + folder + "\r\n";
}

// Whether a text says so.
inline ::testing::AssertionResult holds(const std::string& text, const std::string& part) {
  if (text.find(part) != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "no \"" << part << "\" in \"" << text << "\"";
}

inline std::string withCrLf(const std::string& text) {
  std::string lines;
  std::size_t at = 0;
  for (std::size_t end; (end = text.find('\n', at)) != std::string::npos; at = end + 1)
    lines.append(text, at, end - at).append("\r\n");
  return lines.append(text, at);
}

// A line of a list file in print: "|" is the character of code 1, ";" that of code 5.
inline std::string coded(std::string text) {
  for (char& c : text)
    if (c == '|' || c == ';') c = c == '|' ? '\x01' : '\x05';
  return text;
}

}  // namespace skv::test
