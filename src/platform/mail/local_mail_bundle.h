// Mails that lie on this machine: no more of them is in memory than where they lie, and of one at a
// time what it says.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/file_system.h"
#include "platform/mail/mail_pulse.h"
#include "platform/mail/received_mail.h"
#include "platform/mail_bundle.h"

namespace skv {

struct FoundMail {
  std::string subject;  // decoded
  // In an mbox: what lies between the mail's "From " line and the empty line behind it.
  std::int64_t begin = 0, end = 0;
  std::uint64_t mark = 0;  // of its headers, see markOfHead
  // In a Maildir: its file.
  std::string file = {};
};

// An mbox or a Maildir.
class MailPlace {
 public:
  virtual ~MailPlace() = default;
  // Fails with err::mail when the mail is no longer there.
  virtual Result<MailFile> take(const FoundMail& mail, MailPulse& pulse) const = 0;

 protected:
  static Outcome gone(const FoundMail& mail);
};

// `files` and `pulse` outlive the bundle.
std::unique_ptr<MailBundle> localMailBundle(std::unique_ptr<MailPlace> place,
                                            std::vector<FoundMail> mails, FileSystem& files,
                                            MailPulse& pulse);

// A file of a mail program, which is only read. Whatever is no plain file is refused.
Result<Descriptor> openStoredFile(const std::string& native);
Result<Descriptor> openStoredFolder(const std::string& native);

}  // namespace skv
