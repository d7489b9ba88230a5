#include "core/profile_line.h"

namespace skv {

namespace {

constexpr bool isBlank(char c) {
  return (c >= '\t' && c <= '\r') || c == endOfFileMark || c == ' ';
}

std::string_view trimTrailingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::string_view trimLeadingBlanks(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  return text;
}

std::string_view trimBlanks(std::string_view text) {
  return trimTrailingBlanks(trimLeadingBlanks(text));
}

std::string_view untilNul(std::string_view text) { return text.substr(0, text.find('\0')); }

std::string_view withoutQuotes(std::string_view value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
      value.back() == value.front())
    return value.substr(1, value.size() - 2);
  return value;
}

std::string oneLine(std::string_view text) {
  text = untilNul(text);
  std::string line;
  line.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i, 2) == "\r\n") ++i;
    line += text[i] == '\r' || text[i] == '\n' ? ' ' : text[i];
  }
  return line;
}

std::vector<std::string_view> splitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  for (std::size_t start = 0; start < text.size();) {
    std::size_t next = start;
    while (next < text.size() && text[next] != '\r' && text[next] != '\n') ++next;
    if (next < text.size()) ++next;
    if (text.substr(next - 1, 2) == "\r\n") ++next;
    lines.push_back(text.substr(start, next - start));
    start = next;
  }
  if (lines.empty()) return lines;

  const std::string_view last = lines.back();
  const auto mark = last.find(endOfFileMark, trimTrailingBlanks(last).size());
  if (mark != std::string_view::npos && mark > 0) {
    lines.back() = last.substr(0, mark);
    lines.push_back(last.substr(mark));
  }
  return lines;
}

std::string_view lineEnd(std::string_view line) {
  for (const std::string_view end : {"\r\n", "\n", "\r"})
    if (line.ends_with(end)) return line.substr(line.size() - end.size());
  return {};
}

KeyLine partsOf(std::string_view line) {
  const std::string_view text = trimBlanks(line);
  const auto equals = text.find('=');
  if (equals == std::string_view::npos) return {text, text.substr(text.size()), false};
  return {trimTrailingBlanks(text.substr(0, equals)),
          untilNul(trimLeadingBlanks(text.substr(equals + 1))), true};
}

}  // namespace skv
