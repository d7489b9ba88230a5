// Attachments of mails that were handed to a mail program, which reads them when its user at last
// sends the mail.
#pragma once

#include <string>

#include "platform/mail/outgoing_mail.h"

namespace skv {

// The native path of a file with the attachment's bytes and name, which stays. That is the attached
// file itself, where it is called so; else a link to it or a copy in a folder of its own in
// `outbox`. A "'", a "," and a backslash have a meaning to mail programs that are called with a
// path, so "_" takes their place in the name.
Result<std::string> standingFile(const AttachedFile& attached, const std::string& outbox);

// Removes from `outbox` what was put there more than a week ago.
void tidyOutbox(const std::string& outbox);

}  // namespace skv
