// An mbox: all mails of a folder in one file, each below a line that begins with "From ".
//
//   From - Tue Jul 30 12:00:00 2002
//   X-Mozilla-Status: 0001
//   Subject: /FSSkyvaultPack/AC/Cessna.zip
//
//   >From here on the text of the sender, one ">" put before such a line.
//
// The "From " line counts at the beginning of the file or behind an empty line, when a header
// follows it. No length that a mail tells of itself is trusted.
#pragma once

#include <memory>
#include <string>

#include "platform/mail/local_mail_bundle.h"
#include "platform/mail/outlook_filter.h"

namespace skv {

// The mails that pass and are not marked as deleted, `limit` at most, as the file was when the call
// began: what is written to it meanwhile is not looked at. Of a file that becomes shorter, those
// that are whole.
Result<std::vector<FoundMail>> scanMbox(int file, const OutlookFilter& filter, std::size_t limit,
                                        MailPulse& pulse);

// A mail that is taken out is copied into a work file, without what the mbox put into it: whatever
// the mail program does to the mbox from then on, the mail is as it was.
std::unique_ptr<MailPlace> mboxPlace(Descriptor file, std::string workFolder);

}  // namespace skv
