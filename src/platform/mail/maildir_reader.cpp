#include "platform/mail/maildir_reader.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>

#include "platform/disk/native_calls.h"
#include "platform/mail/stored_head.h"

namespace skv {

namespace {

// The file's name without its flags, which stays as long as the mail is in the folder.
std::string_view lastingName(std::string_view name) {
  for (const std::string_view mark : {":2,", ";2,", "!2,"})
    if (const std::size_t at = name.rfind(mark); at != std::string_view::npos)
      return name.substr(0, at);
  return name;
}

bool isTrashed(std::string_view name) {
  return name.substr(lastingName(name).size()).find('T') != std::string_view::npos;
}

// By the time that begins the name, as far as there is one.
struct Arrival {
  std::int64_t time = 0;
  std::string name;  // the lasting one
  explicit Arrival(std::string_view file) : name(lastingName(file)) {
    std::from_chars(name.data(), name.data() + name.size(), time);
  }
  bool operator<(const Arrival& other) const {
    return std::tie(time, name) < std::tie(other.time, other.name);
  }
};

// Mails by their arrival, with "new/NAME" or "cur/NAME". A mail program may move one from new to
// cur meanwhile: looked through in this order no mail is missed.
Result<std::map<Arrival, std::string>> mailFiles(const std::string& folder, MailPulse& pulse) {
  std::map<Arrival, std::string> files;
  for (const std::string_view sub : {"new/", "cur/"}) {
    const std::string path = (folder + '/').append(sub);
    const auto open = openStoredFolder(path);
    if (!open.ok() && sub == "new/" && open.outcome().number() == err::pathNotFound) continue;
    if (!open.ok()) return open.outcome();
    FolderReader reader(open.value().get());
    while (const dirent64* entry = reader.next()) {
      const std::string_view name = entry->d_name;
      if (!name.starts_with('.'))
        files.insert_or_assign(Arrival(name), std::string(sub).append(name));
      if (!pulse.beat()) return MailPulse::cancelled();
    }
    if (reader.error() != 0) return systemFailure(reader.error(), path);
  }
  std::erase_if(files, [](const auto& file) { return isTrashed(file.second); });
  return files;
}

// The first bytes of a mail, as many as its headers need; "" when it has gone meanwhile.
Result<std::string> headOf(const std::string& path) {
  const auto file = openStoredFile(path);
  if (!file.ok()) {
    const int number = file.outcome().number();
    // Gone meanwhile, or no mail at all.
    if (number == err::fileNotFound || number == err::pathNotFound) return std::string();
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) return std::string();
    return file.outcome();
  }
  std::string head;
  for (std::size_t wanted = 16384; head.size() < longestHead; wanted = longestHead) {
    const std::size_t before = head.size();
    head.resize(wanted);
    const ssize_t got = retried([&] {
      return ::pread(file.value().get(), head.data() + before, wanted - before,
                     static_cast<off_t>(before));
    });
    if (got < 0) return systemFailure(errno, path);
    head.resize(before + static_cast<std::size_t>(got));
    if (got == 0 || readStoredHead(head).whole) break;
  }
  return head;
}

class MaildirPlace : public MailPlace {
 public:
  explicit MaildirPlace(std::string folder) : folder_(std::move(folder)) {}

  Result<MailFile> take(const FoundMail& mail, MailPulse& pulse) const override {
    auto file = openStoredFile(folder_ + '/' + mail.file);
    if (!file.ok()) {
      const auto files = mailFiles(folder_, pulse);
      if (!files.ok()) return files.outcome();
      const auto now = files.value().find(Arrival(std::string_view(mail.file).substr(4)));
      if (now == files.value().end()) return gone(mail);
      file = openStoredFile(folder_ + '/' + now->second);
      if (!file.ok()) return file.outcome();
    }
    struct stat status {};
    if (::fstat(file.value().get(), &status) != 0) return systemFailure(errno, mail.file);
    return MailFile{std::make_shared<const Descriptor>(std::move(file).value()), 0, status.st_size};
  }

 private:
  const std::string folder_;
};

}  // namespace

bool isMaildir(const std::string& folder) {
  struct stat status {};
  return ::stat((folder + "/cur").c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

Result<std::vector<FoundMail>> scanMaildir(const std::string& folder, const OutlookFilter& filter,
                                           std::size_t limit, MailPulse& pulse) {
  const auto files = mailFiles(folder, pulse);
  if (!files.ok()) return files.outcome();
  std::vector<FoundMail> found;
  Outcome unread;
  std::uint64_t done = 0;
  for (const auto& [arrival, file] : files.value()) {
    if (found.size() >= limit) break;
    if (!pulse.beat()) return MailPulse::cancelled();
    pulse.tell(++done, files.value().size());
    const auto text = headOf(std::string(folder).append("/").append(file));
    if (!text.ok()) {
      unread = text.outcome();
      continue;
    }
    const StoredHead head = readStoredHead(text.value());
    if (head.deleted) continue;
    if (auto subject = filter.passed(head.subject); subject && !text.value().empty())
      found.push_back({.subject = std::move(*subject), .file = file});
  }
  // One mail that cannot be read does not keep the others from their turn.
  if (found.empty() && !unread.ok()) return unread;
  return found;
}

std::unique_ptr<MailPlace> maildirPlace(std::string folder) {
  return std::make_unique<MaildirPlace>(std::move(folder));
}

}  // namespace skv
