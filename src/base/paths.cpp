#include "base/paths.h"

namespace skv {

std::string withBackslash(std::string_view path) {
  std::string result(path);
  if (!result.ends_with('\\')) result += '\\';
  return result;
}

std::string withoutBackslash(std::string_view path) {
  if (path.ends_with('\\')) path.remove_suffix(1);
  return std::string(path);
}

std::string FolderName(std::string_view folder) {
  const auto last = folder.rfind('\\');
  if (last == std::string_view::npos) return {};
  return fileName(folder.substr(0, last));
}

std::string folderAbove(std::string_view path) {
  if (path.ends_with('\\')) path.remove_suffix(1);
  return std::string(path.substr(0, path.rfind('\\') + 1));
}

std::string fileName(std::string_view path) {
  const auto last = path.rfind('\\');
  return std::string(last == std::string_view::npos ? path : path.substr(last + 1));
}

bool isElementName(std::string_view name) {
  return name.find_first_of("\\/") == std::string_view::npos &&
         name.find_first_not_of(". ") != std::string_view::npos;
}

bool isForbiddenInNames(char c) {
  switch (c) {  // asked for every letter of a listing
    case '<':
    case '>':
    case ':':
    case '"':
    case '|':
    case '?':
    case '*':
      return true;
    default:
      return static_cast<unsigned char>(c) < ' ';
  }
}

}  // namespace skv
