#include "ui/mail_settings.h"

#include "base/paths.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "mail/mail_contact.h"
#include "mail/passwords.h"
#include "ui/dialogs/dir_select.h"

namespace skv {

namespace {

struct MailField {
  Setting key;
  ui::TextBox ui::FrmSettings::*box;
  const char* fallback = "";
};

constexpr MailField mailFields[] = {
    {setting::POPUserName, &ui::FrmSettings::txtPOPUserName},
    {setting::POPHost, &ui::FrmSettings::txtPOPHost},
    {setting::POPPort, &ui::FrmSettings::txtPOPPort, "110"},
    {setting::SMTPHost, &ui::FrmSettings::txtSMTPHost},
    {setting::SMTPUserName, &ui::FrmSettings::txtSMTPUserName},
    {setting::OutlookFolder, &ui::FrmSettings::txtOutlookFolder},
};

struct PasswordField {
  const PasswordSetting& password;
  ui::TextBox ui::FrmSettings::*box;
  std::optional<std::string> ui::FrmSettings::*found;
};

constexpr PasswordField passwordFields[] = {
    {popPassword, &ui::FrmSettings::txtPOPPassword, &ui::FrmSettings::foundPOPPassword},
    {smtpPassword, &ui::FrmSettings::txtSMTPPassword, &ui::FrmSettings::foundSMTPPassword},
};

bool storePasswordField(App& app, const PasswordField& field) {
  auto& form = app.frmSettings;
  const std::string typed = (form.*field.box).text;
  std::optional<std::string>& found = form.*field.found;
  // One that could not be read is not replaced by the empty field that shows for it.
  if (!found && typed.empty()) return true;
  if (found == typed) {
    movePassword(app, field.password, typed);
    return true;
  }
  if (!storePassword(app, field.password, typed)) return false;
  found = typed;
  return true;
}

}  // namespace

void loadMailSettings(App& app) {
  auto& form = app.frmSettings;
  for (const MailField& field : mailFields)
    (form.*field.box).text = readSetting(app, field.key, field.fallback);
  for (const PasswordField& field : passwordFields) {
    const auto password = readPassword(app, field.password);
    form.*field.found = password.ok() ? std::optional(password.value()) : std::nullopt;
    (form.*field.box).text = password.valueOr("");
    ReportError(app, password.outcome());
  }
  form.cmbOutlookFolders.items = std::vector<std::string>();
}

bool storeMailSettings(App& app) {
  std::vector<StoredValue> values;
  for (const MailField& field : mailFields)
    values.push_back({field.key.section, field.key.key, (app.frmSettings.*field.box).text.get()});
  const Outcome stored = app.platform.settings.writeTogether(values);
  if (!stored.ok()) {
    tellFailure(app, "The mail settings could not be stored:", stored);
    return false;
  }
  for (const PasswordField& field : passwordFields)
    if (!storePasswordField(app, field)) return false;
  return true;
}

void forgetPasswords(App& app) {
  for (const PasswordField& field : passwordFields) {
    (app.frmSettings.*field.box).text = "";
    (app.frmSettings.*field.found).reset();
  }
}

void listOutlookFolders(App& app) {
  auto& box = app.frmSettings.cmbOutlookFolders;
  if (!box.items->empty()) return;
  const auto engine = makeMailEngine(app, app.frmMain.lblStatus);
  if (!engine) return;
  std::vector<std::string> items = engine->OutlookFolders();
  items.insert(items.begin(), items.empty() ? "No mail folders found on this computer"
                                            : "Choose one of the mail folders found...");
  box.enabled = items.size() > 1;
  box.items = std::move(items);
  box.listIndex = 0;
}

void cmbOutlookFolders_Click(App& app) {
  auto& box = app.frmSettings.cmbOutlookFolders;
  const int chosen = box.listIndex;
  if (chosen > 0)
    app.frmSettings.txtOutlookFolder.text = box.items->at(static_cast<std::size_t>(chosen));
}

void btnOutlookFile_Click(App& app) {
  const std::string now = app.frmSettings.txtOutlookFolder.text;
  const std::string above = folderAbove(now);
  const auto picked =
      app.windows.openFile({above.empty() ? app.platform.environment.home : above, "All Files|*"});
  if (picked.ok())
    app.frmSettings.txtOutlookFolder.text = picked.value().path;
  else if (picked.outcome().number() != err::cancelled)
    ReportError(app, picked.outcome());
}

void btnOutlookDir_Click(App& app) {
  const std::string now = app.frmSettings.txtOutlookFolder.text;
  const std::string home = app.platform.environment.home;
  const std::string start = now.size() > 2 && now[1] == ':' ? now : home.empty() ? "C:\\" : home;
  const auto chosen = chooseFolder(app, app.frmSettings, withBackslash(start), ui::programTitle);
  if (chosen) app.frmSettings.txtOutlookFolder.text = *chosen;
}

}  // namespace skv
