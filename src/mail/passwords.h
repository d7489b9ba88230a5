// The passwords of the mail accounts. The desktop keeps them where it has a place for them, else
// they lie in the settings file, which only the user can read.
#pragma once

#include <string>

#include "core/app.h"
#include "core/settings_keys.h"

namespace skv {

struct PasswordSetting {
  Setting value;  // the password itself, "" where the desktop keeps it; also its name there
  Setting place;  // "desktop" there
  const char* label;
};

inline constexpr PasswordSetting popPassword{setting::POPPassword, setting::POPPasswordPlace,
                                             "POP"};
inline constexpr PasswordSetting smtpPassword{setting::SMTPPassword, setting::SMTPPasswordPlace,
                                              "SMTP"};

// "" for none. Fails, with a text for the user, when the desktop keeps it and does not give it out.
Result<std::string> readPassword(App& app, const PasswordSetting& which);
// For a run that has read the password: one that lies in the settings file goes to the desktop's
// keeping when there is one now.
void movePassword(App& app, const PasswordSetting& which, const std::string& password);
// Keeps a password in place of an older one, "" for none. Asks before one that the desktop refuses
// goes into the settings file. Answers whether it is kept; the user has been told why not.
bool storePassword(App& app, const PasswordSetting& which, const std::string& password);

}  // namespace skv
