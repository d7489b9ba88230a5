#include "platform/desktop/settings_text.h"

#include <algorithm>

#include "base/percent.h"
#include "base/text.h"

namespace skv {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";
constexpr std::string_view blanks = " \t\r";
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

// Whether a character must be written as %XX: what ends a line, a name or the escape itself, and
// blanks at either end, which an editor may drop.
bool isEscaped(std::string_view text, std::size_t at) {
  const auto c = static_cast<unsigned char>(text[at]);
  if (c < 0x20 || c == 0x7F || c == '%') return true;
  if (c == ' ' || c == ';') return at == 0 || at + 1 == text.size();
  return false;
}

std::string escaped(std::string_view text, std::string_view also = {}) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isEscaped(text, i) && also.find(text[i]) == std::string_view::npos) {
      result += text[i];
      continue;
    }
    const auto c = static_cast<unsigned char>(text[i]);
    result += '%';
    result += hexDigits[c >> 4U];
    result += hexDigits[c & 15U];
  }
  return result;
}

std::string_view withoutBlanks(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
  text.remove_suffix(text.size() - (text.find_last_not_of(blanks) + 1));
  return text;
}

}  // namespace

Result<SettingsText> SettingsText::parse(std::string bytes) {
  SettingsText text;
  text.bytes_ = std::move(bytes);
  text.read();
  if (text.values_.empty() && text.bytes_.find_first_not_of(" \t\r\n") != std::string::npos)
    return Outcome::withText(err::pathFileAccess, "No setting can be made out in it.");
  return text;
}

void SettingsText::read() {
  values_.clear();
  sectionEnds_.clear();
  std::string section;
  std::size_t at = bytes_.starts_with(byteOrderMark) ? byteOrderMark.size() : 0;
  while (at < bytes_.size()) {
    const std::size_t end = std::min(bytes_.find('\n', at), bytes_.size());
    readLine(at, std::string_view(bytes_).substr(at, end - at), section);
    at = end + 1;
  }
}

void SettingsText::readLine(std::size_t at, std::string_view line, std::string& section) {
  const std::string_view words = withoutBlanks(line);
  if (words.empty()) return;
  if (const std::size_t end = words.find(']'); words.starts_with('[') && end != words.npos)
    section = upper(percentDecoded(withoutBlanks(words.substr(1, end - 1))));
  if (section.empty()) return;
  sectionEnds_[section] = std::min(at + line.size() + 1, bytes_.size());
  const std::size_t equals = line.find('=');
  const std::string_view key = withoutBlanks(line.substr(0, equals));
  if (equals == line.npos || key.starts_with(';') || key.starts_with('[')) return;
  const std::string_view value = withoutBlanks(line.substr(equals + 1));
  const std::size_t place =
      value.empty() ? at + equals + 1 : static_cast<std::size_t>(value.data() - bytes_.data());
  values_[{section, upper(percentDecoded(key))}] = {percentDecoded(value), place, value.size()};
}

const std::string* SettingsText::find(std::string_view section, std::string_view key) const {
  const auto found = values_.find({upper(section), upper(key)});
  return found == values_.end() ? nullptr : &found->second.text;
}

void SettingsText::set(std::string_view section, std::string_view key, std::string_view value) {
  const auto known = values_.find({upper(section), upper(key)});
  if (known != values_.end()) {
    bytes_.replace(known->second.at, known->second.length, escaped(value));
  } else {
    const std::size_t firstEnd = bytes_.find('\n');
    const bool dos = firstEnd != std::string::npos && firstEnd > 0 && bytes_[firstEnd - 1] == '\r';
    const std::string lineEnd = dos ? "\r\n" : "\n";
    std::string added = escaped(key, "=[") + "=" + escaped(value) + lineEnd;
    const auto end = sectionEnds_.find(upper(section));
    if (end == sectionEnds_.end()) added = "[" + escaped(section, "[]") + "]" + lineEnd + added;
    const std::size_t place = end == sectionEnds_.end() ? bytes_.size() : end->second;
    if (place > 0 && bytes_[place - 1] != '\n') added = lineEnd + added;
    bytes_.insert(place, added);
  }
  read();
}

}  // namespace skv
