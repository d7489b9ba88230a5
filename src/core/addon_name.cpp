#include "core/addon_name.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "core/messages.h"
#include "core/staged_folder.h"

namespace skv {

namespace {

// Windows ends a folder's path here, so that a short file name has room behind it.
constexpr std::size_t longestPath = 247;
// Bytes that a disk of this machine takes for one name.
constexpr std::size_t longestName = 255;

bool isRefused(char c) { return c == '\\' || c == '/' || isForbiddenInNames(c); }

bool isTooLong(const App& app, const std::string& root, const std::string& name) {
  return name.size() > longestName || app.codePage.encode(root + name).size() > longestPath;
}

// The refused ones of a name's characters, each once, with blanks between.
std::string refusedIn(const std::string& name) {
  std::string list;
  std::vector<std::string> seen;
  for (const std::string& piece : characters(name)) {
    if (!isRefused(piece[0]) || std::ranges::find(seen, piece) != seen.end()) continue;
    seen.push_back(piece);
    list += " " + (static_cast<unsigned char>(piece[0]) < ' ' ? "(a control character)" : piece);
  }
  return list;
}

bool isDropped(char c) { return c == '.' || c == ' '; }

}  // namespace

std::string faultOfAddonName(const App& app, const std::string& root, const std::string& name) {
  if (name.empty()) return {};
  if (const std::string refused = refusedIn(name); !refused.empty())
    return "The name of a folder cannot hold:" + refused;
  if (const std::string lacking = app.codePage.lacking(name); !lacking.empty())
    return "It " + cannotBeStored(lacking);
  if (name.starts_with('.')) return "A dot at the beginning hides the folder.";
  if (isDropped(name.back())) return "Windows drops a dot or a blank at the end.";
  if (isTooLong(app, root, name)) return "It is too long.";
  if (app.platform.files.nativePath(root + name).outcome().number() == err::badFileName)
    return "Windows keeps this name for a device.";
  if (equalsIgnoringCase(name, StagedFolder::name)) return "The program needs it for itself.";
  return {};
}

std::string nearestAddonName(const App& app, const std::string& root, const std::string& name) {
  if (faultOfAddonName(app, root, name).empty()) return name;
  std::string result = storable(name, app.codePage);
  std::ranges::replace_if(result, isRefused, '_');
  if (result.starts_with('.')) result[0] = '_';
  const auto cutEnd = [&result] {
    while (!result.empty() && isDropped(result.back())) result.pop_back();
  };
  cutEnd();
  auto pieces = characters(result);
  while (!pieces.empty() && isTooLong(app, root, result)) {
    result.resize(result.size() - pieces.back().size());
    pieces.pop_back();
  }
  cutEnd();
  // What is left is a device's name, the program's own, or nothing.
  return result.empty() || !faultOfAddonName(app, root, result).empty() ? "_" + result : result;
}

}  // namespace skv
