#include "platform/desktop_shell.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "base/text.h"
#include "platform/os_error.h"
#include "platform/user_folders.h"

extern char** environ;

namespace skv {

namespace {

namespace fs = std::filesystem;

// Results of the classic shell call.
constexpr int shellStarted = 33;
constexpr int shellFileNotFound = 2;
constexpr int shellNoAssociation = 31;

std::string findProgram(const std::string& name) {
  std::error_code error;
  if (name.find('/') != std::string::npos) return fs::exists(name, error) ? name : std::string();
  for (const std::string& folder : split(environmentValue("PATH"), ':')) {
    const std::string program = folder + "/" + name;
    if (!folder.empty() && ::access(program.c_str(), X_OK) == 0 &&
        !fs::is_directory(program, error))
      return program;
  }
  return {};
}

std::vector<char*> argumentsOf(std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return arguments;
}

// Starts a program that is nobody's child: it outlives this one, and nobody has to wait for it.
bool startDetached(std::vector<std::string> command) {
  if (command.empty()) return false;
  const std::string program = findProgram(command[0]);
  if (program.empty()) return false;
  auto arguments = argumentsOf(command);
  const pid_t child = ::fork();
  if (child < 0) return false;
  if (child == 0) {
    ::setsid();
    if (::fork() != 0) ::_exit(0);
    const int null = ::open("/dev/null", O_RDWR);
    ::dup2(null, STDIN_FILENO);
    ::execv(program.c_str(), arguments.data());
    ::_exit(127);
  }
  int status = 0;
  retried([&] { return ::waitpid(child, &status, 0); });
  return true;
}

// The first line that a program prints.
std::string firstLineOf(std::vector<std::string> command) {
  const std::string program = findProgram(command[0]);
  std::array<int, 2> ends{};
  if (program.empty() || ::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  posix_spawn_file_actions_t actions;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawn_file_actions_adddup2(&actions, writing.get(), STDOUT_FILENO);
  ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  auto arguments = argumentsOf(command);
  pid_t child = 0;
  const int failed =
      ::posix_spawn(&child, program.c_str(), &actions, nullptr, arguments.data(), environ);
  ::posix_spawn_file_actions_destroy(&actions);
  writing = Descriptor();
  if (failed != 0) return {};
  std::string text;
  std::array<char, 512> buffer;
  for (;;) {
    const ssize_t count =
        retried([&] { return ::read(reading.get(), buffer.data(), buffer.size()); });
    if (count <= 0) break;
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  int status = 0;
  retried([&] { return ::waitpid(child, &status, 0); });
  return text.substr(0, text.find('\n'));
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
  for (const std::string& folder : dataFolders()) {
    std::ifstream file(folder + "/applications/" + entry);
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
  const bool isAddress = target.find("://") != std::string_view::npos;
  if (!isAddress) {
    const auto native = files_.nativePath(target);
    if (!native.ok() || !files_.attributes(target).ok()) return shellFileNotFound;
    opened = native.value();
  }
  return startDetached({"xdg-open", opened}) ? shellStarted : shellNoAssociation;
}

Outcome DesktopShell::editText(std::string_view path) {
  const auto native = files_.nativePath(path);
  if (!native.ok()) return native.outcome();
  const std::string entry = firstLineOf({"xdg-mime", "query", "default", "text/plain"});
  if (!entry.empty() && startDetached(desktopCommand(execOf(entry), native.value()))) return {};
  for (const char* editor : {"gnome-text-editor", "gedit", "kate", "kwrite", "xed", "mousepad",
                             "pluma", "featherpad", "leafpad", "l3afpad", "geany", "xedit"})
    if (startDetached({editor, native.value()})) return {};
  return Outcome::withText(err::fileNotFound,
                           "There is no text editor on this desktop for plain text files.");
}

}  // namespace skv
