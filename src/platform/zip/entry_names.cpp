#include "platform/zip/entry_names.h"

#include <algorithm>

#include "base/paths.h"
#include "platform/disk/windows_names.h"

namespace skv {

namespace {

constexpr int dosPage = 437;
constexpr int ntfsHostOfPkware = 10;
constexpr int ntfsHost = 11;
constexpr int vfatHost = 14;

// Page 437 has the letters of western languages here, and elsewhere frames, Greek and mathematics,
// which stand in no name.
bool isDosLetter(char c) {
  constexpr unsigned char firstSign = 0x9B, lastSign = 0x9F, lastLetter = 0xA5, sharpS = 0xE1;
  const auto byte = static_cast<unsigned char>(c);
  return byte < firstSign || (byte > lastSign && byte <= lastLetter) || byte == sharpS;
}

// Whether a name has one of the control characters that fill the gaps in Windows pages.
bool hasGap(std::string_view utf8) {
  constexpr char first = '\x80', last = '\x9F';
  char before = 0;
  for (const char c : utf8) {
    if (before == '\xC2' && c >= first && c <= last) return true;
    before = c;
  }
  return false;
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// A name that Windows can hold, as much like the given one as can be: authors on other systems may
// use what Windows reserves.
std::string heldByWindows(std::string name) {
  for (char& c : name)
    if (isForbiddenInNames(c)) c = '_';
  while (name.ends_with('.') || name.ends_with(' ')) name.pop_back();
  if (name.empty()) return "_";
  return isWindowsName(name) ? name : "_" + name;
}

}  // namespace

std::string decodeEntryName(const std::string& stored, int host, const CodePage& systemPage) {
  if (isUtf8(stored)) return stored;
  const bool fromWindows = host == ntfsHost || host == ntfsHostOfPkware || host == vfatHost;
  const bool dosLetters = std::ranges::all_of(stored, isDosLetter);
  std::string name = systemPage.decode(stored);
  if (!dosLetters || (fromWindows && !hasGap(name))) return name;
  return CodePage(dosPage).decode(stored);
}

Result<std::vector<PathElement>> entryPath(std::string_view name) {
  // Windows itself ends at 260 characters. The depth is for archives of nothing but folders in
  // folders, which take no room until they are made.
  constexpr std::size_t longest = 1024, deepest = 32;
  const auto leadsOut = [] { return Outcome::withText(err::zip, "leads out of its folder"); };
  const auto separates = [](char c) { return c == '/' || c == '\\'; };
  if (name.size() > longest) return Outcome::withText(err::zip, "has a name that is too long");
  // Slashes alone are the entry of some packers for the folder itself.
  if (std::ranges::all_of(name, separates)) return std::vector<PathElement>();
  if (separates(name[0]) && separates(name[1])) return leadsOut();
  if (name.size() > 1 && name[1] == ':' && isLetter(name[0])) name.remove_prefix(2);
  std::vector<PathElement> elements;
  while (!name.empty()) {
    const auto end = name.find_first_of("/\\");
    const std::string element(name.substr(0, end));
    name = end == std::string_view::npos ? std::string_view() : name.substr(end + 1);
    // Windows reads any number of dots and blanks behind ".." as "..", so nothing like it may pass.
    const bool onlyDots = element.find_first_not_of(". ") == std::string::npos;
    if (onlyDots && element.find("..") != std::string::npos) return leadsOut();
    if (element.empty() || element == ".") continue;
    if (elements.size() == deepest) return Outcome::withText(err::zip, "lies too deep in folders");
    // Macintosh archives keep accents apart from their letters, where no file of the simulator
    // would find them.
    std::string whole = composed(element);
    std::string held = heldByWindows(whole);
    elements.push_back({std::move(whole), std::move(held)});
  }
  return elements;
}

}  // namespace skv
