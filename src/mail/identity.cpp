#include "mail/identity.h"

#include "base/text.h"
#include "core/messages.h"
#include "core/settings_keys.h"

namespace skv {

void askIdentity(App& app, ui::Form& owner, ui::TextBox& field) {
  auto& form = app.frmIdentity;
  if (form.visible) {
    app.windows.setFocus(field);
    return;
  }
  form.txtFirstName.text = readSetting(app, setting::FirstName);
  form.txtLastName.text = readSetting(app, setting::LastName);
  form.txtEMail.text = readSetting(app, setting::EMail);
  app.windows.show(form, &owner);
  app.windows.setFocus(field);
  app.windows.yieldUntil([&form] { return !form.visible; });
  app.windows.unload(form);
}

void frmIdentity_btnOK_Click(App& app) {
  auto& form = app.frmIdentity;
  const std::string first = trim(form.txtFirstName.text.get());
  const std::string last = trim(form.txtLastName.text.get());
  const std::string address = trim(form.txtEMail.text.get());
  if (!address.empty() && address.find('@') == std::string::npos) {
    app.windows.messageBox({"\"" + address + "\" is no EMail address, such as anna@example.org.",
                            ui::BoxIcon::exclamation});
    if (form.visible) app.windows.setFocus(form.txtEMail);
    return;
  }
  const StoredValue values[] = {
      {setting::FirstName.section, setting::FirstName.key, first},
      {setting::LastName.section, setting::LastName.key, last},
      {setting::EMail.section, setting::EMail.key, address},
  };
  const Outcome stored = app.platform.settings.writeTogether(values);
  if (!stored.ok()) {
    tellFailure(app, "The sender could not be stored:", stored);
    return;
  }
  app.SenderIdentity.FirstName = first;
  app.SenderIdentity.LastName = last;
  app.windows.hide(form);
}

void frmIdentity_btnCancel_Click(App& app) { app.windows.hide(app.frmIdentity); }

}  // namespace skv
