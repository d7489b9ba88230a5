#include "platform/disk/windows_names.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "base/paths.h"
#include "base/text.h"

namespace skv {

namespace {

bool isSeparator(char c) { return c == '\\' || c == '/'; }

bool isRefused(char c) { return isSeparator(c) || isForbiddenInNames(c); }

// A device stands behind its name in every folder, whatever extension follows.
bool isDeviceName(std::string_view name) {
  std::string_view base = name.substr(0, name.find('.'));
  while (base.ends_with(' ')) base.remove_suffix(1);
  // The first letters of the names below: for most names the question ends here.
  constexpr std::string_view beginnings = "cpanlCPANL";
  if (base.size() < 3 || base.size() > 7 || beginnings.find(base[0]) == beginnings.npos)
    return false;
  const std::string device = lowerAscii(base);
  static constexpr std::array<std::string_view, 6> fixed = {"con", "prn",    "aux",
                                                            "nul", "conin$", "conout$"};
  if (std::ranges::find(fixed, device) != fixed.end()) return true;
  if (!device.starts_with("com") && !device.starts_with("lpt")) return false;
  static constexpr std::array<std::string_view, 12> numbers = {
      "1", "2", "3", "4", "5", "6", "7", "8", "9", "\u00b9", "\u00b2", "\u00b3"};
  return std::ranges::find(numbers, std::string_view(device).substr(3)) != numbers.end();
}

std::string_view withoutTail(std::string_view element, std::string_view dropped) {
  const auto last = element.find_last_not_of(dropped);
  return element.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace

std::string_view DrivePath::name() const {
  return std::string_view(below).substr(below.rfind('/') + 1);
}

DrivePath DrivePath::folder() const {
  const auto last = below.rfind('/');
  return {drive, last == std::string::npos ? std::string() : below.substr(0, last)};
}

std::string DrivePath::text() const {
  std::string result{static_cast<char>(std::toupper(static_cast<unsigned char>(drive))), ':', '\\'};
  const std::size_t start = result.size();
  result += below;
  std::replace(result.begin() + static_cast<std::ptrdiff_t>(start), result.end(), '/', '\\');
  return result;
}

bool isFullPath(std::string_view path) {
  return path.size() >= 3 && path[1] == ':' && isSeparator(path[2]);
}

Result<DrivePath> parseWindowsPath(std::string_view path, const DrivePath& current) {
  if (path.empty()) return Outcome::failure(err::fileNotFound);
  if (path.size() >= 2 && isSeparator(path[0]) && isSeparator(path[1]))
    return Outcome::failure(err::pathNotFound, path);

  DrivePath result;
  result.drive = current.drive;
  std::string_view rest = path;
  if (rest.size() >= 2 && rest[1] == ':') {
    const char letter = static_cast<char>(rest[0] | 0x20);
    if (letter < 'a' || letter > 'z') return Outcome::failure(err::badFileName, path);
    result.drive = letter;
    rest.remove_prefix(2);
  }
  const bool fromRoot = !rest.empty() && isSeparator(rest[0]);
  if (!fromRoot && result.drive == current.drive) result.below = current.below;
  result.below.reserve(result.below.size() + rest.size() + 1);

  while (!rest.empty()) {
    const auto end = std::min(rest.find_first_of("\\/"), rest.size());
    const std::string_view element = rest.substr(0, end);
    rest.remove_prefix(std::min(rest.size(), end + 1));
    if (element.starts_with("..") && withoutTail(element, " ") == "..") {
      const auto last = result.below.rfind('/');
      result.below.resize(last == std::string::npos ? 0 : last);
      continue;
    }
    const std::string_view name = withoutTail(element, ". ");
    if (name.empty()) continue;
    if (!isWindowsName(name)) return Outcome::failure(err::badFileName, path);
    if (!result.below.empty()) result.below += '/';
    result.below += name;
  }
  return result;
}

bool meansFolder(std::string_view path) { return !path.empty() && isSeparator(path.back()); }

bool isWindowsName(std::string_view name) {
  return !name.empty() && !name.ends_with('.') && !name.ends_with(' ') &&
         std::ranges::none_of(name, isRefused) && !isDeviceName(name);
}

bool ntfsLess(std::string_view upperA, std::string_view upperB) {
  const std::size_t common = std::min(upperA.size(), upperB.size());
  std::size_t i = 0;
  while (i < common && upperA[i] == upperB[i]) ++i;
  if (i == common) return upperA.size() < upperB.size();
  // UTF-8 sorts by character, UTF-16 likewise but for the characters above U+FFFF, whose units
  // come before U+E000.
  constexpr unsigned char startOfE000 = 0xEE, startOf10000 = 0xF0;
  const auto unitA = static_cast<unsigned char>(upperA[i]);
  const auto unitB = static_cast<unsigned char>(upperB[i]);
  if (unitA >= startOfE000 && unitB >= startOfE000 &&
      (unitA >= startOf10000) != (unitB >= startOf10000))
    return unitA > unitB;
  return unitA < unitB;
}

}  // namespace skv
