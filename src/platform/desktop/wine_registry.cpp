#include "platform/desktop/wine_registry.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cstdint>

#include "base/text.h"
#include "platform/disk/native_calls.h"

namespace skv {

namespace {

// Prefixes in use have some 10 MB; what is far larger is no registry.
constexpr off_t longestRegistry = 256 << 20;

// A file's bytes for the length of a block. Copied, not mapped: a prefix in use may cut its file.
std::optional<std::string> registryBytes(const std::string& native) {
  const Descriptor file = openFile(native, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  struct stat status {};
  if (file.get() < 0 || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  std::string bytes;
  if (status.st_size > longestRegistry || readAll(file.get(), bytes, status.st_size) != 0)
    return {};
  return bytes;
}

void appendUtf8(std::string& text, std::uint32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    text += static_cast<char>(0x80 | (character & 0x3F));
  } else {
    text += static_cast<char>(0xE0 | character >> 12);
    text += static_cast<char>(0x80 | (character >> 6 & 0x3F));
    text += static_cast<char>(0x80 | (character & 0x3F));
  }
}

// Up to four hexadecimal digits at the start of `rest`, taken off it.
std::uint32_t takeHex(std::string_view& rest) {
  std::uint32_t number = 0;
  for (int digits = 0; digits < 4 && !rest.empty(); ++digits) {
    const char c = rest.front();
    const auto value = c >= '0' && c <= '9'   ? c - '0'
                       : c >= 'a' && c <= 'f' ? c - 'a' + 10
                       : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                              : -1;
    if (value < 0) break;
    number = number * 16 + static_cast<std::uint32_t>(value);
    rest.remove_prefix(1);
  }
  return number;
}

// The text up to `end`, its escapes undone, taken off `rest` with the end; nothing without an end.
std::optional<std::string> takeQuoted(std::string_view& rest, char end) {
  std::string text;
  std::optional<std::size_t> length;  // what follows a NUL is not part of a text
  while (!rest.empty()) {
    const char c = rest.front();
    rest.remove_prefix(1);
    if (c == end) return text.substr(0, length.value_or(text.size()));
    const bool escapes = c == '\\' && !rest.empty();
    const char meant = escapes ? rest.front() : c;
    if (escapes) rest.remove_prefix(1);
    const std::size_t before = text.size();
    if (escapes && meant == 'x')
      appendUtf8(text, takeHex(rest));
    else
      text += escapes && meant == '0' ? '\0' : meant;
    if (text.back() == '\0' && !length) length = before;
  }
  return {};
}

// `"name"="text"` or `"name"=str(2):"text"`, which is what a value with variables looks like.
std::optional<std::string> textOf(std::string_view line, std::string_view name) {
  if (!line.starts_with('"')) return {};
  line.remove_prefix(1);
  const auto found = takeQuoted(line, '"');
  if (!found || !equalsIgnoringCase(*found, name) || !line.starts_with('=')) return {};
  line.remove_prefix(1);
  if (line.starts_with("str(2):")) line.remove_prefix(7);
  if (!line.starts_with('"')) return {};
  line.remove_prefix(1);
  return takeQuoted(line, '"');
}

std::string_view takeLine(std::string_view& rest) {
  const std::size_t end = rest.find('\n');
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

// The line that opens the section `key`, as far as its end: in a file each backslash is doubled.
std::string sectionLine(std::string_view key) {
  std::string line = "[";
  for (const char c : key) line += c == '\\' ? std::string("\\\\") : std::string{c};
  return line + "]";
}

}  // namespace

WineRegistry::WineRegistry(const std::string& nativeFile) {
  auto bytes = registryBytes(nativeFile);
  if (bytes && bytes->starts_with("WINE REGISTRY")) bytes_ = std::move(*bytes);
}

std::optional<std::string> WineRegistry::text(std::string_view key, std::string_view name) const {
  const std::string wanted = sectionLine(key);
  const std::string_view all = bytes_;
  for (std::size_t at = all.find("\n["); at != std::string_view::npos;
       at = all.find("\n[", at + 1)) {
    std::string_view rest = all.substr(at + 1);
    if (rest.size() < wanted.size() || rest[wanted.size() - 1] != ']' ||
        !equalsIgnoringCase(rest.substr(0, wanted.size()), wanted))
      continue;
    takeLine(rest);
    while (!rest.empty() && !rest.starts_with('['))
      if (auto text = textOf(takeLine(rest), name)) return text;
    return {};
  }
  return {};
}

}  // namespace skv
