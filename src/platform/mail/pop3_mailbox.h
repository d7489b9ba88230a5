// A POP3 mailbox over as many sessions as it takes.
//
// A server deletes when the session ends with QUIT, so a deletion ends its session, and the next
// call begins another one. In that the mails have other numbers: they are found again by the
// server's own name for each (UIDL), or, where it gives none, by their size and their headers.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/disk/os_error.h"
#include "platform/mail/pop3_session.h"

namespace skv {

// What tells a mail apart from the others of its mailbox.
struct MailKey {
  std::string uid;         // "" where the server gives none; then
  std::uint64_t size = 0;  // its size and
  std::size_t print = 0;   // what is made of its headers
  int lines = 0;           // of the body that came with these
  int number = 0;          // in the session
  unsigned session = 0;
  // No other mail had its uid: copies of one mail may share theirs.
  bool alone = false;
};

struct MailHead {
  MailKey key;
  std::string subject;  // as it was sent
  std::string lines;    // what came of the body
};

class Pop3Mailbox {
 public:
  Pop3Mailbox(const MailOptions& options, MailPulse& pulse) : options_(options), pulse_(pulse) {}

  // Of the sessions from now on; an open one ends when it is another one's.
  void setAccess(const ServerAccess& access);

  Result<int> count();
  Result<std::vector<MailHead>> heads(int lines);
  // Writes the whole mail into the file.
  Outcome fetch(const MailKey& key, int file);
  // Success: it is gone, and the server has said so or shown it.
  Outcome remove(const MailKey& key);
  void close();

 private:
  struct Entry {
    int number = 0;
    std::string uid;
    std::uint64_t size = 0;
  };

  Outcome connect();
  void drop() { session_.reset(); }
  template <class Work>
  Outcome inSession(Work work);
  Outcome loadEntries();
  Result<std::vector<MailHead>> headsOf(const std::vector<Entry>& entries, int lines);
  int likelyNumber(const MailKey& key) const;
  Result<std::vector<int>> numbersOf(const MailKey& key);
  Result<int> find(const MailKey& key);
  Outcome refused(const Pop3Answer& answer) const;

  const MailOptions& options_;
  MailPulse& pulse_;
  std::optional<ServerAccess> access_;
  std::unique_ptr<Pop3Session> session_;
  unsigned sessions_ = 0;
  int count_ = 0;
  bool entriesLoaded_ = false;
  std::vector<Entry> entries_;
  // What was deleted: session and number, in their order.
  std::vector<std::pair<unsigned, int>> removed_;
  bool topMissing_ = false;
  Outcome refusal_;  // of a mail, the last one while heads are read
};

}  // namespace skv
