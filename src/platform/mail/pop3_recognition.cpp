// Which mail a number means in this session: see pop3_mailbox.h.
#include <algorithm>

#include "base/text.h"
#include "platform/mail/pop3_mailbox.h"

namespace skv {

namespace {

bool mayBeSame(std::uint64_t size, std::uint64_t other) {
  return size == other || size == 0 || other == 0;
}

}  // namespace

// In this session, as far as nobody else has changed the mailbox: each deletion moves the mails
// behind it up.
int Pop3Mailbox::likelyNumber(const MailKey& key) const {
  int number = key.number;
  for (const auto& [session, removed] : removed_)
    if (session >= key.session && removed < number) --number;
  return number;
}

// The name was another mail's when the mailbox was listed: this server's names wander, as numbers
// do.
bool Pop3Mailbox::namesAnother(const std::string& uid, const MailKey& key) const {
  const auto listed = listed_.find(uid);
  return listed != listed_.end() && listed->second != key.mark;
}

Result<Pop3Mailbox::Entry> Pop3Mailbox::entryAt(int number) {
  Entry entry{number, {}, 0};
  const std::string which = std::to_string(number) + " ";
  const auto value = [&which](const Pop3Answer& answer) {
    return answer.agreed && answer.words.starts_with(which)
               ? trim(answer.words.substr(which.size()))
               : std::string();
  };
  for (const char* command : {"UIDL ", "LIST "}) {
    const auto answer = session_->command(command + std::to_string(number));
    if (!answer.ok()) {
      drop();
      return answer.outcome();
    }
    if (*command == 'U')
      entry.uid = value(answer.value());
    else
      entry.size = leadingNumber(value(answer.value()));
  }
  return entry;
}

// The numbers of those that have the mail's headers.
Result<std::vector<int>> Pop3Mailbox::sameAs(const MailKey& key,
                                             const std::vector<Entry>& entries) {
  std::vector<int> numbers;
  if (entries.empty()) return numbers;
  refusal_ = {};
  const auto heads = headsOf(entries);
  if (!heads.ok()) return heads.outcome();
  for (const MailHead& head : heads.value())
    if (head.key.mark == key.mark) numbers.push_back(head.key.number);
  // It may be one of those that the server does not show now.
  if (numbers.empty() && !refusal_.ok()) return refusal_;
  return numbers;
}

// More than one where mails are alike in all that is known of them.
Result<std::vector<int>> Pop3Mailbox::numbersOf(const MailKey& key) {
  misnamed_ = false;
  // A few lines in the place of lists of thousands.
  if (const int likely = likelyNumber(key);
      key.alike == 1 && !key.uid.empty() && !entriesLoaded_ && likely >= 1 && likely <= count_) {
    const auto entry = entryAt(likely);
    if (!entry.ok()) return entry.outcome();
    const std::string& uid = entry.value().uid;
    if ((uid == key.uid || namesAnother(uid, key)) && mayBeSame(entry.value().size, key.size)) {
      auto numbers = sameAs(key, {entry.value()});
      if (!numbers.ok() || !numbers.value().empty()) return numbers;
    }
  }
  if (Outcome loaded = loadEntries(); !loaded.ok()) return loaded;
  std::vector<Entry> named, others;
  for (const Entry& entry : entries_) {
    const bool itsName = !key.uid.empty() && entry.uid == key.uid;
    misnamed_ = misnamed_ || itsName;
    if (mayBeSame(entry.size, key.size)) (itsName ? named : others).push_back(entry);
  }
  auto numbers = sameAs(key, named);
  if (numbers.ok() && numbers.value().empty()) {
    // Where names mean mails, a mail of another name is another one.
    if (!misnamed_)
      std::erase_if(others, [&](const Entry& entry) {
        return !key.uid.empty() && !entry.uid.empty() && !namesAnother(entry.uid, key);
      });
    numbers = sameAs(key, others);
  }
  return numbers;
}

Result<Pop3Mailbox::Place> Pop3Mailbox::find(const MailKey& key) {
  if (key.session == sessions_) return Place{key.number, key.alike};
  const std::pair itself(key.session, key.number);
  if (foundIn_ == sessions_ && foundKey_ == itself) return found_;
  const auto numbers = numbersOf(key);
  if (!numbers.ok()) return numbers.outcome();
  foundKey_ = itself;
  foundIn_ = sessions_;
  found_ = {};
  if (!numbers.value().empty()) found_ = {numbers.value().front(), numbers.value().size()};
  return found_;
}

// Once more before a deletion: in a session that goes on while the user reads and installs, some
// servers give the numbers anew.
Outcome Pop3Mailbox::confirm(const MailKey& key, int number) {
  if (topMissing_) return {};
  const auto numbers = sameAs(key, {Entry{number, key.uid, key.size}});
  if (!numbers.ok()) return numbers.outcome();
  if (!numbers.value().empty()) return {};
  drop();
  return misnamed();
}

}  // namespace skv
