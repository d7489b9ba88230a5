#include "mail/mail_pack.h"

#include "base/paths.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/stores.h"
#include "core/view.h"
#include "mail/identity.h"
#include "mail/mail_contact.h"
#include "mail/mail_kind.h"
#include "mail/package_to_send.h"
#include "mail/passwords.h"
#include "mail/recipients.h"
#include "scenery/scenery_order.h"

namespace skv {

namespace {

constexpr int yieldsOnLoad = 100;
constexpr int yieldsBeforeStep = 1000;

bool byOutlook(const App& app) { return app.frmMailPack.cmbMailType.listIndex != 0; }

// What the way of sending that is chosen does.
void explainMailType(App& app) {
  const std::string host = readSetting(app, setting::SMTPHost);
  app.frmMailPack.lblMailType.caption =
      byOutlook(app) ? std::string("To your mail program, such as Thunderbird")
      : host.empty() ? std::string("No SMTP Mailhost is set yet: File, Settings (F2), EMail")
                     : "Through the SMTP Mailhost " + host;
}

// Notes the selected add-on, which is the one that the dialog sends from now on, and shows it.
void takeSelection(App& app) {
  auto& form = app.frmMailPack;
  const MailKind& kind = mailKindOfView(app);
  form.scenery = app.frmMain.frameScenery.visible;
  if (form.scenery) lstInactScenery_ItemClick(app);
  const auto& list = app.frmMain.*kind.list;
  const int row = list.selected();
  form.row = row == 0 ? 0 : list.id(row);
  form.Name = row == 0 ? std::string() : kind.nameOf(list.subItem(row, 1));
  form.lblAddon.caption = row == 0 ? "Nothing is selected in the list"
                                   : std::string(kind.word) + ": " + form.Name + packageEnd;
  const ui::Image& image = app.frmMain.*kind.image;
  form.imgAC.picture = image.picture.get();
  form.imgAC.pixels = image.pixels.get();
}

// One click on btnSend.
class Sending {
 public:
  explicit Sending(App& app)
      : app_(app),
        form_(app.frmMailPack),
        kind_(mailKind(form_.scenery)),
        outlook_(byOutlook(app)),
        package_(app, kind_),
        file_(package_.file()),
        host_(readSettingOf(outlook_)) {}

  void run() {
    form_.sending = true;
    showSending(true);
    bool sent = false, givenUp = false;
    {
      const LongOperation busy(app_);
      sent = address() && package_.prepare() && attach() && send();
      givenUp = declined_ || package_.declined() || !goesOn(app_);
    }
    // Behind the operation, so that a wish to stop the mail does not stop this as well.
    package_.giveBack();
    form_.sending = false;
    showSending(false);
    form_.lblStatus.clearProgress();
    app_.frmMain.lblStatus.caption = "";
    if (sent || givenUp) form_.lblStatus.caption = "";
    if (sent)
      notice(outlook_ ? "\"" + file_ + "\" was handed to the mail program of this computer"
                      : "\"" + file_ + "\" was sent to " + form_.txtEMail.text.get());
    else if (givenUp && !told_)
      notice("\"" + file_ + "\" was not sent");
    if (form_.closing || app_.ending) app_.windows.unload(form_);
    form_.closing = false;
  }

 private:
  // The way "Outlook" needs no host.
  std::string readSettingOf(bool outlook) const {
    return outlook ? std::string() : readSetting(app_, setting::SMTPHost);
  }
  void showSending(bool sending) {
    form_.btnSend.enabled = form_.btnCancel.enabled = !sending;
    form_.lblStatus.notice = "";
  }
  void notice(const std::string& text) {
    // The dialog may be on its way out.
    (form_.closing ? app_.frmMain.lblStatus : form_.lblStatus).notice = text;
  }
  bool failed(const Outcome& outcome) {
    told_ = told_ || (!outcome.ok() && outcome.number() != err::cancelled &&
                      outcome.number() != err::mailNotEncrypted);
    return ReportMailError(app_, outcome) || !goesOn(app_);
  }

  // Before a Package is made for nobody.
  bool address() {
    Outcome done;
    const auto step = [&done](const Outcome& outcome) {
      if (done.ok()) done = outcome;
    };
    engine_ = makeMailEngine(app_, form_.lblStatus);
    if (!engine_) return false;
    mail_ = engine_->NewMessage();
    if (!outlook_) step(prepareHost());
    if (failed(done)) return false;

    for (const Recipient& recipient : recipientsIn(form_.txtEMail.text.get()))
      step(mail_->AddRecipient(recipient.name, recipient.address));
    mail_->SetSubject(kind_.marker + file_);
    mail_->SetFromName(app_.SenderIdentity.FirstName + " " + app_.SenderIdentity.LastName);
    step(mail_->SetFromAddress(readSetting(app_, setting::EMail)));
    if (failed(done)) return false;
    mail_->SetBody(mailBody(form_.txtMsg.text.get()));
    return true;
  }

  bool attach() {
    status("Attaching " + file_ + " ... Please wait!");
    const auto attached = package_.fileFor(outlook_);
    if (failed(attached.outcome())) return false;
    if (failed(mail_->AddAttachment(attached.value()).outcome())) return false;
    return !failed(mail_->SetAttachmentName(0, file_));
  }

  Outcome prepareHost() {
    engine_->SetSmtpHost(host_);
    recallPlainHost(app_, *engine_, host_);
    const std::string user = readSetting(app_, setting::SMTPUserName);
    engine_->SetSmtpUserName(user);
    if (user.empty()) return {};
    const auto password = readPassword(app_, smtpPassword);
    if (!password.ok()) return password.outcome();
    engine_->SetSmtpPassword(password.value());
    movePassword(app_, smtpPassword, password.value());
    return {};
  }

  bool send() {
    status("Sending  " + file_ + " ... Please wait!");
    if (outlook_) return sent(engine_->SendMailByOutlook(*mail_));
    const Outcome done =
        contact(app_, *engine_, host_, [this] { return engine_->SendMail(*mail_); });
    declined_ = done.number() == err::mailNotEncrypted;
    return sent(explained(done, host_, "SMTP Mailhost:"));
  }
  // Then it is, whatever the user wants by now.
  bool sent(const Outcome& outcome) {
    failed(outcome);
    return outcome.ok();
  }

  void status(const std::string& text) {
    form_.lblStatus.caption = text;
    app_.windows.yieldTimes(yieldsBeforeStep);
  }

  App& app_;
  ui::FrmMailPack& form_;
  const MailKind& kind_;
  const bool outlook_;
  PackageToSend package_;
  const std::string file_, host_;
  bool declined_ = false;  // the host may not be used unencrypted
  bool told_ = false;      // of a failure
  std::unique_ptr<MailEngine> engine_;
  std::unique_ptr<OutgoingMail> mail_;
};

// What a mail cannot do without.
struct NeededOfSender {
  Setting key;
  const char* message;
  ui::TextBox ui::FrmIdentity::*field;
};

constexpr NeededOfSender neededOfSender[] = {
    {setting::EMail, "You must specify your EMail address!", &ui::FrmIdentity::txtEMail},
    {setting::FirstName, "You must specify your Firstname!", &ui::FrmIdentity::txtFirstName},
    {setting::LastName, "You must specify your Lastname!", &ui::FrmIdentity::txtLastName},
};

}  // namespace

void mnuFileMailPack_Click(App& app) {
  auto& form = app.frmMailPack;
  if (form.sending) {
    app.windows.setFocus(form.txtEMail);
    return;
  }
  if (!app.frmMain.frameScenery.visible && inFSView(app)) {
    app.windows.messageBox({"This feature works from Hangar only!", ui::BoxIcon::information});
    return;
  }
  for (const auto& [key, message, field] : neededOfSender) {
    if (!readSetting(app, key).empty()) continue;
    app.windows.messageBox({message, ui::BoxIcon::exclamation});
    if (!app.ending) askIdentity(app, app.frmMain, app.frmIdentity.*field);
    if (app.ending) return;
  }
  if (form.visible) {
    takeSelection(app);
    app.windows.setFocus(form.txtEMail);
    return;
  }
  frmMailPack_Form_Load(app);
  app.windows.show(form, &app.frmMain);
}

void frmMailPack_Form_Load(App& app) {
  auto& form = app.frmMailPack;
  app.windows.yieldTimes(yieldsOnLoad);
  form.txtEMail.text = "";
  form.txtMsg.text = "";
  form.lblStatus.caption = form.lblStatus.notice = "";
  takeSelection(app);
  form.cmbMailType.items = std::vector<std::string>{"POP3", "Outlook"};
  form.cmbMailType.listIndex = val(readSetting(app, setting::MailType, "0")) == 1 ? 1 : 0;
  explainMailType(app);
}

void cmbMailType_Click(App& app) {
  const int chosen = app.frmMailPack.cmbMailType.listIndex;
  explainMailType(app);
  ReportError(app, writeSetting(app, setting::MailType, std::to_string(chosen)));
}

void btnSend_Click(App& app) {
  auto& form = app.frmMailPack;
  if (form.sending) return;
  if (operationRuns(app)) {
    app.windows.messageBox(
        {"FS Skyvault is still at work. The mail can be sent when it has finished.",
         ui::BoxIcon::exclamation});
    return;
  }
  if (form.Name.empty()) takeSelection(app);
  if (!isElementName(form.Name)) {
    app.windows.messageBox(
        {"Select what is to be sent in the list first.", ui::BoxIcon::exclamation});
    return;
  }
  Sending(app).run();
}

void frmMailPack_btnCancel_Click(App& app) { app.windows.unload(app.frmMailPack); }

void frmMailPack_Close(App& app) {
  auto& form = app.frmMailPack;
  if (!form.sending) {
    app.windows.unload(form);
    return;
  }
  if (app.ending || form.closing) return;
  if (app.windows.messageBox({"The mail is still being sent. Stop it?", ui::BoxIcon::question,
                              ui::BoxButtons::yesNo, ui::programTitle, ui::DefaultButton::no}) !=
      ui::Answer::yes)
    return;
  // It may have ended meanwhile.
  form.closing = form.sending;
  if (form.sending)
    app.stopRequested = true;
  else
    app.windows.unload(form);
}

}  // namespace skv
