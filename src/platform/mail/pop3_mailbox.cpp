#include "platform/mail/pop3_mailbox.h"

#include <fcntl.h>

#include <algorithm>
#include <map>
#include <tuple>

#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/mail/stored_head.h"

namespace skv {

namespace {

// Nobody has more mails.
constexpr std::uint64_t mostMails = 1'000'000;
// What is kept of thousands of mails at once. A subject is longer where memory allows it.
constexpr std::size_t keptSubject = 1024, keptLines = 1024;
constexpr std::size_t roomForSubjects = std::size_t{32} << 20U;
constexpr std::size_t writtenAtOnce = std::size_t{1} << 18U;

Outcome lost(const std::string& text) { return Outcome::withText(err::mailLost, text); }

// The headers of a mail that comes whole.
class HeadOfTransfer {
 public:
  void take(std::string_view piece) {
    text_ += piece.substr(0, longestHead - std::min(longestHead, text_.size()));
  }
  std::uint64_t markOfSender() const {
    return skv::markOfSender(std::string_view(text_).substr(0, readStoredHead(text_).length));
  }

 private:
  std::string text_;
};

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
  listed_.clear();
  access_ = access;
  topMissing_ = false;
}

Outcome Pop3Mailbox::refused(const Pop3Answer& answer) const {
  return serverFailure(*access_, "refuses", answer.words);
}

Outcome Pop3Mailbox::misnamed() const {
  return serverFailure(*access_, "names another mail by the name that this one had");
}

void Pop3Mailbox::drop() {
  if (session_) end_ = session_->end();
  session_.reset();
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

template <class Work>
Outcome Pop3Mailbox::inSession(Work work) {
  const bool wasOpen = session_ != nullptr;
  Outcome done = connect();
  if (!done.ok()) return done;
  done = work();
  if (session_ || !wasOpen || done.number() != err::mail || end_ != Pop3Session::End::broken)
    return done;
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
  if (taken.ok())
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
Result<std::vector<MailHead>> Pop3Mailbox::headsOf(const std::vector<Entry>& entries) {
  std::vector<MailHead> heads;
  std::vector<std::size_t> without;
  std::size_t room = roomForSubjects;
  const auto note = [&](std::size_t index, const std::string& text) {
    MailHead& head = heads[index];
    const Entry& entry = entries[index];
    const StoredHead stored = readStoredHead(text);
    const std::string_view headers = std::string_view(text).substr(0, stored.length);
    head.key = {entry.uid, entry.size, markOfHead(headers), markOfSender(headers), entry.number,
                sessions_, 1};
    head.subject = stored.subject.substr(0, std::max(room, keptSubject));
    room -= std::min(room, head.subject.size());
    // Behind the empty line.
    const std::size_t body = stored.whole ? text.find('\n', stored.length) : text.size();
    if (body < text.size()) head.lines = text.substr(body + 1, keptLines);
  };
  heads.resize(entries.size());
  std::vector<std::string> commands;
  if (!topMissing_)
    for (const Entry& entry : entries)
      commands.push_back("TOP " + std::to_string(entry.number) + " " + std::to_string(lines_));
  Outcome asked =
      session_->mails(commands, longestHead,
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
          text += piece.substr(0, longestHead - std::min(longestHead, text.size()));
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
    lines_ = lines;
    // The first one alone shows whether the server knows TOP: many end a session that asks too
    // often for what they do not know.
    const auto second = entries_.begin() + (entries_.empty() ? 0 : 1);
    for (const auto& part :
         {std::vector(entries_.begin(), second), std::vector(second, entries_.end())}) {
      auto read = headsOf(part);
      if (!read.ok()) return read.outcome();
      std::ranges::move(read.value(), std::back_inserter(heads));
    }
    // Where all are refused, the mailbox is not empty.
    return heads.empty() ? refusal_ : Outcome();
  });
  if (!fetched.ok()) return fetched;
  std::map<std::tuple<std::string_view, std::uint64_t, std::uint64_t>, std::size_t> alike;
  const auto identity = [](const MailKey& key) {
    return std::tuple(std::string_view(key.uid), key.size, key.mark);
  };
  for (const MailHead& head : heads) ++alike[identity(head.key)];
  listed_.clear();
  for (MailHead& head : heads) {
    head.key.alike = alike[identity(head.key)];
    if (!head.key.uid.empty()) listed_[head.key.uid] = head.key.mark;
  }
  return heads;
}

Outcome Pop3Mailbox::fetch(const MailKey& key, int file) {
  Outcome done;
  for (int breaks = 0; breaks < 2;) {
    const bool wasOpen = session_ != nullptr;
    if (Outcome connected = connect(); !connected.ok()) return connected;
    bool begun = false;
    done = fetchOnce(key, file, begun);
    if (done.ok()) silences_ = 0;
    if (session_ || done.number() != err::mail) return done;
    const bool broken = end_ == Pop3Session::End::broken;
    if (!begun && (!broken || !wasOpen)) return done;
    if (!begun) continue;
    // A server that is silent on one mail may have another one; a second silence is its own.
    if (end_ == Pop3Session::End::silent && silences_++ > 0) return done;
    breaks += broken ? 1 : 2;
  }
  return lost(done.description());
}

Outcome Pop3Mailbox::fetchOnce(const MailKey& key, int file, bool& begun) {
  const auto place = find(key);
  if (!place.ok()) return place.outcome();
  if (place.value().number == 0)
    return lost(misnamed_ ? misnamed().description() : "The mail is no longer in the mailbox.");
  const std::string which = " " + std::to_string(place.value().number);
  const auto listed = session_->command("LIST" + which);
  if (!listed.ok()) {
    drop();
    return listed.outcome();
  }
  const std::string& words = listed.value().words;
  const std::uint64_t size =
      listed.value().agreed
          ? leadingNumber(words.substr(std::min(words.find(' ') + 1, words.size())))
          : 0;
  if (size > largestMail)
    return lost("It has " + std::to_string(size >> 20U) + " MB, and " +
                std::to_string(largestMail >> 20U) + " MB is the most.");
  begun = true;
  return receive(which, size, key, file);
}

Outcome Pop3Mailbox::receive(const std::string& which, std::uint64_t size, const MailKey& key,
                             int file) {
  int error = emptied(file);
  if (error == 0) error = holdRoom(file, size);
  if (error != 0) return systemFailure(error, options_.workFolder);
  std::uint64_t done = 0;
  std::string unwritten;
  HeadOfTransfer head;
  const auto write = [&](std::size_t atLeast) {
    if (error != 0 || unwritten.size() < atLeast) return;
    error = writeAll(file, unwritten);
    unwritten.clear();
  };
  const auto answer = session_->mail("RETR" + which, [&](std::string_view piece) {
    head.take(piece);
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
  if (!answer.ok()) {
    drop();
    return answer.outcome();
  }
  if (!answer.value().agreed) return lost(refused(answer.value()).description());
  if (head.markOfSender() != key.sender)
    return lost(serverFailure(*access_, "has sent another mail than the one that it had listed")
                    .description());
  return {};
}

Outcome Pop3Mailbox::remove(const MailKey& key) {
  Outcome failure;
  // How many mails like this one there were when the server's last word on them was lost.
  std::optional<std::size_t> inDoubt;
  const auto isFinal = [&] {
    return failure.number() == err::cancelled || (!session_ && end_ == Pop3Session::End::silent);
  };
  for (int attempt = 0; attempt < 3; ++attempt) {
    if (failure = connect(); !failure.ok()) return failure;
    const bool known = key.session == sessions_ || foundIn_ == sessions_;
    const auto place = find(key);
    failure = place.outcome();
    if (place.ok() && place.value().alike == 0)
      return misnamed_ && !inDoubt ? misnamed() : Outcome();
    if (place.ok() && inDoubt && place.value().alike < *inDoubt) return {};
    if (place.ok() && known) failure = confirm(key, place.value().number);
    if (!failure.ok() && isFinal()) return failure;
    if (!failure.ok()) continue;
    const int number = place.value().number;
    auto answer = session_->command("DELE " + std::to_string(number));
    const bool marked = answer.ok() && answer.value().agreed;
    if (marked) {
      inDoubt = place.value().alike;
      answer = session_->command("QUIT");
    }
    if (marked || !answer.ok()) drop();
    if (answer.ok() && !answer.value().agreed) return refused(answer.value());
    if (answer.ok()) {
      removed_.emplace_back(sessions_, number);
      return {};
    }
    failure = answer.outcome();
    if (isFinal()) return failure;
  }
  return failure;
}

void Pop3Mailbox::close() {
  if (session_) session_->farewell();
  drop();
}

}  // namespace skv
