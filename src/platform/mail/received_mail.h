// A whole mail in a file: its subject, its text, its attachments. Only what is asked for is read,
// so that a mail costs no more memory than its headers.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/disk/os_error.h"
#include "platform/file_system.h"
#include "platform/mail/mail_pulse.h"
#include "platform/mail_message.h"

namespace skv {

// Where a mail lies: a part of a file that does not change. The file may hold other mails, and may
// have been removed.
struct MailFile {
  std::shared_ptr<const Descriptor> file;
  std::int64_t begin = 0;
  std::int64_t end = 0;
};

// Attachments are saved through `files`. Both outlive the message. Whatever the bytes are, they are
// some mail, be it an empty one. Fails with err::mailLost for one that would take too much memory,
// and with err::cancelled.
Result<std::unique_ptr<MailMessage>> readMail(MailFile where, FileSystem& files, MailPulse& pulse);

}  // namespace skv
