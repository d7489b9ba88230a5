#include "platform/desktop/desktop_shell.h"

#include <chrono>
#include <fstream>

#include "base/text.h"
#include "platform/desktop/child_process.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

// Results of the classic shell call.
constexpr int shellStarted = 33;
constexpr int shellFileNotFound = 2;
constexpr int shellPathNotFound = 3;
constexpr int shellNoAssociation = 31;

// "http://...", "mailto:...": a scheme, which is longer than the letter of a drive.
bool isAddress(std::string_view target) {
  const auto colon = target.find(':');
  return colon != std::string_view::npos && colon > 1 &&
         target.substr(0, colon).find_first_not_of(
             "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+.-") ==
             std::string_view::npos;
}

std::vector<std::string> dataFolders() {
  std::string home = environmentValue("XDG_DATA_HOME");
  if (home.empty()) home = homeFolder() + "/.local/share";
  std::string others = environmentValue("XDG_DATA_DIRS");
  if (others.empty()) others = "/usr/local/share:/usr/share";
  return split(home + ":" + others, ':');
}

// The Exec value of a desktop entry, "" when it is not found or needs a terminal.
std::string execOf(const std::string& entry) {
  for (std::string& folder : dataFolders()) {
    std::ifstream file(folder.append("/applications/").append(entry));
    bool inEntry = false;
    std::string exec;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with('[')) inEntry = line == "[Desktop Entry]";
      if (inEntry && line.starts_with("Exec=")) exec = line.substr(5);
      if (inEntry && line == "Terminal=true") return {};
    }
    if (!exec.empty()) return exec;
  }
  return {};
}

}  // namespace

std::vector<std::string> desktopCommand(const std::string& exec, const std::string& file) {
  std::vector<std::string> command;
  std::string word;
  bool quoted = false, inWord = false, placed = false;
  const auto endWord = [&] {
    if (inWord) command.push_back(word);
    word.clear();
    inWord = false;
  };
  for (std::size_t i = 0; i < exec.size(); ++i) {
    const char c = exec[i];
    if (c == '"') {
      quoted = !quoted;
      inWord = true;
    } else if (quoted && c == '\\' && i + 1 < exec.size()) {
      word += exec[++i];
    } else if (!quoted && c == ' ') {
      endWord();
    } else if (c == '%' && i + 1 < exec.size()) {
      const char code = exec[++i];
      if (code == '%') {
        word += '%';
        inWord = true;
      } else if (std::string_view("fFuU").find(code) != std::string_view::npos) {
        word += file;
        inWord = placed = true;
      }
    } else {
      word += c;
      inWord = true;
    }
  }
  endWord();
  if (quoted || command.empty()) return {};
  if (!placed) command.push_back(file);
  return command;
}

int DesktopShell::open(std::string_view target) {
  std::string opened(target);
  if (!isAddress(target)) {
    const auto found = files_.attributes(target);
    if (!found.ok())
      return found.outcome().number() == err::pathNotFound ? shellPathNotFound : shellFileNotFound;
    const auto native = files_.nativePath(target);
    if (!native.ok()) return shellFileNotFound;
    opened = native.value();
  }
  // The opener tells by its end whether it found a program. One that still runs is that program.
  constexpr std::chrono::milliseconds time{1500};
  switch (startHelper({"xdg-open", opened}, time).value_or(0)) {
    case 0:
      return shellStarted;
    case 2:
      return shellFileNotFound;
    default:
      return shellNoAssociation;
  }
}

Outcome DesktopShell::editText(std::string_view path) {
  const auto native = files_.nativePath(path);
  if (!native.ok()) return native.outcome();
  constexpr std::chrono::milliseconds time{3000};
  const std::string entry = firstLineOf({"xdg-mime", "query", "default", "text/plain"}, time);
  if (!entry.empty() && startDetached(desktopCommand(execOf(entry), native.value()))) return {};
  for (const char* editor : {"gnome-text-editor", "gedit", "kate", "kwrite", "xed", "mousepad",
                             "pluma", "featherpad", "leafpad", "l3afpad", "geany", "xedit"})
    if (startDetached({editor, native.value()})) return {};
  return Outcome::withText(err::fileNotFound,
                           "There is no text editor on this desktop for plain text files.");
}

}  // namespace skv
