#include "platform/desktop/desktop_entry.h"

#include <fstream>
#include <utility>

#include "base/text.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

std::vector<std::string> dataFolders() {
  std::string home = environmentValue("XDG_DATA_HOME");
  if (home.empty()) home = homeFolder() + "/.local/share";
  std::string others = environmentValue("XDG_DATA_DIRS");
  if (others.empty()) others = "/usr/local/share:/usr/share";
  return split(home + ":" + others, ':');
}

// A value as its file writes it has escapes of its own, which are undone before those of a command.
std::string unescaped(std::string_view written) {
  constexpr std::string_view letters = "sntr", meanings = " \n\t\r";
  std::string value;
  for (std::size_t i = 0; i < written.size(); ++i) {
    if (written[i] != '\\' || i + 1 == written.size()) {
      value += written[i];
      continue;
    }
    const char letter = written[++i];
    const std::size_t known = letters.find(letter);
    value += known == std::string_view::npos ? letter : meanings[known];
  }
  return value;
}

class Command {
 public:
  Command(const DesktopEntry& entry, const std::string& document)
      : entry_(entry), document_(document) {}

  std::vector<std::string> words() {
    const std::string& exec = entry_.Exec;
    for (std::size_t i = 0; i < exec.size(); ++i) {
      const char c = exec[i];
      const bool more = i + 1 < exec.size();
      if (c == '"') {
        quoted_ = !quoted_;
        inWord_ = true;
      } else if (quoted_ && c == '\\' && more) {
        add(exec.substr(++i, 1));
      } else if (!quoted_ && c == ' ') {
        endWord();
      } else if (c == '%' && more) {
        code(exec[++i]);
      } else {
        add(exec.substr(i, 1));
      }
    }
    endWord();
    if (quoted_ || words_.empty()) return {};
    if (!placed_) words_.push_back(document_);
    return std::move(words_);
  }

 private:
  void add(const std::string& text) {
    word_ += text;
    inWord_ = true;
  }
  void endWord() {
    if (inWord_) words_.push_back(word_);
    word_.clear();
    inWord_ = false;
  }
  // Those that are not here are obsolete, and stand for nothing.
  void code(char letter) {
    switch (letter) {
      case '%':
        return add("%");
      case 'f':
      case 'F':
      case 'u':
      case 'U':
        placed_ = true;
        return add(document_);
      case 'c':
        return add(entry_.Name);
      case 'k':
        return add(entry_.file);
      case 'i':
        if (entry_.Icon.empty()) return;
        add("--icon");
        endWord();
        return add(entry_.Icon);
      default:
        return;
    }
  }

  const DesktopEntry& entry_;
  const std::string& document_;
  std::vector<std::string> words_;
  std::string word_;
  bool quoted_ = false, inWord_ = false, placed_ = false;
};

}  // namespace

DesktopEntry readDesktopEntry(std::istream& text, std::string file) {
  DesktopEntry entry{.file = std::move(file)};
  bool inEntry = false;
  for (std::string line; std::getline(text, line);) {
    if (line.starts_with('[')) inEntry = line == "[Desktop Entry]";
    const std::size_t equals = line.find('=');
    if (!inEntry || equals == std::string::npos) continue;
    const std::string key = trim(line.substr(0, equals));
    std::string value = unescaped(trim(line.substr(equals + 1)));
    if (key == "Terminal")
      entry.Terminal = value == "true";
    else if (key == "Name")
      entry.Name = std::move(value);
    else if (key == "Icon")
      entry.Icon = std::move(value);
    else if (key == "Exec")
      entry.Exec = std::move(value);
  }
  return entry;
}

DesktopEntry findDesktopEntry(const std::string& name) {
  for (const std::string& folder : dataFolders()) {
    std::string path = folder;
    path.append("/applications/").append(name);
    std::ifstream file(path);
    DesktopEntry entry = readDesktopEntry(file, path);
    if (!entry.Exec.empty()) return entry;
  }
  return {};
}

std::vector<std::string> commandFor(const DesktopEntry& entry, const std::string& document) {
  return Command(entry, document).words();
}

}  // namespace skv
