// A POP3 mailbox over as many sessions as it takes.
//
// A server deletes when the session ends with QUIT, so a deletion ends its session, and the next
// call begins another one. In that the mails have other numbers: they are found again by the
// server's own name for each (UIDL), or, where it gives none, by their size. Neither says for
// certain which mail a number means, as there are servers that name places instead of mails. So the
// headers are compared before a mail is deleted, and when it has come whole.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/disk/os_error.h"
#include "platform/mail/pop3_session.h"

namespace skv {

// What tells a mail apart from the others of its mailbox.
struct MailKey {
  std::string uid;           // "" where the server gives none
  std::uint64_t size = 0;    // as the server lists it, 0 where it does not
  std::uint64_t mark = 0;    // see markOfHead
  std::uint64_t sender = 0;  // see markOfSender
  int number = 0;            // in the session
  unsigned session = 0;
  std::size_t alike = 0;  // mails of which all this is the same, itself with them
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
  // Writes the whole mail into the file. Fails with err::mailLost where another mail may have more
  // luck: one that is gone, refused or too large, is another one than was listed, or has let the
  // connection break for the second time.
  Outcome fetch(const MailKey& key, int file);
  // Success: it is gone, and the server has said so or shown it. Fails without a deletion when the
  // server has it no longer by the name that it gave it.
  Outcome remove(const MailKey& key);
  void close();

 private:
  struct Entry {
    int number = 0;
    std::string uid;
    std::uint64_t size = 0;
  };

  // Where a mail is in this session.
  struct Place {
    int number = 0;         // 0: nowhere
    std::size_t alike = 0;  // as in its key
  };

  Outcome connect();
  void drop();
  // Work that may be done again: a session that was open before may have been ended by the server
  // meanwhile, and a new one is tried then.
  template <class Work>
  Outcome inSession(Work work);
  Outcome loadEntries();
  Result<std::vector<MailHead>> headsOf(const std::vector<Entry>& entries);
  Result<std::vector<int>> sameAs(const MailKey& key, const std::vector<Entry>& entries);
  int likelyNumber(const MailKey& key) const;
  bool namesAnother(const std::string& uid, const MailKey& key) const;
  Result<Entry> entryAt(int number);
  Result<std::vector<int>> numbersOf(const MailKey& key);
  Result<Place> find(const MailKey& key);
  Outcome confirm(const MailKey& key, int number);
  Outcome fetchOnce(const MailKey& key, int file, bool& begun);
  Outcome receive(const std::string& which, std::uint64_t size, const MailKey& key, int file);
  Outcome refused(const Pop3Answer& answer) const;
  Outcome misnamed() const;

  const MailOptions& options_;
  MailPulse& pulse_;
  std::optional<ServerAccess> access_;
  std::unique_ptr<Pop3Session> session_;
  Pop3Session::End end_ = Pop3Session::End::broken;  // of the last one that was dropped
  unsigned sessions_ = 0;
  int count_ = 0;
  bool entriesLoaded_ = false;
  std::vector<Entry> entries_;
  // Where the mail was found that was asked for last (by session and number of its key), and in
  // which session.
  std::pair<unsigned, int> foundKey_;
  Place found_;
  unsigned foundIn_ = 0;
  // The names of the last listing, each with the mark of its mail.
  std::unordered_map<std::string, std::uint64_t> listed_;
  int lines_ = 0;          // of the bodies that came with it
  bool misnamed_ = false;  // the name of the mail that was looked for is another mail's now
  int silences_ = 0;       // mails in a row on which the server fell silent
  // What was deleted: session and number, in their order.
  std::vector<std::pair<unsigned, int>> removed_;
  bool topMissing_ = false;
  Outcome refusal_;  // of a mail, the last one while heads are read
};

}  // namespace skv
