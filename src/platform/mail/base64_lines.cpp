#include "platform/mail/base64_lines.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace skv {

namespace {

constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Two characters for each value of 12 bits: half of the look-ups.
constexpr auto pairs = [] {
  std::array<std::array<char, 2>, 4096> table{};
  for (std::size_t value = 0; value < table.size(); ++value)
    table[value] = {alphabet[value >> 6U], alphabet[value & 63U]};
  return table;
}();

char* encodeTriple(const unsigned char* in, char* out) {
  const unsigned bits = unsigned{in[0]} << 16U | unsigned{in[1]} << 8U | in[2];
  std::memcpy(out, pairs[bits >> 12U].data(), 2);
  std::memcpy(out + 2, pairs[bits & 4095U].data(), 2);
  return out + 4;
}

}  // namespace

std::uint64_t base64Length(std::uint64_t bytes) {
  const std::uint64_t lines = (bytes + base64LineInput - 1) / base64LineInput;
  return (bytes + 2) / 3 * 4 + lines * 2;
}

std::size_t base64Lines(std::span<const unsigned char> bytes, char* out) {
  char* const begin = out;
  while (!bytes.empty()) {
    const std::size_t length = std::min(bytes.size(), base64LineInput);
    std::size_t at = 0;
    for (; at + 3 <= length; at += 3) out = encodeTriple(&bytes[at], out);
    if (at < length) {
      std::array<unsigned char, 3> last{};
      std::copy_n(&bytes[at], length - at, last.begin());
      out = encodeTriple(last.data(), out);
      std::fill_n(out - (3 - (length - at)), 3 - (length - at), '=');
    }
    *out++ = '\r';
    *out++ = '\n';
    bytes = bytes.subspan(length);
  }
  return static_cast<std::size_t>(out - begin);
}

}  // namespace skv
