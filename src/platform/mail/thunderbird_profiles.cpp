#include "platform/mail/thunderbird_profiles.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <map>
#include <sstream>

#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/mail/local_mail_bundle.h"

namespace skv {

namespace {

// The lines of a settings file; none when it cannot be read.
std::vector<std::string> linesOf(const std::string& path) {
  std::string text;
  const auto file = openStoredFile(path);
  if (!file.ok() || readAll(file.value().get(), text) != 0) return {};
  std::vector<std::string> lines = split(text, '\n');
  for (std::string& line : lines)
    if (line.ends_with('\r')) line.pop_back();
  return lines;
}

std::vector<std::string> profileFolders(const std::string& root) {
  std::vector<std::string> folders;
  std::string path;
  bool profile = false, relative = true;
  const auto endSection = [&] {
    if (profile && !path.empty()) folders.push_back(relative ? root + '/' + path : path);
    path.clear();
    relative = true;
  };
  for (const std::string& line : linesOf(root + "/profiles.ini")) {
    if (line.starts_with('[')) {
      endSection();
      profile = line.starts_with("[Profile");
    }
    if (line.starts_with("Path=")) path = line.substr(5);
    if (line.starts_with("IsRelative=")) relative = line.substr(11) != "0";
  }
  endSection();
  return folders;
}

// The text of a literal that begins `text`: "a \"word\" \u00e9".
std::string literalAt(std::string_view text) {
  std::string value;
  if (!text.starts_with('"')) return value;
  for (std::size_t at = 1; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] != '\\' || at + 1 == text.size()) {
      value += text[at];
      continue;
    }
    const char kind = text[++at];
    const std::size_t digits = kind == 'u' ? 4 : (kind == 'x' ? 2 : 0);
    unsigned code = 0;
    if (digits == 0) {
      value += kind == 'n' || kind == 'r' ? ' ' : kind;
    } else if (at + digits < text.size()) {
      constexpr int base = 16;
      const char* number = text.data() + at + 1;
      std::from_chars(number, number + digits, code, base);
      value += CodePage(28591).decode(std::string(1, static_cast<char>(code < 256 ? code : '?')));
      at += digits;
    }
  }
  return value;
}

struct Server {
  std::string name, type, folder, relativeFolder;
};

// By the key of the settings, "server2".
std::map<std::string, Server> serversOf(const std::string& profile) {
  constexpr std::string_view begin = "user_pref(\"mail.server.";
  constexpr std::string_view middle = "\", ";
  std::map<std::string, Server> servers;
  for (const std::string& line : linesOf(profile + "/prefs.js")) {
    if (!line.starts_with(begin)) continue;
    const std::size_t dot = line.find('.', begin.size());
    const std::size_t quote = line.find(middle, begin.size());
    if (dot == std::string::npos || quote == std::string::npos || dot > quote) continue;
    const std::string key = line.substr(dot + 1, quote - dot - 1);
    Server& server = servers[line.substr(begin.size(), dot - begin.size())];
    const std::string value = literalAt(std::string_view(line).substr(quote + middle.size()));
    if (key == "name") server.name = value;
    if (key == "type") server.type = value;
    if (key == "directory") server.folder = value;
    if (key == "directory-rel") server.relativeFolder = value;
  }
  return servers;
}

std::string folderOf(const Server& server, const std::string& profile) {
  // What is told in relation to the profile holds when that was moved, or is seen from a sandbox.
  constexpr std::string_view inProfile = "[ProfD]";
  if (server.relativeFolder.starts_with(inProfile))
    return profile + '/' + server.relativeFolder.substr(inProfile.size());
  return server.folder;
}

}  // namespace

std::vector<MailAccount> thunderbirdAccounts(const std::string& root) {
  namespace fs = std::filesystem;
  std::vector<MailAccount> accounts;
  for (const std::string& profile : profileFolders(root)) {
    const std::size_t first = accounts.size();
    const auto isKnown = [&](const std::string& folder) {
      return std::any_of(accounts.begin() + static_cast<std::ptrdiff_t>(first), accounts.end(),
                         [&](const MailAccount& account) { return account.folder == folder; });
    };
    for (const auto& [key, server] : serversOf(profile)) {
      const std::string folder = folderOf(server, profile);
      if (server.type == "nntp" || !folder.starts_with('/') || isKnown(folder)) continue;
      accounts.push_back(
          {server.name.empty() ? fs::path(folder).filename().string() : server.name, folder});
    }
    // Those of accounts that the user has given up still hold mails.
    for (const char* kind : {"/Mail", "/ImapMail"}) {
      std::error_code error;
      std::vector<std::string> names;
      for (fs::directory_iterator entry(profile + kind, error), end; !error && entry != end;
           entry.increment(error))
        if (std::error_code unknown; entry->is_directory(unknown))
          names.push_back(entry->path().filename().string());
      std::ranges::sort(names);
      for (const std::string& name : names) {
        const std::string folder = (fs::path(profile + kind) / name).string();
        if (!isKnown(folder)) accounts.push_back({name, folder});
      }
    }
  }
  return accounts;
}

}  // namespace skv
