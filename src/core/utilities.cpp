#include "core/utilities.h"

#include "base/text.h"

namespace skv {

bool PathExists(const FileSystem& files, std::string_view path) {
  std::string tested(path);
  const std::string probe = lowerAscii(path);
  if (probe.size() == 1 && probe >= "a" && probe <= "z")
    tested += ":\\";
  else if (probe.size() == 2 && probe >= "a:" && probe <= "z:")
    tested += "\\";
  return !tested.empty() && files.attributes(tested).ok();
}

bool folderExists(const FileSystem& files, std::string_view path) {
  const auto found = files.attributes(path);
  return found.ok() && found.value().folder;
}

double GetDiskFree(const FileSystem& files, std::string_view path) {
  std::string root;
  if (path.starts_with("\\\\")) {
    const auto elements = split(path, '\\');
    for (std::size_t i = 0; i < elements.size() && i < 4; ++i) root += elements[i] + "\\";
  } else {
    root = path.substr(0, 3);
  }
  return files.freeBytes(root).valueOr(0);
}

void MakePath(FileSystem& files, std::string_view path) {
  std::string prefix;
  for (const std::string& element : split(path, '\\')) {
    prefix += element;
    files.makeFolder(prefix).skipped();
    prefix += '\\';
  }
}

bool ReportError(App& app) {
  if (!app.error.pending()) return false;
  const Outcome error = app.error.current();
  app.error.clear();
  app.windows.messageBox({"Error #" + std::to_string(error.number()) + "\r\n" + error.description(),
                          ui::BoxIcon::exclamation});
  return true;
}

namespace {

const char* shellErrorText(int result) {
  switch (result) {
    case 2:
      return "File not found";
    case 3:
      return "Path not found";
    case 5:
      return "Access denied";
    case 8:
      return "Out of memory";
    case 11:
      return "Invalid EXE file or error in EXE image";
    case 26:
      return "A sharing violation occurred";
    case 27:
      return "Incomplete or invalid file association";
    case 28:
      return "DDE Time out";
    case 29:
      return "DDE transaction failed";
    case 30:
      return "DDE busy";
    case 31:
      return "No association for file extension";
    case 32:
      return "DLL not found";
    default:
      return "Unknown error";
  }
}

}  // namespace

void ShellOpen(App& app, const std::string& target) {
  constexpr int lastFailure = 32;
  const int result = app.platform.shell.open(target);
  if (result <= lastFailure) app.windows.messageBox({shellErrorText(result)});
}

}  // namespace skv
