// Base64 in the lines of a mail, at the speed of a disk.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace skv {

inline constexpr std::size_t base64LineInput = 57;       // bytes
inline constexpr std::size_t base64LineOutput = 76 + 2;  // characters, CR LF with them

// Of a whole text.
std::uint64_t base64Length(std::uint64_t bytes);
// Writes whole lines, and at the end of a text what is left as a shorter one; `bytes` is a multiple
// of base64LineInput anywhere else. Answers how many characters it has written to `out`, which is
// large enough.
std::size_t base64Lines(std::span<const unsigned char> bytes, char* out);

// Reads base64 as it comes, piece by piece, whatever stands between its characters.
class Base64Decoder {
 public:
  // Answers how many bytes it has written to `out`, which holds as many as `text` and one more.
  std::size_t decode(std::span<const char> text, char* out);
  // What a text without its "=" leaves: up to two bytes.
  std::size_t finish(char* out);

 private:
  std::uint32_t bits_ = 0;
  int held_ = 0;  // characters whose bits wait for the others of their four
};

}  // namespace skv
