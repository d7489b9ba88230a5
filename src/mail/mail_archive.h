// The archive of an add-on that a mail brings.
#pragma once

#include <string>

#include "core/app.h"
#include "platform/mail_engine.h"

namespace skv {

struct MailArchive {
  int index = -1;     // of the attachment, zero-based; negative in a mail without attachments
  std::string file;   // its name
  std::string addon;  // the name that the installer would give to the add-on; "" for no archive

  bool found() const { return !addon.empty(); }
};

// The last attachment that may be an add-on's archive: behind it there may be a signature, a card,
// a picture. Without one the last of all. `addons`: the folder in which the add-on would have its
// own, with trailing backslash.
Result<MailArchive> archiveOf(App& app, const MailMessage& mail, const std::string& addons);

}  // namespace skv
