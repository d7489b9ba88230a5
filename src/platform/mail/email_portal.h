// The desktop's own way to a mail: the portal org.freedesktop.portal.Email, which opens the user's
// mail program with a mail that is ready to be sent.
#pragma once

#include <string>
#include <vector>

#include "platform/mail/mail_pulse.h"

namespace skv {

// A mail as the desktop's programs take it, in UTF-8.
struct ComposedMail {
  std::vector<std::string> addresses;
  std::string subject, body;
  std::vector<std::string> attachments;  // native paths of files that stay
};

enum class PortalAnswer {
  none,      // there is no such portal, or it cannot do it
  taken,     // the mail program has the mail
  declined,  // the user did not want to
  unknown,   // it was asked for the mail program, and nothing has come of it yet
  stopped,   // Yield ended the wait before that
};

PortalAnswer composeByPortal(const ComposedMail& mail, MailPulse& pulse);

}  // namespace skv
