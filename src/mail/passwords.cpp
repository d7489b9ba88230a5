#include "mail/passwords.h"

#include "core/messages.h"

namespace skv {

namespace {

constexpr const char* atTheDesktop = "desktop";

Outcome keep(App& app, const PasswordSetting& which, const std::string& inFile, const char* place) {
  const StoredValue values[] = {{which.value.section, which.value.key, inFile},
                                {which.place.section, which.place.key, place}};
  return app.platform.settings.writeTogether(values);
}

std::string named(const PasswordSetting& which) {
  return "The " + std::string(which.label) + " password";
}

}  // namespace

// One that lies in the settings file is never the older one: it goes from there when the desktop
// takes it.
Result<std::string> readPassword(App& app, const PasswordSetting& which) {
  std::string inFile = readSetting(app, which.value);
  if (!inFile.empty() || readSetting(app, which.place) != atTheDesktop) return inFile;
  auto kept = app.platform.secrets.read(which.value.key);
  if (kept.ok()) return kept;
  return Outcome::withText(
      kept.outcome().number(),
      named(which) + " cannot be read: the desktop, which keeps it, does not give it out.\r\n" +
          kept.outcome().description());
}

void movePassword(App& app, const PasswordSetting& which, const std::string& password) {
  if (readSetting(app, which.value).empty()) return;
  if (app.platform.secrets.write(which.value.key, password).ok())
    keep(app, which, "", atTheDesktop).skipped();
}

bool storePassword(App& app, const PasswordSetting& which, const std::string& password) {
  const bool atDesktop = readSetting(app, which.place) == atTheDesktop;
  if (password.empty() && !atDesktop) return !ReportError(app, keep(app, which, "", ""));
  const Outcome taken = app.platform.secrets.write(which.value.key, password);
  if (taken.ok())
    return !ReportError(app, keep(app, which, "", password.empty() ? "" : atTheDesktop));
  if (password.empty() || taken.number() == err::deviceUnavailable)
    return !ReportError(app, keep(app, which, password, ""));
  if (app.windows.messageBox({named(which) +
                                  " was refused by the desktop, which keeps passwords.\r\n" +
                                  taken.description() +
                                  "\r\n\r\nKeep it in the settings file, which only you can read?",
                              ui::BoxIcon::question, ui::BoxButtons::yesNo, ui::programTitle,
                              ui::DefaultButton::no}) != ui::Answer::yes)
    return false;
  return !ReportError(app, keep(app, which, password, ""));
}

}  // namespace skv
