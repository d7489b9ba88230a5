#include "platform/mail/outlook_filter.h"

#include <algorithm>

#include "base/text.h"
#include "platform/mail/mail_words.h"

namespace skv {

namespace {

// Takes a word off the front, in whatever letters, with the blanks around it.
bool takeWord(std::string& text, std::string_view word) {
  if (!lowerAscii(text).starts_with(word)) return false;
  text = trim(text.substr(word.size()));
  return true;
}

bool isPlain(std::string_view text) {
  return std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::optional<OutlookFilter> OutlookFilter::parse(std::string_view expression) {
  OutlookFilter filter;
  std::string text = trim(expression);
  if (text.empty()) return filter;
  if (!takeWord(text, "subject ") || !takeWord(text, "contains")) return std::nullopt;
  if (text.size() < 2 || !text.starts_with('"') || text.find('"', 1) != text.size() - 1)
    return std::nullopt;
  filter.text_ = text.substr(1, text.size() - 2);
  return filter;
}

std::optional<std::string> OutlookFilter::passed(const std::string& subject) const {
  // Decoding is dear. Without encoded words it changes no plain letters, so most mails need none.
  if (isPlain(text_) && subject.find(text_) == std::string::npos &&
      subject.find("=?") == std::string::npos && text_.find(' ') == std::string::npos)
    return std::nullopt;
  std::string decoded = decodedHeader(subject);
  if (decoded.find(text_) == std::string::npos) return std::nullopt;
  return decoded;
}

}  // namespace skv
