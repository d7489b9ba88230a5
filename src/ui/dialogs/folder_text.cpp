#include "ui/dialogs/folder_text.h"

#include <algorithm>

#include "base/paths.h"
#include "base/percent.h"
#include "core/disk_queries.h"
#include "core/messages.h"

namespace skv {

namespace {

Outcome refused(std::string reason) {
  return Outcome::withText(err::badFileName, std::move(reason));
}

std::string withoutQuotes(std::string_view text) {
  std::string result = trim(text);
  if (result.size() >= 2 && result.front() == '"' && result.back() == '"')
    result = trim(std::string_view(result).substr(1, result.size() - 2));
  return result;
}

// The place on this machine that an address means: file:///home, file://host/home, file:/home.
std::string placeOfAddress(std::string_view address) {
  address.remove_prefix(std::string_view("file:").size());
  if (address.starts_with("//")) {
    const auto path = address.find('/', 2);
    address.remove_prefix(path == std::string_view::npos ? address.size() : path);
  }
  return percentDecoded(address);
}

// A path as this machine has it, by the drive that reaches it.
Result<std::string> windowsPathOf(const FileSystem& files, const std::string& native) {
  std::string path = files.windowsPath(native);
  // Copied from an address without its beginning.
  if (path.empty() || presenceOf(files, path) == Presence::absent)
    if (std::string decoded = files.windowsPath(percentDecoded(native));
        !decoded.empty() && (path.empty() || presenceOf(files, decoded) == Presence::there))
      path = std::move(decoded);
  if (path.empty()) return refused("cannot be reached by any drive.");
  return path;
}

// As the disk takes a name: without blanks and dots at its end.
std::string withoutTail(std::string_view element) {
  const auto last = element.find_last_not_of(". ");
  return std::string(element.substr(0, last == std::string_view::npos ? 0 : last + 1));
}

Result<std::string> tidied(const std::string& path) {
  std::vector<std::string> elements;
  for (const std::string& element : split(std::string_view(path).substr(3), '\\')) {
    if (element == "..") {
      if (elements.empty()) return refused("leads above its drive.");
      elements.pop_back();
    } else if (std::ranges::any_of(element, isForbiddenInNames)) {
      return refused("holds a character that no folder's name can hold.");
    } else if (std::string name = withoutTail(element); !name.empty()) {
      elements.push_back(std::move(name));
    }
  }
  std::string result = path.substr(0, 3);
  for (const std::string& element : elements) result += element + "\\";
  return result;
}

}  // namespace

Result<std::string> folderFromText(const App& app, std::string_view typed) {
  const FileSystem& files = app.platform.files;
  std::string text = withoutQuotes(typed);
  const std::string& home = app.platform.environment.home;
  if ((text == "~" || text.starts_with("~/")) && !home.empty()) {
    text = withBackslash(home) + text.substr(1);
  } else if (lowerAscii(text).starts_with("file:") || text.starts_with('/')) {
    text = withoutBackslash(text);  // of a field that was left before it was understood
    const auto path = windowsPathOf(files, text.starts_with('/') ? text : placeOfAddress(text));
    if (!path.ok()) return path;
    text = path.value();
  }
  std::ranges::replace(text, '/', '\\');
  if (text.size() == 2) text += '\\';
  const std::string drive = lowerAscii(text.substr(0, 1));
  if (text.size() < 3 || drive < "a" || drive > "z" || text[1] != ':' || text[2] != '\\')
    return refused("is not a full path, such as C:\\FS2002.");
  auto folder = tidied(text);
  if (!folder.ok()) return folder;
  if (const std::string lacking = app.codePage.lacking(folder.value()); !lacking.empty())
    return refused(cannotBeStored(lacking));
  return folder;
}

}  // namespace skv
