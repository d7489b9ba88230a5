#include "platform/desktop/wine_prefixes.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <unordered_set>

#include "base/text.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

namespace fs = std::filesystem;

// No file of a launcher is longer; what is, was not written by one.
constexpr std::streamsize longestFile = 1 << 20;

class Prefixes {
 public:
  void add(const fs::path& prefix) {
    std::error_code error;
    if (!fs::is_directory(prefix / "dosdevices", error)) return;
    const fs::path real = fs::canonical(prefix, error);
    if (!error && seen_.insert(real.string()).second) found_.push_back(real.string());
  }
  std::vector<std::string> found() && { return std::move(found_); }

 private:
  std::unordered_set<std::string> seen_;
  std::vector<std::string> found_;
};

// What lies in a folder, by name; nothing when it cannot be listed.
std::vector<fs::path> entriesOf(const fs::path& folder) {
  std::vector<fs::path> entries;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error))
    entries.push_back(entry->path());
  std::ranges::sort(entries);
  return entries;
}

void addEach(Prefixes& prefixes, const fs::path& folder) {
  for (const fs::path& entry : entriesOf(folder)) prefixes.add(entry);
}

std::vector<std::string> linesOf(const fs::path& file) {
  std::error_code error;
  if (!fs::is_regular_file(file, error)) return {};
  std::ifstream stream(file, std::ios::binary);
  std::string text(longestFile, '\0');
  stream.read(text.data(), longestFile);
  text.resize(static_cast<std::size_t>(stream.gcount()));
  return split(text, '\n');
}

// The value of a line `prefix: /home/u/Games/fs2002`, whatever quotes stand around it.
std::string lutrisPrefix(const std::string& line) {
  std::string value = trim(line);
  if (!value.starts_with("prefix:")) return {};
  value = trim(value.substr(7));
  for (const char quote : {'"', '\''})
    if (value.size() > 1 && value.front() == quote && value.back() == quote)
      value = value.substr(1, value.size() - 2);
  return value;
}

void addLutris(Prefixes& prefixes, const fs::path& home, const fs::path& config,
               const fs::path& data) {
  for (const fs::path& games : {config / "lutris/games", data / "lutris/games"})
    for (const fs::path& game : entriesOf(games)) {
      if (game.extension() != ".yml") continue;
      for (const std::string& line : linesOf(game)) {
        std::string prefix = lutrisPrefix(line);
        if (prefix.starts_with("~/")) prefix = home / prefix.substr(2);
        if (prefix.starts_with('/')) prefixes.add(prefix);
      }
    }
}

// The value of a line `"path"  "/mnt/games/SteamLibrary"`.
std::string steamLibrary(const std::string& line) {
  const auto pieces = split(line, '"');
  return pieces.size() >= 5 && pieces[1] == "path" ? pieces[3] : std::string();
}

void addSteam(Prefixes& prefixes, const fs::path& steam) {
  std::vector<fs::path> libraries = {steam};
  for (const std::string& line : linesOf(steam / "steamapps/libraryfolders.vdf"))
    if (const std::string library = steamLibrary(line); library.starts_with('/'))
      libraries.emplace_back(library);
  for (const fs::path& library : libraries)
    for (const fs::path& game : entriesOf(library / "steamapps/compatdata"))
      prefixes.add(game / "pfx");
}

// The programs whose files lie below a home of their own: the user's, or that of a Flatpak.
void addOfHome(Prefixes& prefixes, const fs::path& home, const fs::path& config,
               const fs::path& data) {
  addEach(prefixes, data / "wineprefixes");
  addLutris(prefixes, home, config, data);
  addEach(prefixes, data / "bottles/bottles");
  addSteam(prefixes, data / "Steam");
}

fs::path folderFrom(const char* variable, const fs::path& fallback) {
  const std::string told = environmentValue(variable);
  return told.starts_with('/') ? fs::path(told) : fallback;
}

}  // namespace

std::vector<std::string> winePrefixes() {
  const fs::path home = homeFolder();
  Prefixes prefixes;
  if (const std::string told = environmentValue("WINEPREFIX"); !told.empty()) prefixes.add(told);
  prefixes.add(home / ".wine");
  for (const fs::path& entry : entriesOf(home))
    if (entry.filename().string().starts_with(".wine")) prefixes.add(entry);
  addEach(prefixes, home / "Games");
  addOfHome(prefixes, home, folderFrom("XDG_CONFIG_HOME", home / ".config"),
            folderFrom("XDG_DATA_HOME", home / ".local/share"));
  addEach(prefixes, home / ".PlayOnLinux/wineprefix");
  addEach(prefixes, home / ".Phoenicis/containers/wineprefix");
  addEach(prefixes, home / ".cxoffice");
  for (const char* steam : {".steam/steam", ".steam/root", "snap/steam/common/.local/share/Steam"})
    addSteam(prefixes, home / steam);
  // A Flatpak's home is the user's; only its configuration and data lie apart.
  for (const fs::path& app : entriesOf(home / ".var/app"))
    addOfHome(prefixes, home, app / "config", app / "data");
  addSteam(prefixes, home / ".var/app/com.valvesoftware.Steam/.local/share/Steam");
  return std::move(prefixes).found();
}

}  // namespace skv
