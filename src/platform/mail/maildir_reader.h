// A Maildir: a folder with each mail in a file of its own, in new/ until the mail program has seen
// it, then in cur/ under a name that ends in its flags: "1027943.M20P7.host:2,S".
#pragma once

#include <memory>
#include <string>

#include "platform/mail/local_mail_bundle.h"
#include "platform/mail/outlook_filter.h"

namespace skv {

bool isMaildir(const std::string& folder);

// As scanMbox. In the order of arrival.
Result<std::vector<FoundMail>> scanMaildir(const std::string& folder, const OutlookFilter& filter,
                                           std::size_t limit, MailPulse& pulse);

// A mail is found under its new name when its flags have changed.
std::unique_ptr<MailPlace> maildirPlace(std::string folder);

}  // namespace skv
