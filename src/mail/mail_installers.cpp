#include "mail/mail_installers.h"

#include <algorithm>
#include <cstdlib>
#include <type_traits>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/long_operation.h"
#include "core/messages.h"
#include "core/settings_keys.h"
#include "core/stores.h"
#include "core/working_folder.h"
#include "mail/mail_contact.h"
#include "mail/mail_kind.h"
#include "mail/passwords.h"

namespace skv {

namespace {

constexpr int yieldsBeforeStep = 1000;
constexpr int yieldsBeforeInstaller = 5000;
constexpr int linesOfHeads = 10;
constexpr int mostMails = 20000;
constexpr const char* ourMails = "Subject contains \"/FSSkyvault\"";

// Of a note in a box; more would make the box slow to open and no easier to read.
constexpr std::size_t longestNote = 100000;
constexpr std::size_t longestSubject = 200;

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
    if (!ended_) status("");
  }

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
    if (mail.GetSubject().find(kind_.marker) == std::string::npos) return;
    if (!source_.onServer) {
      install(mail, mail);
      return;
    }
    status("Transferring Email...");
    const auto full = reach([&] { return engine_->FetchFullMail(mail); });
    if (full.outcome().number() == err::mailLost ? leftFor(full.outcome())
                                                 : endedBy(full.outcome()))
      return;
    install(*full.value(), mail);
  }

  // `head`: what the server deletes.
  void install(const MailMessage& full, const MailMessage& head) {
    const auto note = full.GetBody();
    if (leftFor(note.outcome())) return;
    showNote(full.GetSubject(), note.value());
    if (endedBy({})) return;
    const auto count = full.AttachmentCount();
    if (leftFor(count.outcome())) return;
    const int last = count.value() - 1;
    const auto file = last < 0 ? Result<std::string>(std::string()) : full.AttachmentName(last);
    if (leftFor(file.outcome())) return;
    status("");
    if (!isArchiveName(file.value())) {
      app_.windows.messageBox({"No attachments found!", ui::BoxIcon::exclamation});
      endedBy({});
      return;
    }
    const std::string name = withoutEnd(file.value());
    const StandingAddon found =
        standingAddon(app_, kind_.type, addons_ + name, app_.*kind_.packages + name + packageEnd);
    switch (found.standing) {
      case Standing::unknown:
        leftFor(found.why);
        break;
      case Standing::whole:
        passOver(file.value(), head);
        break;
      // The installer asks what becomes of a folder that is no add-on.
      case Standing::notWhole:
      case Standing::absent:
        installAttachment(full, last, file.value(), head);
        break;
    }
  }

  // An add-on that is there needs the mail no more; unless it is in no list, as a run that was cut
  // short may have left it.
  void passOver(const std::string& file, const MailMessage& head) {
    if (!kind_.listStanding(app_, withoutEnd(file)) || endedBy({})) return;
    if (source_.onServer && !deleteMail(head, file)) return;
    app_.windows.messageBox({"Addon already installed!", ui::BoxIcon::information});
    status("");
    endedBy({});
  }

  void installAttachment(const MailMessage& full, int index, const std::string& file,
                         const MailMessage& head) {
    status("Saving Attached \"" + file + "\"...");
    app_.windows.yieldTimes(yieldsBeforeStep);
    if (endedBy(clearWorkingFolders(app_))) return;
    const std::string archive = app_.InstallTempDir + file;
    const Outcome saved = full.SaveAttachment(index, app_.InstallTempDir);
    line_.clearProgress();
    if (!saved.ok() || !goesOn(app_)) remove(archive);
    if (leftFor(saved)) return;
    app_.PendingZIP = archive;
    app_.windows.yieldTimes(yieldsBeforeInstaller);
    const bool installed = goesOn(app_) && kind_.install(app_);
    app_.PendingZIP.clear();
    if (installed) {
      if (source_.onServer) deleteMail(head, file);
      endedBy({});
      return;
    }
    if (source_.onServer && goesOn(app_) && mayDeleteUninstalled(file)) {
      // Now it is the only copy.
      if (keepOutside(archive)) deleteMail(head, file);
    }
    remove(archive);
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

  // What the sender has written, as plain text.
  void showNote(const std::string& subject, std::string note) {
    const std::size_t whole = note.size();
    cut(note, longestNote);
    if (note.size() < whole)
      note += "\n\n[The message goes on: " + std::to_string(whole) + " bytes in all.]";
    const bool isLong = note.size() > 1000 || std::ranges::count(note, '\n') > 20;
    if (!isLong) {
      app_.windows.messageBox({note});
      return;
    }
    std::string title = subject;
    cut(title, longestSubject);
    app_.windows.messageBox({.text = title, .details = note});
  }

  // At the end of a character.
  static void cut(std::string& text, std::size_t most) {
    if (text.size() <= most) return;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0U) == 0x80U) --most;
    text.resize(most);
  }

  // Whether an attachment of that name may be an add-on's archive: the disk takes the name as it
  // is, and so it takes that of the folder that an installation would make.
  bool isArchiveName(const std::string& file) const {
    if (!lowerAscii(file).ends_with(packageEnd)) return false;
    const std::string base = withoutEnd(file);
    if (!isElementName(base) || file.find('/') != std::string::npos || base.starts_with('.') ||
        base.ends_with('.') || base.ends_with(' '))
      return false;
    return mayStand(app_.InstallTempDir + file) && mayStand(addons_ + base);
  }
  // Asked of the disk, which alone knows how long a name may be.
  bool mayStand(const std::string& path) const {
    return app_.files().attributes(path).outcome().number() != err::badFileName;
  }
  static std::string withoutEnd(const std::string& file) {
    return file.substr(0, file.size() - std::string_view(packageEnd).size());
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
