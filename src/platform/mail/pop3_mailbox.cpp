#include "platform/mail/pop3_mailbox.h"

#include <fcntl.h>

#include <algorithm>
#include <charconv>
#include <unordered_map>

#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/mail/mail_words.h"

namespace skv {

namespace {

// Nobody has more mails.
constexpr std::uint64_t mostMails = 1'000'000;
// Of headers: what is looked at, and what is kept of thousands of mails at once.
constexpr std::size_t keptHead = std::size_t{1} << 16U;
constexpr std::size_t longestSubject = 1024, keptLines = 1024;
constexpr std::size_t writtenAtOnce = std::size_t{1} << 18U;

std::uint64_t leadingNumber(std::string_view text) {
  std::uint64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// Of the headers alone, and without those by which a server marks what it has shown.
std::size_t printOf(std::string_view head) {
  std::string kept;
  for (std::size_t at = 0; at < head.size();) {
    const std::size_t end = std::min(head.find('\n', at), head.size() - 1) + 1;
    const std::string_view line = head.substr(at, end - at);
    at = end;
    if (trim(line).empty()) break;
    const std::string name = lowerAscii(line.substr(0, line.find(':')));
    if (name != "status" && name != "x-status") kept += line;
  }
  return std::hash<std::string>()(kept);
}

// A file that is empty is left alone: ext4 puts one that was cut to nothing on the disk when it is
// closed, even if it goes with that.
int emptied(int file) {
  struct stat state {};
  if (::fstat(file, &state) == 0 && state.st_size == 0) return 0;
  return ::ftruncate(file, 0) == 0 && ::lseek(file, 0, SEEK_SET) == 0 ? 0 : errno;
}

// A full disk is told of before a long transfer, where the disk can tell. 0 or the system's error
// number.
int holdRoom(int file, std::uint64_t size) {
  if (size == 0 || size > largestMail) return 0;
  const bool full = ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) != 0 &&
                    (errno == ENOSPC || errno == EDQUOT);
  return full ? errno : 0;
}

}  // namespace

void Pop3Mailbox::setAccess(const ServerAccess& access) {
  if (access_ && access_->host.name == access.host.name && access_->ports == access.ports &&
      access_->user == access.user && access_->password == access.password) {
    access_->plainAllowed = access.plainAllowed;
    return;
  }
  close();
  removed_.clear();
  access_ = access;
  topMissing_ = false;
}

Outcome Pop3Mailbox::refused(const Pop3Answer& answer) const {
  return serverFailure(*access_, "refuses", answer.words);
}

Outcome Pop3Mailbox::connect() {
  if (session_) return {};
  auto session = Pop3Session::open(*access_, options_, pulse_);
  if (!session.ok()) return session.outcome();
  const auto status = session.value()->command("STAT");
  if (!status.ok()) return status.outcome();
  if (!status.value().agreed) return refused(status.value());
  const std::uint64_t count = leadingNumber(status.value().words);
  if (count > mostMails)
    return serverFailure(*access_, "counts what cannot be", status.value().words);
  session_ = std::move(session).value();
  count_ = static_cast<int>(count);
  ++sessions_;
  entries_.clear();
  entriesLoaded_ = false;
  return {};
}

// Work that may be done again: a session that was open before may have been ended by the server
// meanwhile, and a new one is tried then.
template <class Work>
Outcome Pop3Mailbox::inSession(Work work) {
  const bool wasOpen = session_ != nullptr;
  Outcome done = connect();
  if (!done.ok()) return done;
  done = work();
  if (session_ || !wasOpen || done.number() != err::mail) return done;
  if (Outcome again = connect(); !again.ok()) return again;
  return work();
}

Result<int> Pop3Mailbox::count() {
  const Outcome counted = inSession([this] {
    const auto alive = session_->command("STAT");
    if (!alive.ok()) drop();
    if (!alive.ok()) return alive.outcome();
    if (!alive.value().agreed) return refused(alive.value());
    count_ = static_cast<int>(std::min(leadingNumber(alive.value().words), mostMails));
    return Outcome();
  });
  if (!counted.ok()) return counted;
  return count_;
}

Outcome Pop3Mailbox::loadEntries() {
  if (entriesLoaded_) return {};
  std::unordered_map<int, Entry> found;
  std::vector<int> order;
  const auto take = [&](const char* command, auto note) -> Outcome {
    const auto listing = session_->list(command, count_);
    if (!listing.ok()) {
      drop();
      return listing.outcome();
    }
    for (const auto& [number, value] : listing.value().entries) {
      const auto [entry, isNew] = found.try_emplace(number, Entry{number, {}, 0});
      if (isNew) order.push_back(number);
      note(entry->second, value);
    }
    return {};
  };
  Outcome taken = take("UIDL", [](Entry& entry, const std::string& uid) { entry.uid = uid; });
  if (taken.ok() && order.size() != static_cast<std::size_t>(count_))
    taken = take("LIST",
                 [](Entry& entry, const std::string& size) { entry.size = leadingNumber(size); });
  if (!taken.ok()) return taken;
  for (int number = 1; order.empty() && number <= count_; ++number)
    entries_.push_back({number, {}, 0});
  std::ranges::sort(order);
  for (const int number : order) entries_.push_back(found[number]);
  entriesLoaded_ = true;
  return {};
}

// A server without TOP sends the whole mail; what is not looked at goes as it comes.
Result<std::vector<MailHead>> Pop3Mailbox::headsOf(const std::vector<Entry>& entries, int lines) {
  std::vector<MailHead> heads;
  std::vector<std::size_t> without;
  const auto note = [&](std::size_t index, const std::string& text) {
    MailHead& head = heads[index];
    const Entry& entry = entries[index];
    head.key = {entry.uid, entry.size, printOf(text), lines, entry.number, sessions_, false};
    // Thousands of these are held at once.
    head.subject = headerIn(text, "Subject").substr(0, longestSubject);
    const std::size_t gap = std::min(text.find("\n\r\n"), text.size());
    head.lines = text.substr(std::min(gap + 3, text.size()), keptLines);
  };
  heads.resize(entries.size());
  std::vector<std::string> commands;
  if (!topMissing_)
    for (const Entry& entry : entries)
      commands.push_back("TOP " + std::to_string(entry.number) + " " + std::to_string(lines));
  Outcome asked =
      session_->mails(commands, keptHead,
                      [&](std::size_t index, const Pop3Answer& answer, const std::string& text) {
                        if (answer.agreed)
                          note(index, text);
                        else
                          without.push_back(index);
                        pulse_.tell(index + 1, entries.size());
                      });
  if (asked.ok() && topMissing_)
    for (std::size_t index = 0; index < entries.size(); ++index) without.push_back(index);
  for (std::size_t at = 0; asked.ok() && at < without.size(); ++at) {
    const std::size_t index = without[at];
    std::string text;
    const auto answer = session_->mail(
        "RETR " + std::to_string(entries[index].number), [&](std::string_view piece) {
          text += piece.substr(0, keptHead - std::min(keptHead, text.size()));
          return true;
        });
    asked = answer.outcome();
    if (answer.ok() && !answer.value().agreed) refusal_ = refused(answer.value());
    if (!answer.ok() || !answer.value().agreed) continue;
    topMissing_ = without.size() == entries.size() && !session_->offersTop();
    note(index, text);
    pulse_.tell(index + 1, entries.size());
  }
  if (!asked.ok()) {
    drop();
    return asked;
  }
  // A mail that is refused does not keep the others from their turn.
  std::erase_if(heads, [](const MailHead& head) { return head.key.number == 0; });
  return heads;
}

Result<std::vector<MailHead>> Pop3Mailbox::heads(int lines) {
  std::vector<MailHead> heads;
  const Outcome fetched = inSession([&]() -> Outcome {
    if (Outcome loaded = loadEntries(); !loaded.ok()) return loaded;
    heads.clear();
    refusal_ = {};
    // The first one alone shows whether the server knows TOP: many end a session that asks too
    // often for what they do not know.
    const auto second = entries_.begin() + (entries_.empty() ? 0 : 1);
    for (const auto& part :
         {std::vector(entries_.begin(), second), std::vector(second, entries_.end())}) {
      auto read = headsOf(part, lines);
      if (!read.ok()) return read.outcome();
      std::ranges::move(read.value(), std::back_inserter(heads));
    }
    // Where all are refused, the mailbox is not empty.
    return heads.empty() ? refusal_ : Outcome();
  });
  if (!fetched.ok()) return fetched;
  std::unordered_map<std::string_view, int> uids;
  for (const MailHead& head : heads) ++uids[head.key.uid];
  for (MailHead& head : heads) head.key.alone = uids[head.key.uid] == 1;
  return heads;
}

// In this session, as far as nobody else has changed the mailbox: each deletion moves the mails
// behind it up.
int Pop3Mailbox::likelyNumber(const MailKey& key) const {
  int number = key.number;
  for (const auto& [session, removed] : removed_)
    if (session >= key.session && removed < number) --number;
  return number;
}

// More than one where mails are alike in all that is known of them.
Result<std::vector<int>> Pop3Mailbox::numbersOf(const MailKey& key) {
  // One line in the place of a list of thousands.
  if (key.alone && !key.uid.empty() && !entriesLoaded_) {
    const std::string number = std::to_string(likelyNumber(key));
    const auto answer = session_->command("UIDL " + number);
    if (!answer.ok()) {
      drop();
      return answer.outcome();
    }
    if (answer.value().agreed && trim(answer.value().words) == number + " " + key.uid)
      return std::vector<int>{likelyNumber(key)};
  }
  if (Outcome loaded = loadEntries(); !loaded.ok()) return loaded;
  std::vector<int> numbers;
  std::vector<Entry> alike;
  for (const Entry& entry : entries_) {
    if (!key.uid.empty() && entry.uid == key.uid) numbers.push_back(entry.number);
    if (key.uid.empty() && entry.uid.empty() && entry.size == key.size) alike.push_back(entry);
  }
  if (alike.empty()) return numbers;
  refusal_ = {};
  const auto heads = headsOf(alike, key.lines);
  if (!heads.ok()) return heads.outcome();
  for (const MailHead& head : heads.value())
    if (head.key.print == key.print) numbers.push_back(head.key.number);
  // It may be one of those that the server does not show now.
  if (numbers.empty() && !refusal_.ok()) return refusal_;
  return numbers;
}

// 0 for a mail that is no longer there.
Result<int> Pop3Mailbox::find(const MailKey& key) {
  if (key.session == sessions_) return key.number;
  const auto numbers = numbersOf(key);
  if (!numbers.ok()) return numbers.outcome();
  return numbers.value().empty() ? 0 : numbers.value().front();
}

Outcome Pop3Mailbox::fetch(const MailKey& key, int file) {
  return inSession([&]() -> Outcome {
    const auto number = find(key);
    if (!number.ok()) return number.outcome();
    if (number.value() == 0)
      return Outcome::withText(err::mailLost, "A mail is no longer in the mailbox.");
    const std::string which = " " + std::to_string(number.value());
    auto answer = session_->command("LIST" + which);
    std::uint64_t size = 0;
    if (answer.ok()) {
      const std::string& words = answer.value().words;
      size = leadingNumber(words.substr(std::min(words.find(' ') + 1, words.size())));
      int error = emptied(file);
      if (error == 0) error = holdRoom(file, size);
      if (error != 0) return systemFailure(error, options_.workFolder);
      std::uint64_t done = 0;
      std::string unwritten;
      const auto write = [&](std::size_t atLeast) {
        if (error != 0 || unwritten.size() < atLeast) return;
        error = writeAll(file, unwritten);
        unwritten.clear();
      };
      answer = session_->mail("RETR" + which, [&](std::string_view piece) {
        unwritten += piece;
        write(writtenAtOnce);
        pulse_.tell(done += piece.size(), size);
        return error == 0;
      });
      write(0);
      if (error != 0) {
        drop();
        return systemFailure(error, options_.workFolder);
      }
    }
    if (!answer.ok()) {
      drop();
      return answer.outcome();
    }
    if (answer.value().agreed) return {};
    return Outcome::withText(err::mailLost, refused(answer.value()).description());
  });
}

Outcome Pop3Mailbox::remove(const MailKey& key) {
  Outcome failure;
  // How many mails like this one there were when the server's last word on them was lost.
  std::optional<std::size_t> inDoubt;
  for (int attempt = 0; attempt < 3; ++attempt) {
    const bool known = session_ && key.session == sessions_;
    if (failure = connect(); !failure.ok()) return failure;
    const auto numbers = numbersOf(key);
    if (!numbers.ok()) {
      failure = numbers.outcome();
      if (failure.number() == err::cancelled) return failure;
      continue;
    }
    const std::vector<int>& alike = numbers.value();
    if (alike.empty() || (inDoubt && alike.size() < *inDoubt)) return {};
    const bool itself = known && std::ranges::find(alike, key.number) != alike.end();
    const int number = itself ? key.number : alike.front();
    auto answer = session_->command("DELE " + std::to_string(number));
    const bool marked = answer.ok() && answer.value().agreed;
    if (marked) {
      inDoubt = alike.size();
      answer = session_->command("QUIT");
    }
    if (marked || !answer.ok()) drop();
    if (answer.ok() && !answer.value().agreed) return refused(answer.value());
    if (answer.ok()) {
      removed_.emplace_back(sessions_, number);
      return {};
    }
    failure = answer.outcome();
    if (failure.number() == err::cancelled) return failure;
  }
  return failure;
}

void Pop3Mailbox::close() {
  if (session_) session_->farewell();
  drop();
}

}  // namespace skv
