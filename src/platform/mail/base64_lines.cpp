#include "platform/mail/base64_lines.h"

#include <endian.h>

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

constexpr std::uint32_t noCharacter = std::uint32_t{1} << 24U;

// The bits of a character at each of the four places of its group.
constexpr auto values = [] {
  std::array<std::array<std::uint32_t, 256>, 4> table{};
  for (auto& place : table) place.fill(noCharacter);
  for (std::uint32_t value = 0; value < 64; ++value)
    for (unsigned place = 0; place < 4; ++place)
      table[place][static_cast<unsigned char>(alphabet[value])] = value << (18 - 6 * place);
  return table;
}();

char* putBytes(std::uint32_t bits, int count, char* out) {
  for (int byte = 0; byte < count; ++byte) *out++ = static_cast<char>(bits >> (16 - 8 * byte));
  return out;
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

std::size_t Base64Decoder::decode(std::span<const char> text, char* out) {
  char* const begin = out;
  const auto* at = reinterpret_cast<const unsigned char*>(text.data());  // NOLINT(*-cast)
  const auto* const end = at + text.size();
  while (at < end) {
    // Whole groups of four, up to the line end. The fourth byte that is written is the next one's.
    for (bool whole = held_ == 0; whole && end - at >= 4; at += 4, out += 3) {
      const std::uint32_t bits =
          values[0][at[0]] | values[1][at[1]] | values[2][at[2]] | values[3][at[3]];
      if ((bits & noCharacter) != 0) break;
      const std::uint32_t bytes = ::htobe32(bits << 8U);
      std::memcpy(out, &bytes, sizeof bytes);
    }
    if (at == end) break;
    const unsigned char character = *at++;
    if (character == '=') out += finish(out);
    const std::uint32_t bits = values[static_cast<std::size_t>(held_)][character];
    if (bits == noCharacter) continue;
    bits_ |= bits;
    if (++held_ < 4) continue;
    out = putBytes(bits_, 3, out);
    bits_ = 0;
    held_ = 0;
  }
  return static_cast<std::size_t>(out - begin);
}

std::size_t Base64Decoder::finish(char* out) {
  char* const end = putBytes(bits_, std::max(held_ - 1, 0), out);
  bits_ = 0;
  held_ = 0;
  return static_cast<std::size_t>(end - out);
}

}  // namespace skv
