// Hands a finished mail to the mail program of the desktop, or to the machine's own sendmail where
// there is none.
#pragma once

#include <chrono>
#include <string>

#include "platform/mail/mail_pulse.h"
#include "platform/mail/outgoing_mail.h"

namespace skv {

struct HandOverTimes {
  // A mail program that has not failed by then has the mail.
  std::chrono::milliseconds toStart{10'000};
  // sendmail may deliver at once, over whatever line there is.
  std::chrono::milliseconds toSend{std::chrono::minutes(30)};
};

// Asked in turn: Sylpheed where it is the mail program, the desktop's portal, xdg-email,
// sendmail. All but the last open the mail for their user, who sends it; sendmail sends it.
// `workFolder`: for the mail under way, and below it for attachments that the mail program is yet
// to read. Fails with err::mail when there is none of them, and when the user or sendmail did not
// want the mail.
Outcome handToMailProgram(const OutgoingMessage& mail, const std::string& workFolder,
                          MailPulse& pulse, HandOverTimes times = {});

}  // namespace skv
