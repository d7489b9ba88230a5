// What FetchOutlookFolder of the mail engine does.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "platform/mail/mail_pulse.h"
#include "platform/mail_bundle.h"

namespace skv {

struct OutlookFetch {
  std::string folder;  // as the caller of the engine names it
  std::string filter;
  std::size_t limit = 0;
};

// `workFolder`: for the copies of mails. `files` and `pulse` outlive the bundle.
Result<std::unique_ptr<MailBundle>> fetchOutlookFolder(const OutlookFetch& fetch,
                                                       const std::string& workFolder,
                                                       FileSystem& files, MailPulse& pulse);

}  // namespace skv
