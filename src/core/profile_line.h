// The lines of a profile file: where they end and what one says. All take the file's 8-bit text,
// and give views of it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace skv {

// Ctrl-Z, which old tools write at the end of a file. To the system call it is a blank.
inline constexpr char endOfFileMark = '\x1a';

std::string_view trimBlanks(std::string_view text);
std::string_view trimLeadingBlanks(std::string_view text);
// The system call's texts are closed by a NUL.
std::string_view untilNul(std::string_view text);
// The text between one pair of like quotes.
std::string_view withoutQuotes(std::string_view value);
// Text that can stand within a line: a line break in it, which would begin a line of its own, is a
// blank.
std::string oneLine(std::string_view text);

// The lines with their ends, together the whole text. An end-of-file mark behind the last line is
// a line of its own, so that what is added there stands before it.
std::vector<std::string_view> splitLines(std::string_view text);
// CR LF, LF or CR; empty at a line that lacks its end.
std::string_view lineEnd(std::string_view line);

// A line `key=value`. Both views are empty at their places when there is nothing.
struct KeyLine {
  std::string_view name;   // with what stands behind a NUL, which the call passes over
  std::string_view value;  // with its quotes
  bool hasEquals = false;
};
KeyLine partsOf(std::string_view line);

}  // namespace skv
