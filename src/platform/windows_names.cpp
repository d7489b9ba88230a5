#include "platform/windows_names.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace skv {

namespace {

bool isSeparator(char c) { return c == '\\' || c == '/'; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// Devices keep their name whatever extension follows it.
bool isDevice(std::string_view name) {
  std::string stem = upper(name.substr(0, name.find('.')));
  stem.erase(stem.find_last_not_of(' ') + 1);
  constexpr std::array plain{"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
  if (std::ranges::find(plain, stem) != plain.end()) return true;
  return stem.size() == 4 && (stem.starts_with("COM") || stem.starts_with("LPT")) &&
         stem[3] >= '1' && stem[3] <= '9';
}

std::string_view withoutTrailingDots(std::string_view element) {
  const auto last = element.find_last_not_of(". ");
  return last == std::string_view::npos ? std::string_view() : element.substr(0, last + 1);
}

}  // namespace

bool isWindowsName(std::string_view name) {
  if (name.empty()) return false;
  for (const char c : name)
    if (static_cast<unsigned char>(c) < 0x20 ||
        std::string_view("<>:\"|?*\\/").find(c) != std::string_view::npos)
      return false;
  return !isDevice(name);
}

Result<WindowsPath> parseWindowsPath(std::string_view path, const WindowsPath& current) {
  if (path.empty()) return Outcome::failure(err::fileNotFound);
  if (path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1]))
    return Outcome::failure(err::pathNotFound, path);

  WindowsPath result{current.drive, {}};
  std::string_view rest = path;
  if (path.size() >= 2 && path[1] == ':') {
    if (!isLetter(path[0])) return Outcome::failure(err::badFileName, path);
    result.drive = lowerAscii(path.substr(0, 1))[0];
    rest.remove_prefix(2);
  } else if (!isSeparator(path[0])) {
    result.elements = current.elements;
  }

  while (!rest.empty()) {
    const auto end = std::ranges::find_if(rest, isSeparator);
    const std::string_view element(rest.begin(), end);
    rest.remove_prefix(std::min(rest.size(), element.size() + 1));
    if (element == "..") {
      if (!result.elements.empty()) result.elements.pop_back();
      continue;
    }
    const std::string_view name = withoutTrailingDots(element);
    if (name.empty()) continue;
    if (!isWindowsName(name)) return Outcome::failure(err::badFileName, path);
    result.elements.emplace_back(name);
  }
  return result;
}

std::string folderText(const WindowsPath& path) {
  std::string text = upper(std::string_view(&path.drive, 1)) + ":\\";
  for (const std::string& element : path.elements) text += element + "\\";
  return text;
}

}  // namespace skv
