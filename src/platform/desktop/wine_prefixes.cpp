#include "platform/desktop/wine_prefixes.h"

#include <algorithm>
#include <climits>
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
  // Proton's own is in the folder that its launchers call the prefix.
  void add(const fs::path& prefix) {
    if (!addPlain(prefix)) addPlain(prefix / "pfx");
  }
  // The prefix in which a native path lies, if it lies in one.
  void addAround(fs::path path) {
    for (; path.has_relative_path(); path = path.parent_path())
      if (path.filename() == "drive_c") add(path.parent_path());
  }
  std::vector<std::string> found() && { return std::move(found_); }

 private:
  bool addPlain(const fs::path& prefix) {
    std::error_code error;
    if (!fs::is_directory(prefix / "dosdevices", error)) return false;
    const fs::path real = fs::canonical(prefix, error);
    if (!error && seen_.insert(real.string()).second) found_.push_back(real.string());
    return true;
  }

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

// Where a value of a YAML file leads, whatever quotes stand around it; "" when the line is not that
// of the key, or the value no full path.
fs::path pathOf(const std::string& line, std::string_view key, const fs::path& home) {
  std::string value = trim(line);
  if (!value.starts_with(key) || value.substr(key.size(), 1) != ":") return {};
  value = trim(value.substr(key.size() + 1));
  for (const char quote : {'"', '\''})
    if (value.size() > 1 && value.front() == quote && value.back() == quote)
      value = value.substr(1, value.size() - 2);
  if (value.size() >= PATH_MAX) return {};
  if (value.starts_with("~/")) return home / value.substr(2);
  return value.starts_with('/') ? fs::path(value) : fs::path();
}

// Files for the games, for those of one runner and for all: each may name a prefix, the program in
// it, or the folder in which prefixes are made.
void addLutris(Prefixes& prefixes, const fs::path& home, const fs::path& folder) {
  std::vector<fs::path> files = {folder / "system.yml"};
  for (const char* kind : {"games", "runners"})
    for (const fs::path& file : entriesOf(folder / kind))
      if (file.extension() == ".yml") files.push_back(file);
  for (const fs::path& file : files)
    for (const std::string& line : linesOf(file)) {
      if (const fs::path path = pathOf(line, "prefix", home); !path.empty()) prefixes.add(path);
      if (const fs::path path = pathOf(line, "exe", home); !path.empty()) prefixes.addAround(path);
      if (const fs::path path = pathOf(line, "game_path", home); !path.empty())
        addEach(prefixes, path);
    }
}

void addBottles(Prefixes& prefixes, const fs::path& home, const fs::path& folder) {
  addEach(prefixes, folder / "bottles");
  for (const std::string& line : linesOf(folder / "data.yml"))
    if (const fs::path path = pathOf(line, "custom_bottles_path", home); !path.empty())
      addEach(prefixes, path);
}

// Its JSON files name prefixes, and the folder in which they are made.
void addHeroic(Prefixes& prefixes, const fs::path& config) {
  std::vector<fs::path> files = entriesOf(config / "GamesConfig");
  files.push_back(config / "config.json");
  for (const fs::path& file : files)
    for (const std::string& line : linesOf(file)) {
      const auto pieces = split(line, '"');  // a name and its text are three apart
      for (std::size_t i = 1; i + 2 < pieces.size(); ++i) {
        if (!pieces[i + 2].starts_with('/')) continue;
        if (pieces[i] == "winePrefix") prefixes.add(pieces[i + 2]);
        if (pieces[i] == "defaultWinePrefix") addEach(prefixes, pieces[i + 2]);
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
    for (const fs::path& game : entriesOf(library / "steamapps/compatdata")) prefixes.add(game);
}

void addPlayOnLinux(Prefixes& prefixes, const fs::path& home) {
  addEach(prefixes, home / ".PlayOnLinux/wineprefix");
  addEach(prefixes, home / ".Phoenicis/containers/wineprefix");
}

// The programs whose files lie below a home of their own: the user's, or that of a Flatpak.
void addOfHome(Prefixes& prefixes, const fs::path& home, const fs::path& config,
               const fs::path& data) {
  addEach(prefixes, data / "wineprefixes");
  prefixes.add(data / "wine");  // of Wine as a Flatpak
  for (const fs::path& folder : {config, data}) addLutris(prefixes, home, folder / "lutris");
  addBottles(prefixes, home, data / "bottles");
  addHeroic(prefixes, config / "heroic");
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
  for (const char* folder :
       {"Games", "Games/umu", "Games/Heroic/Prefixes", "Games/Heroic/Prefixes/default"})
    addEach(prefixes, home / folder);
  addOfHome(prefixes, home, folderFrom("XDG_CONFIG_HOME", home / ".config"),
            folderFrom("XDG_DATA_HOME", home / ".local/share"));
  addPlayOnLinux(prefixes, home);
  addEach(prefixes, home / ".cxoffice");
  for (const char* steam : {".steam/steam", ".steam/root", "snap/steam/common/.local/share/Steam"})
    addSteam(prefixes, home / steam);
  // A Flatpak's home is the user's; its configuration and data lie apart, and with some of them the
  // hidden folders that they would make in the home.
  for (const fs::path& app : entriesOf(home / ".var/app")) {
    addOfHome(prefixes, home, app / "config", app / "data");
    prefixes.add(app / ".wine");
    addPlayOnLinux(prefixes, app);
  }
  addSteam(prefixes, home / ".var/app/com.valvesoftware.Steam/.local/share/Steam");
  return std::move(prefixes).found();
}

}  // namespace skv
