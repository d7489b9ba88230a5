#include "platform/mail/mail_folders.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <set>

#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"
#include "platform/mail/local_mail_bundle.h"
#include "platform/mail/mail_words.h"
#include "platform/mail/maildir_reader.h"
#include "platform/mail/thunderbird_profiles.h"

namespace skv {

namespace {

constexpr std::string_view inbox = "Inbox";

std::optional<struct stat> statusOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return std::nullopt;
  return status;
}

bool isFolder(const std::string& path) {
  const auto status = statusOf(path);
  return status && S_ISDIR(status->st_mode);
}

enum class Content { none, empty, mails };

Content contentOf(const std::string& path) {
  const auto file = openStoredFile(path);
  if (!file.ok()) return Content::none;
  std::array<char, 16> buffer;
  const ssize_t got =
      retried([&] { return ::pread(file.value().get(), buffer.data(), buffer.size(), 0); });
  if (got < 0) return Content::none;
  std::string_view text(buffer.data(), static_cast<std::size_t>(got));
  if (text.empty()) return Content::empty;
  text.remove_prefix(std::min(text.find_first_not_of("\r\n"), text.size()));
  return text.starts_with("From ") ? Content::mails : Content::none;
}

// Names of folders go in modified UTF-7 on many disks ("Entw&APw-rfe").
std::string decodedName(const std::string& name) {
  std::string decoded;
  for (std::size_t at = 0; at < name.size();) {
    if (name[at] != '&') {
      decoded += name[at++];
      continue;
    }
    const std::size_t end = name.find('-', at);
    if (end == std::string::npos) return name;
    const std::string code = name.substr(at, end + 1 - at);
    const std::size_t digits = code.size() - 2;
    // Sixteen bits to a character, six to a digit.
    if (digits % 8 != 0 && digits % 8 != 3 && digits % 8 != 6) return name;
    decoded += digits == 0 ? "&" : decodedText(code, "UTF-7-IMAP");
    at = end + 1;
  }
  const bool sound =
      isUtf8(decoded) && decoded.find('/') == std::string::npos && onOneLine(decoded) == decoded;
  return sound ? decoded : name;
}

// A level of a Maildir++ name. Evolution writes "_2E" for what has no place there.
std::string dottedName(const std::string& name) {
  std::string decoded;
  for (std::size_t at = 0; at < name.size(); ++at) {
    unsigned code = 0;
    constexpr int base = 16;
    if (name[at] == '_' && at + 2 < name.size() && std::isxdigit(name[at + 1]) != 0 &&
        std::isxdigit(name[at + 2]) != 0)
      std::from_chars(name.data() + at + 1, name.data() + at + 3, code, base);
    const bool fits = code >= ' ' && code < 0x7F && code != '/';
    decoded += fits ? static_cast<char>(code) : name[at];
    if (fits) at += 2;
  }
  return decodedName(decoded);
}

class FolderWalk {
 public:
  std::vector<MailFolder> found;

  // `folder`: one without accounts that holds mail folders, and may be a Maildir itself, whose
  // place is "Inbox".
  void visitStore(const std::string& folder, const std::string& name) {
    above_ = 1;
    if (isMaildir(folder)) add((name + '/').append(inbox), folder, true);
    visit(folder, name, 0);
  }

  // Several accounts of one name are told apart.
  void visitAccount(const MailAccount& account, const std::string& program) {
    std::string name = account.name;
    std::ranges::replace(name, '/', '-');
    std::string unique = name;
    for (int number = 2; !accounts_.insert(unique).second; ++number)
      unique = name + " (" + std::to_string(number) + ")";
    above_ = 2;
    visit(account.folder, (program + '/').append(unique), 0);
  }

  void add(std::string name, const std::string& path, bool maildir) {
    found.push_back({std::move(name), path, maildir, above_});
  }

 private:
  static constexpr int deepest = 16;
  static constexpr int mostEntries = 50'000;

  std::vector<std::string> entriesOf(const std::string& folder) {
    std::vector<std::string> names;
    const auto open = openStoredFolder(folder);
    if (!open.ok()) return names;
    struct stat status {};
    if (::fstat(open.value().get(), &status) != 0 ||
        !visited_.insert({status.st_dev, status.st_ino}).second)
      return names;
    FolderReader reader(open.value().get());
    while (const dirent64* entry = reader.next()) {
      if (++entries_ > mostEntries) break;
      names.emplace_back(entry->d_name);
    }
    std::ranges::sort(names);
    return names;
  }

  void visit(const std::string& folder, const std::string& name, int depth) {
    if (depth > deepest) return;
    const bool maildir = isMaildir(folder);
    for (const std::string& entry : entriesOf(folder)) {
      const std::string path = std::string(folder).append("/").append(entry);
      if (maildir && (entry == "cur" || entry == "new" || entry == "tmp")) continue;
      if (entry.starts_with('.'))
        visitDotted(path, entry, name, depth);
      else if (isFolder(path))
        visitFolder(path, entry, name, depth);
      else if (isMbox(path, entry))
        add(name + '/' + decodedName(entry), path, false);
    }
  }

  void visitFolder(const std::string& path, const std::string& entry, const std::string& name,
                   int depth) {
    constexpr std::string_view subfolders = ".sbd";
    if (entry.ends_with(subfolders)) {
      const std::string above = entry.substr(0, entry.size() - subfolders.size());
      return visit(path, name + '/' + decodedName(above), depth + 1);
    }
    const std::string own = name + '/' + decodedName(entry);
    if (isMaildir(path)) add(own, path, true);
    visit(path, own, depth + 1);
  }

  // ".a.b" of Maildir++ lies beside its parents, ".a.directory" of KMail holds the folders below a.
  void visitDotted(const std::string& path, const std::string& entry, const std::string& name,
                   int depth) {
    constexpr std::string_view subfolders = ".directory";
    if (isMaildir(path)) {
      std::string own = name;
      for (const std::string& level : split(std::string_view(entry).substr(1), '.'))
        own += '/' + dottedName(level);
      add(own, path, true);
    } else if (entry.size() > subfolders.size() + 1 && entry.ends_with(subfolders)) {
      const std::string above = entry.substr(1, entry.size() - subfolders.size() - 1);
      visit(path, name + '/' + decodedName(above), depth + 1);
    }
  }

  // Beside the mails lie files of the program itself. Files with a number for a name are mails.
  static bool isMbox(const std::string& path, const std::string& entry) {
    if (entry.find_first_not_of("0123456789") == std::string::npos) return false;
    for (const std::string_view other : {".msf", ".dat", ".html", ".json", ".sqlite", ".lock"})
      if (entry.ends_with(other)) return false;
    const Content content = contentOf(path);
    return content == Content::mails ||
           (content == Content::empty && entry.find('.') == std::string::npos);
  }

  std::set<std::string> accounts_;
  std::set<std::pair<dev_t, ino_t>> visited_;
  int entries_ = 0;
  int above_ = 1;
};

std::string dataHome() {
  const std::string home = environmentValue("XDG_DATA_HOME");
  return home.starts_with('/') ? home : homeFolder() + "/.local/share";
}

std::string configHome() {
  const std::string home = environmentValue("XDG_CONFIG_HOME");
  return home.starts_with('/') ? home : homeFolder() + "/.config";
}

// The machine's mailbox of this user.
std::string spoolFile() {
  if (std::string named = environmentValue("MAIL"); named.starts_with('/')) return named;
  const std::string user = environmentValue("USER");
  return user.empty() || user.find('/') != std::string::npos ? "" : "/var/mail/" + user;
}

std::vector<std::string> levelsOf(std::string_view text) {
  std::vector<std::string> levels = split(text, '/');
  std::erase(levels, "");
  return levels;
}

bool endsWith(const std::vector<std::string>& levels, const std::vector<std::string>& last) {
  return last.size() <= levels.size() &&
         std::equal(last.begin(), last.end(),
                    levels.end() - static_cast<std::ptrdiff_t>(last.size()));
}

// How exactly a folder is meant, 0 most; none when it is not.
std::optional<int> fitOf(const MailFolder& folder, const std::vector<std::string>& wanted,
                         bool anyLetters) {
  const std::string name = anyLetters ? upper(folder.name) : folder.name;
  const auto levels = levelsOf(name);
  if (endsWith(levels, wanted)) {
    const int passed = static_cast<int>(levels.size() - wanted.size());
    if (passed == 0 || passed > folder.above) return passed == 0 ? 0 : 3;
    return passed < folder.above ? 1 : 2;
  }
  // As the disk has it, where an account is called by its server.
  auto path = levelsOf(anyLetters ? upper(folder.path) : folder.path);
  for (std::string& level : path)
    for (const std::string_view subfolders : {".sbd", ".SBD"})
      if (level.ends_with(subfolders)) level.resize(level.size() - subfolders.size());
  constexpr int byPath = 4;
  return endsWith(path, wanted) ? std::optional<int>(byPath) : std::nullopt;
}

std::vector<MailFolder> bestOf(const std::vector<MailFolder>& folders,
                               const std::vector<std::string>& wanted, bool anyLetters) {
  std::vector<MailFolder> best;
  std::optional<int> bestFit;
  for (const MailFolder& folder : folders) {
    const auto fit = fitOf(folder, wanted, anyLetters);
    if (!fit || (bestFit && *fit > *bestFit)) continue;
    if (fit != bestFit) best.clear();
    bestFit = fit;
    best.push_back(folder);
  }
  return best;
}

Outcome noFolder(std::string_view text) {
  return Outcome::withText(err::mail,
                           "There is no mail folder \"" + onOneLine(text) + "\" on this computer.");
}

bool holdsFile(const std::string& path) {
  const auto folder = openStoredFolder(path);
  if (!folder.ok()) return false;
  FolderReader reader(folder.value().get());
  while (const dirent64* entry = reader.next())
    if (entry->d_name[0] != '.') return true;
  return false;
}

bool isEmpty(const MailFolder& folder) {
  return folder.maildir ? !holdsFile(folder.path + "/cur") && !holdsFile(folder.path + "/new")
                        : contentOf(folder.path) == Content::empty;
}

Result<MailFolder> folderByLevels(std::string_view text) {
  const auto folders = localMailFolders();
  const auto wanted = levelsOf(text);
  if (wanted.empty()) return noFolder(text);
  auto best = bestOf(folders, wanted, false);
  if (best.empty()) best = bestOf(folders, levelsOf(upper(text)), true);
  if (best.empty()) return noFolder(text);
  if (best.size() > 1) {
    if (!std::ranges::all_of(best, isEmpty)) std::erase_if(best, isEmpty);
  }
  if (best.size() == 1) return best.front();
  std::string names;
  constexpr std::size_t mostNames = 8;
  for (std::size_t index = 0; index < std::min(best.size(), mostNames); ++index)
    names += "\n" + best[index].name;
  if (best.size() > mostNames) names += "\n...";
  return Outcome::withText(err::mail, "There are several mail folders \"" + onOneLine(text) +
                                          "\". Please choose one of them:" + names);
}

Result<MailFolder> folderAt(std::string path, std::string_view text) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  const auto status = statusOf(path);
  if (!status) return isMissing(errno) ? noFolder(text) : systemFailure(errno, text);
  if (isMaildir(path)) return MailFolder{std::string(text), path, true, 0};
  if (S_ISREG(status->st_mode)) {
    if (::access(path.c_str(), R_OK) != 0) return systemFailure(errno, text);
    if (contentOf(path) != Content::none) return MailFolder{std::string(text), path, false, 0};
  }
  return Outcome::withText(
      err::mail,
      "\"" + onOneLine(text) + "\" is neither a mail file (mbox) nor a mail folder (Maildir).");
}

bool isWindowsPath(std::string_view text) {
  return text.starts_with('\\') ||
         (text.size() > 2 && text[1] == ':' && (text[2] == '\\' || text[2] == '/') &&
          std::isalpha(static_cast<unsigned char>(text[0])) != 0);
}

}  // namespace

std::vector<MailFolder> localMailFolders() {
  const std::string home = homeFolder();
  FolderWalk walk;
  for (const std::string& root : {home + "/.thunderbird", configHome() + "/thunderbird",
                                  home + "/snap/thunderbird/common/.thunderbird",
                                  home + "/.var/app/org.mozilla.Thunderbird/.thunderbird",
                                  home + "/.var/app/org.mozilla.thunderbird/.thunderbird",
                                  home + "/.var/app/net.thunderbird.Thunderbird/.thunderbird",
                                  home + "/.var/app/eu.betterbird.Betterbird/.thunderbird"})
    for (const MailAccount& account : thunderbirdAccounts(root))
      walk.visitAccount(account, "Thunderbird");
  walk.visitStore(dataHome() + "/evolution/mail/local", "Evolution");
  walk.visitStore(home + "/.var/app/org.gnome.Evolution/data/evolution/mail/local", "Evolution");
  walk.visitStore(dataHome() + "/local-mail", "KMail");
  walk.visitStore(home + "/.var/app/org.kde.kmail2/data/local-mail", "KMail");
  walk.visitStore(home + "/Maildir", "Maildir");
  walk.visitStore(home + "/Mail", "Mail");
  walk.visitStore(home + "/mail", "mail");
  if (const std::string spool = spoolFile(); contentOf(spool) == Content::mails)
    walk.add(std::string("Mailbox/").append(inbox), spool, false);

  std::vector<std::pair<std::string, MailFolder>> sorted;
  sorted.reserve(walk.found.size());
  for (MailFolder& folder : walk.found) sorted.emplace_back(upper(folder.name), std::move(folder));
  std::ranges::stable_sort(sorted, [](const auto& a, const auto& b) {
    return std::tie(a.first, a.second.name) < std::tie(b.first, b.second.name);
  });
  std::vector<MailFolder> folders;
  folders.reserve(sorted.size());
  for (auto& [key, folder] : sorted) folders.push_back(std::move(folder));
  return folders;
}

Result<MailFolder> findMailFolder(std::string_view text, const FileSystem& files) {
  const std::string folder = trim(text);
  if (folder.empty()) return Outcome::withText(err::mail, "There is no mail folder chosen.");
  if (folder.starts_with('/')) return folderAt(folder, folder);
  if (folder.starts_with("~/")) return folderAt(homeFolder() + folder.substr(1), folder);
  if (!isWindowsPath(folder)) return folderByLevels(folder);
  const auto native = files.nativePath(folder);
  return native.ok() ? folderAt(native.value(), folder) : noFolder(folder);
}

}  // namespace skv
