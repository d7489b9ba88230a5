#include "mail/mail_installers.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/standing_addon.h"
#include "core/stores.h"
#include "core/working_folder.h"
#include "mail/mail_archive.h"
#include "mail/mail_contact.h"
#include "mail/mail_kind.h"
#include "mail/mail_note.h"
#include "mail/passwords.h"
#include "packaging/archive_comparison.h"

namespace skv {

namespace {

constexpr int yieldsBeforeStep = 1000;
constexpr int yieldsBeforeInstaller = 5000;
constexpr int linesOfHeads = 10;
constexpr int mostMails = 20000;
constexpr const char* ourMails = "Subject contains \"/FSSkyvault\"";

// Of a port's text; the usual port where there is none.
int portOf(const std::string& text) {
  constexpr long beyondAllPorts = 65536;
  const long number = std::strtol(text.c_str(), nullptr, 10);
  return number <= 0 ? usualPOPPort : static_cast<int>(std::min(number, beyondAllPorts));
}

class MailRun;

// What the two places of mails differ in.
struct Source {
  const char* checking;
  Result<std::unique_ptr<MailBundle>> (MailRun::*fetch)();
  const char* none;  // said of an empty place; null: nothing
  bool onServer;     // heads come first, and a mail that has been dealt with is deleted
};

class MailRun {
 public:
  MailRun(App& app, const Source& source)
      : app_(app),
        source_(source),
        kind_(mailKindOfView(app)),
        addons_(kind_.addons(app)),
        line_(app.frmMain.lblStatus),
        engine_(makeMailEngine(app, line_)) {}

  void run() {
    if (!engine_) return;
    const LongOperation busy(app_);
    walk();
    bundle_.reset();
    engine_->Disconnect();
    line_.clearProgress();
    if (goesOn(app_) && !declined_) return;
    line_.caption = "";
    line_.notice = declined_ ? "The mail server was not used"
                             : "Stopped: the mails that are left wait for another time";
  }

  Result<std::unique_ptr<MailBundle>> fetchHeads() {
    if (Outcome prepared = preparePOP(); !prepared.ok()) return prepared;
    const auto count = reach([this] { return engine_->MailboxCount(); });
    if (!count.ok()) return explained(count.outcome(), host_, "POP Mailhost:");
    return reach([this] { return engine_->FetchHeaders(linesOfHeads); });
  }

  Result<std::unique_ptr<MailBundle>> fetchOutlook() {
    const std::string folder = readSetting(app_, setting::OutlookFolder);
    engine_->SetFetchLimit(mostMails);
    engine_->SetOutlookFilter(ourMails);
    auto fetched = engine_->FetchOutlookFolder(folder);
    app_.windows.yield();
    if (!fetched.ok()) return explained(fetched.outcome(), folder, "Outlook Inbox Folder:");
    return fetched;
  }

 private:
  void walk() {
    status(source_.checking);
    app_.windows.yieldTimes(yieldsBeforeStep);
    auto fetched = (this->*source_.fetch)();
    if (endedBy(fetched.outcome())) return;
    bundle_ = std::move(fetched).value();
    const int count = bundle_->MessageCount();
    if (count == 0 && source_.none != nullptr)
      app_.windows.messageBox({source_.none, ui::BoxIcon::information});
    for (int i = 0; i < count && !ended_; ++i) take(i);
    if (ended_) return;
    status("");
    if (ofThisKind_ == 0 && (count > 0 || source_.none == nullptr)) tellNoneOfThisKind();
  }

  void tellNoneOfThisKind() {
    std::string text = std::string("There is no mail that brings ") + kind_.one + ".";
    if (ofOtherKind_ > 0)
      text += "\r\n\r\nMails that bring " + std::string(otherKind().one) + ": " +
              std::to_string(ofOtherKind_) + ". " + otherKind().view +
              " is the place to install them.";
    app_.windows.messageBox({text, ui::BoxIcon::information});
  }

  static bool holds(const std::string& subject, const MailKind& kind) {
    return subject.find(kind.marker) != std::string::npos;
  }
  const MailKind& otherKind() const { return mailKind(kind_.type == AddonType::aircraft); }

  Outcome preparePOP() {
    host_ = readSetting(app_, setting::POPHost);
    recallPlainHost(app_, *engine_, host_);
    const auto password = readPassword(app_, popPassword);
    if (!password.ok()) return password.outcome();
    engine_->SetPopUserName(readSetting(app_, setting::POPUserName));
    engine_->SetPopPassword(password.value());
    engine_->SetPopHost(host_);
    engine_->SetPopPort(portOf(readSetting(app_, setting::POPPort)));
    movePassword(app_, popPassword, password.value());
    return {};
  }

  // One mail, to its end.
  void take(int index) {
    const auto head = bundle_->MessageAt(index);
    if (endedBy(head.outcome())) return;
    const MailMessage& mail = *head.value();
    const std::string subject = mail.GetSubject();
    if (!holds(subject, kind_)) {
      if (holds(subject, otherKind())) ++ofOtherKind_;
      return;
    }
    ++ofThisKind_;
    if (!source_.onServer) {
      install(mail, mail);
      return;
    }
    status("Transferring Email...");
    const auto full = reach([&] { return engine_->FetchFullMail(mail); });
    if (full.outcome().number() == err::mailLost ? leftFor(full.outcome())
                                                 : endedBy(full.outcome()))
      return;
    // The number by which it was fetched may mean another mail by now.
    if (!holds(full.value()->GetSubject(), kind_)) {
      leftFor(Outcome::withText(
          err::mailLost,
          "A mail has become another one while it was fetched. It stays in the mailbox."));
      return;
    }
    install(*full.value(), mail);
  }

  // `head`: what the server deletes.
  void install(const MailMessage& full, const MailMessage& head) {
    const auto note = full.GetBody();
    if (leftFor(note.outcome())) return;
    const auto looked = archiveOf(app_, full, addons_);
    if (leftFor(looked.outcome())) return;
    const MailArchive& archive = looked.value();
    if (!archive.found()) {
      showNote(app_, full, note.value(), "", NoteFor::reading);
      status("");
      if (endedBy({})) return;
      app_.windows.messageBox({"No attachments found!", ui::BoxIcon::exclamation});
      endedBy({});
      return;
    }
    const StandingAddon standing =
        standingAddon(app_, kind_.type, addons_ + archive.addon, packageOf(archive.addon));
    const bool stands = standing.standing == Standing::whole;
    const bool wanted = showNote(app_, full, note.value(),
                                 archive.file + inWords(full.AttachmentSize(archive.index)),
                                 stands ? NoteFor::reading : NoteFor::installing);
    status("");
    if (endedBy({}) || !wanted) return;
    switch (standing.standing) {
      case Standing::unknown:
        leftFor(standing.why);
        break;
      case Standing::whole:
        passOver(full, archive, head);
        break;
      // The installer asks what becomes of a folder that is no add-on.
      case Standing::notWhole:
      case Standing::absent:
        installAttachment(full, archive, head);
        break;
    }
  }

  std::string packageOf(const std::string& name) const {
    return app_.*kind_.packages + name + packageEnd;
  }

  // An add-on that stands and is listed needs the mail no more, when it has all that the mail
  // brings.
  void passOver(const MailMessage& full, const MailArchive& archive, const MailMessage& head) {
    const auto& [index, file, name] = archive;
    if (!kind_.listStanding(app_, name) || endedBy({})) return;
    if (endedBy(clearWorkingFolders(app_))) return;
    const std::string path = app_.InstallTempDir + file;
    status("Comparing \"" + file + "\" with what stands...");
    const Outcome saved = full.SaveAttachment(index, app_.InstallTempDir);
    line_.clearProgress();
    Result<std::vector<std::string>> lacked = saved;
    if (saved.ok())
      lacked = lackedEntries(app_, path, {addons_ + name, mainRootOf(kind_.store(app_)) + name},
                             packageOf(name));
    remove(path);
    status("");
    // Of an archive that cannot be read nobody knows what it brings.
    if (lacked.outcome().number() == err::zip) lacked = std::vector<std::string>{file};
    if (leftFor(lacked.outcome())) return;
    const bool other = !lacked.value().empty();
    if (other && !mayDeleteOther(name, file, lacked.value())) {
      endedBy({});
      return;
    }
    if (source_.onServer && !deleteMail(head, file)) return;
    if (!other) app_.windows.messageBox({"Addon already installed!", ui::BoxIcon::information});
    endedBy({});
  }

  // Of a mail that brings another version of what stands, or files that the add-on has lost.
  bool mayDeleteOther(const std::string& name, const std::string& file,
                      const std::vector<std::string>& lacked) {
    ui::Box box{.text = "\"" + name + "\" is installed already, but \"" + file +
                        "\" brings what does not stand there, or not like that. Files: " +
                        std::to_string(lacked.size()) + ", the first: \"" + lacked[0] + "\".",
                .icon = ui::BoxIcon::information};
    for (const std::string& entry : lacked) box.details += entry + "\r\n";
    if (!source_.onServer) {
      app_.windows.messageBox(box);
      return false;
    }
    box.text +=
        "\r\n\r\nDelete the mail from the server all the same? To install it, leave it there, and "
        "delete or rename what stands first.";
    box.icon = ui::BoxIcon::warning;
    box.buttons = ui::BoxButtons::yesNo;
    box.defaultButton = ui::DefaultButton::no;
    return app_.windows.messageBox(box) == ui::Answer::yes && goesOn(app_);
  }

  void installAttachment(const MailMessage& full, const MailArchive& archive,
                         const MailMessage& head) {
    const std::string& file = archive.file;
    status("Saving Attached \"" + file + "\"...");
    app_.windows.yieldTimes(yieldsBeforeStep);
    if (endedBy(clearWorkingFolders(app_))) return;
    const std::string path = app_.InstallTempDir + file;
    const Outcome saved = full.SaveAttachment(archive.index, app_.InstallTempDir);
    line_.clearProgress();
    if (!saved.ok() || !goesOn(app_)) remove(path);
    if (leftFor(saved)) return;
    app_.PendingZIP = path;
    app_.windows.yieldTimes(yieldsBeforeInstaller);
    const bool installed = goesOn(app_) && kind_.install(app_);
    app_.PendingZIP.clear();
    if (installed) {
      remove(path);
      if (source_.onServer) deleteMail(head, file);
      endedBy({});
      return;
    }
    if (source_.onServer && goesOn(app_) && mayDeleteUninstalled(file)) {
      // Now it is the only copy.
      if (keepOutside(path)) deleteMail(head, file);
    }
    remove(path);
    endedBy({});
  }

  bool mayDeleteUninstalled(const std::string& file) {
    return app_.windows.messageBox(
               {"\"" + file +
                    "\" was not installed.\r\n\r\nDelete its mail from the server all "
                    "the same?",
                ui::BoxIcon::warning, ui::BoxButtons::yesNo, ui::programTitle,
                ui::DefaultButton::no}) == ui::Answer::yes &&
           goesOn(app_);
  }

  bool keepOutside(const std::string& archive) {
    const auto kept = keepArchive(app_, archive);
    if (endedBy(kept.outcome())) return false;
    app_.windows.messageBox(
        {"The archive is kept as \"" + kept.value() + "\".", ui::BoxIcon::information});
    return true;
  }

  // The mail has it still.
  void remove(const std::string& archive) {
    if (presenceOf(app_.files(), archive) == Presence::absent) return;
    ReportError(app_, app_.files().deleteFile(archive));
  }

  // The server may take its time for it. `file`: what the mail has brought.
  bool deleteMail(const MailMessage& head, const std::string& file) {
    status("Deleting the mail of \"" + file + "\" from the server...");
    Outcome deleted = reach([&] { return engine_->DeleteMail(head); });
    status("");
    if (!deleted.ok() && deleted.number() != err::cancelled)
      deleted = Outcome::withText(deleted.number(), deleted.description() + "\r\nThe mail of \"" +
                                                        file + "\" may still be in the mailbox.");
    return !endedBy(deleted);
  }

  template <class Call>
  std::invoke_result_t<Call> reach(Call call) {
    auto result = contact(app_, *engine_, host_, call);
    line_.clearProgress();
    return result;
  }
  // The checkpoint: whether a failure, or the user, has ended the run.
  bool endedBy(const Outcome& outcome) {
    if (ReportMailError(app_, outcome) || !goesOn(app_)) ended_ = true;
    declined_ = declined_ || outcome.number() == err::mailNotEncrypted;
    return ended_;
  }
  // The same, except that a fault of the mail itself, or of what stands in its place, ends only
  // what is done with this one: it must not keep the mails behind it from their turn.
  bool leftFor(const Outcome& outcome) {
    if (outcome.number() != err::mail && outcome.number() != err::badFileName &&
        outcome.number() != err::mailLost)
      return endedBy(outcome);
    ReportError(app_, outcome);
    endedBy({});
    return true;
  }
  void status(const std::string& text) { line_.caption = text; }

  App& app_;
  const Source& source_;
  // What a run began with, it ends with: the installer may change the view.
  const MailKind& kind_;
  const std::string addons_;
  ui::StatusLine& line_;
  std::string host_;  // of the mailbox
  std::unique_ptr<MailEngine> engine_;
  std::unique_ptr<MailBundle> bundle_;
  int ofThisKind_ = 0, ofOtherKind_ = 0;  // mails that were seen
  bool ended_ = false;
  bool declined_ = false;  // the server may not be used unencrypted
};

constexpr Source pop3Mailbox{"Checking POP3 Emails...", &MailRun::fetchHeads,
                             "No Mails in POP3 Account!", true};
constexpr Source outlookFolder{"Checking Outlook Emails...", &MailRun::fetchOutlook, nullptr,
                               false};

void installFrom(App& app, const Source& source) {
  if (app.frmMain.frameScenery.visible && app.SceneryLib.empty()) {
    app.windows.messageBox(
        {"No folder is set for the scenery library. File, Settings (F2) is the place.",
         ui::BoxIcon::exclamation});
    return;
  }
  MailRun(app, source).run();
}

}  // namespace

void mnuFileInstallFromEmailPOP_Click(App& app) { installFrom(app, pop3Mailbox); }
void mnuFileInstallFromEmailOLK_Click(App& app) { installFrom(app, outlookFolder); }

}  // namespace skv
