// Text as the program holds it: UTF-8 std::string. Bytes that are no UTF-8 (file names of older
// systems) pass through every function here as they are.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace skv {

// Whether the bytes are well-formed UTF-8 throughout.
bool isUtf8(std::string_view bytes);

// Upper case by Unicode's simple (one to one) mapping, the one by which names match without regard
// to case. Never changes the number of characters.
std::string upper(std::string_view text);
// The same for the letters A to Z alone; for comparisons with fixed words.
std::string lowerAscii(std::string_view text);

// Letters and accents that stand apart put together, where Unicode has one character for them
// (NFC). A text with more accents in a row than any letter has stays as it is.
std::string composed(std::string_view text);

bool equalsIgnoringCase(std::string_view a, std::string_view b);

// Always one piece more than there are separators: split("a\\", '\\') is {"a", ""}.
std::vector<std::string> split(std::string_view text, char separator);
// Blanks off both ends.
std::string trim(std::string_view text);

// The leading number of a text as BASIC's Val reads it: blanks are passed over, a point is the
// decimal sign whatever the locale, and what does not start with a number is 0.
double val(std::string_view text);
// Plain decimal with a point, at most 15 significant digits, no exponent, no trailing zeros.
std::string decimal(double number);

// The characters of a text, one by one. A byte that is no UTF-8 is one of its own.
std::vector<std::string> characters(std::string_view text);

// The 8-bit code page of stored files.
class CodePage {
 public:
  // A Windows code page by number, 65001 for UTF-8. One that the machine lacks is replaced by 1252.
  explicit CodePage(int number = 1252);

  // Every byte comes back by encode, also those that the page leaves undefined.
  std::string decode(std::string_view bytes) const;
  // A character that the page lacks becomes a question mark.
  std::string encode(std::string_view text) const;
  std::string encode(std::string&& text) const;
  std::string encode(const char* text) const { return encode(std::string_view(text)); }
  std::string encode(const std::string& text) const { return encode(std::string_view(text)); }
  // Whether a text comes back from a stored file as it is.
  bool holds(std::string_view text) const;
  // The characters of a text that the page cannot store, each once; "" when it holds all of it.
  std::string lacking(std::string_view text) const;

 private:
  struct Tables;
  int number_;
  std::shared_ptr<const Tables> tables_;  // shared by copies, never changed; none for UTF-8
};

// The nearest text that the page holds: letters that it lacks become Latin ones ("Łódź" is "Lódz"
// in page 1252), and what has no likeness becomes "_".
std::string storable(std::string_view text, const CodePage& page);

}  // namespace skv
