#include "core/profile_encoding.h"

#include <cstddef>

namespace skv {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view littleEndianMark = "\xFF\xFE";
constexpr std::string_view bigEndianMark = "\xFE\xFF";

// Each unit by itself, the two of a surrogate pair too, as three bytes each: so nothing of a
// damaged file is lost, and characters are counted as the call counts them.
std::string fromUtf16(std::string_view bytes, bool bigEndian) {
  std::string text;
  text.reserve(bytes.size() / 2);
  const auto byte = [&text](int value) { text += static_cast<char>(value); };
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const int first = static_cast<unsigned char>(bytes[i]);
    const int second = static_cast<unsigned char>(bytes[i + 1]);
    const int unit = bigEndian ? first << 8 | second : second << 8 | first;
    if (unit < 0x80) {
      byte(unit);
    } else if (unit < 0x800) {
      byte(0xC0 | unit >> 6);
      byte(0x80 | (unit & 0x3F));
    } else {
      byte(0xE0 | unit >> 12);
      byte(0x80 | (unit >> 6 & 0x3F));
      byte(0x80 | (unit & 0x3F));
    }
  }
  return text;
}

struct Character {
  std::size_t length;
  bool whole;
};

// The character at `i`, or as many bytes there as the call takes for one damaged character.
Character characterAt(std::string_view text, std::size_t i) {
  const auto byteAt = [&](std::size_t k) { return static_cast<unsigned char>(text[i + k]); };
  const unsigned char lead = byteAt(0);
  const std::size_t length = lead < 0xC2 || lead > 0xF4 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t k = 1; k < length; ++k) {
    if (i + k >= text.size() || (byteAt(k) & 0xC0) != 0x80) return {k, false};
    // Longer than it need be, or beyond the last character.
    if (k == 1 && ((lead == 0xE0 && byteAt(1) < 0xA0) || (lead == 0xF0 && byteAt(1) < 0x90) ||
                   (lead == 0xF4 && byteAt(1) > 0x8F)))
      return {2, false};
  }
  return {length, lead < 0x80 || length > 1};
}

// Question marks for what the call cannot hand on: a damaged character, and both of the surrogates
// that make up one.
std::string withoutSurrogates(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const auto [length, whole] = characterAt(text, i);
    const std::string_view character = text.substr(i, length);
    const bool surrogate = character[0] == '\xED' && whole && character[1] >= '\xA0';
    if (!whole || surrogate)
      result += '?';
    else if (length == 4)
      result += "??";
    else
      result += character;
    i += length;
  }
  return result;
}

// Takes what fromUtf16 gave and what CodePage decodes to; a byte that begins no character stands
// for itself.
std::string toUtf16(std::string_view text, bool bigEndian) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  const auto unit = [&](char32_t value) {
    const char high = static_cast<char>(value >> 8);
    const char low = static_cast<char>(value & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
  };
  const auto byteAt = [&](std::size_t i) {
    return static_cast<char32_t>(static_cast<unsigned char>(text[i]));
  };
  for (std::size_t i = 0; i < text.size();) {
    const Character found = characterAt(text, i);
    const std::size_t length = found.whole ? found.length : 1;
    char32_t character = length == 1 ? byteAt(i) : byteAt(i) & (0x7Fu >> length);
    for (std::size_t k = 1; k < length; ++k) character = character << 6 | (byteAt(i + k) & 0x3F);
    if (character < 0x10000) {
      unit(character);
    } else {
      unit(0xD800 + ((character - 0x10000) >> 10));
      unit(0xDC00 + ((character - 0x10000) & 0x3FF));
    }
    i += length;
  }
  return bytes;
}

}  // namespace

ProfileEncoding::ProfileEncoding(std::string& bytes, const CodePage& codePage)
    : codePage_(codePage) {
  const std::string_view view = bytes;
  if (view.starts_with(utf8Mark)) {
    kind_ = Kind::utf8;
    bytes.erase(0, utf8Mark.size());
  } else if (view.starts_with(littleEndianMark) || view.starts_with(bigEndianMark)) {
    kind_ = view.starts_with(bigEndianMark) ? Kind::utf16BigEndian : Kind::utf16LittleEndian;
    if (bytes.size() % 2 != 0) {
      oddByte_ = bytes.back();
      bytes.pop_back();
    }
    bytes = fromUtf16(std::string_view(bytes).substr(2), kind_ == Kind::utf16BigEndian);
  }
}

std::string ProfileEncoding::decode(std::string_view lines) const {
  return kind_ == Kind::codePage ? codePage_.decode(lines) : std::string(lines);
}

std::string ProfileEncoding::encode(std::string_view text) const {
  if (kind_ == Kind::codePage) return codePage_.encode(text);
  return codePage_.decode(codePage_.encode(withoutSurrogates(text)));
}

std::string ProfileEncoding::toCodePage(std::string_view lines) const {
  return kind_ == Kind::codePage ? std::string(lines) : codePage_.encode(withoutSurrogates(lines));
}

std::string ProfileEncoding::restore(std::string lines) const {
  switch (kind_) {
    case Kind::codePage:
      break;
    case Kind::utf8:
      return std::string(utf8Mark) + lines;
    case Kind::utf16LittleEndian:
      return std::string(littleEndianMark) + toUtf16(lines, false) + oddByte_;
    case Kind::utf16BigEndian:
      return std::string(bigEndianMark) + toUtf16(lines, true) + oddByte_;
  }
  return lines;
}

}  // namespace skv
