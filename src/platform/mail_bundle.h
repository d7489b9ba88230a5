// Mails that were fetched together.
#pragma once

#include "platform/mail_message.h"

namespace skv {

class MailBundle {
 public:
  virtual ~MailBundle() = default;
  virtual int MessageCount() const = 0;
  // Counts from 0. The bundle keeps the mail, which lives as long as it does. Fails with
  // invalidProcedureCall when there is no such mail, or as reading it fails.
  virtual Result<const MailMessage*> MessageAt(int index) const = 0;
};

}  // namespace skv
