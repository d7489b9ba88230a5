#include "platform/mail/mail_words.h"

#include <gmime/gmime.h>

#include <algorithm>

#include "base/text.h"

namespace skv {

namespace {

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }

std::string validUtf8(std::string_view bytes) {
  static const CodePage latin(1252);
  return isUtf8(bytes) ? std::string(bytes) : latin.decode(bytes);
}

}  // namespace

std::string decodedHeader(const std::string& value) {
  // Encoded words that never end make the time of it grow with the square of their number.
  constexpr std::size_t longest = std::size_t{1} << 14U;
  std::string plain = value.substr(0, longest);
  std::ranges::replace_if(plain, isControl, ' ');
  char* decoded = g_mime_utils_header_decode_text(nullptr, plain.c_str());
  std::string result = onOneLine(validUtf8(decoded));
  g_free(decoded);
  return trim(result);
}

std::string decodedText(const std::string& bytes, const std::string& charset) {
  if (equalsIgnoringCase(charset, "utf-8") || charset.empty()) return validUtf8(bytes);
  GMimeFilter* filter = g_mime_filter_charset_new(charset.c_str(), "UTF-8");
  if (filter == nullptr) return validUtf8(bytes);
  std::string copy = bytes;  // the filter's interface may write
  char* out = nullptr;
  std::size_t length = 0, before = 0;
  g_mime_filter_complete(filter, copy.data(), copy.size(), 0, &out, &length, &before);
  std::string text = validUtf8({out, length});
  g_object_unref(filter);
  return text;
}

std::string plainText(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '\r') {
      if (at + 1 == text.size() || text[at + 1] != '\n') plain += '\n';
    } else if (!isControl(c) || c == '\n' || c == '\t') {
      plain += c;
    }
  }
  return plain;
}

std::string onOneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(line, isControl, ' ');
  return line;
}

}  // namespace skv
