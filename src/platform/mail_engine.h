// The mail engine: sends mails by SMTP, reads and thins out a POP3 mailbox, and knows the mail
// programs of this machine, whose place the program calls "Outlook".
//
//   auto engine = platform.mail.load(files);
//   engine->Yield = [&] { windows.yield(); return !app.stopRequested; };
//   engine->SetPopHost("pop.example.com:995"), ...
//   auto heads = engine->FetchHeaders(10);
//   auto full = engine->FetchFullMail(*heads.value()->MessageAt(0).value());
//   engine->Disconnect();
//
// All calls come from one thread, and none while another call of the same engine runs (from Yield,
// say): such a call fails with err::mail. The engine outlives its mails.
//
// Failures. err::mail with a text for the user, which names the host and holds what the server
// said, but never a password; err::mailLost for one mail that cannot be had, while others may;
// err::cancelled when Yield answered false; err::mailNotEncrypted; those of the disk by their own
// numbers. Connecting may take 30 seconds; a server that is silent for 60 has failed, and so has
// one whose answers have no end.
//
// Encryption. On the ports 465 and 995 at once, elsewhere as soon as the server offers it, with its
// certificate and host name checked. A server that offers none is refused with
// err::mailNotEncrypted before it has got a name, a password or a mail, unless it was reached on
// this machine itself or AllowPlain names it. The caller asks the user, calls AllowPlain and
// repeats the call.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "platform/file_system.h"
#include "platform/mail_bundle.h"
#include "platform/mail_message.h"

namespace skv {

class MailEngine {
 public:
  virtual ~MailEngine() = default;

  // Events, on the calling thread, during every call that may take time. Percent: 0 to 100 of that
  // call.
  std::function<void(int percent)> Progress;
  // Called often so that the window can live. Answers whether the call may go on: one that may not
  // ends in order at once, with err::cancelled.
  std::function<bool()> Yield;

  // A host is a name or an address, alone or as "host:port" or "[address]:port".

  // Lets what is for this host go out unencrypted. A port in the text is passed over.
  virtual void AllowPlain(std::string_view host) = 0;

  // Sending. Without a port in the host's text 587 is tried first when there is a user, else 25,
  // and then the other one.
  virtual void SetSmtpHost(std::string_view host) = 0;
  // "": no login.
  virtual void SetSmtpUserName(std::string_view user) = 0;
  virtual void SetSmtpPassword(std::string_view password) = 0;

  virtual std::unique_ptr<OutgoingMail> NewMessage() = 0;
  // On success the server has taken the mail for every recipient. After a failure no recipient has
  // it, but for a connection lost in the very last step, of which the text tells.
  virtual Outcome SendMail(const OutgoingMail& mail) = 0;
  // Hands the mail to the mail program of the desktop, or to the machine's own sendmail where there
  // is none. Fails with err::mail when there is neither.
  virtual Outcome SendMailByOutlook(const OutgoingMail& mail) = 0;

  // The POP3 mailbox. The first call connects, and the connection is kept for those that follow;
  // one that is lost meanwhile is made anew where nothing is in doubt by that. Disconnect ends it:
  // due at the end of a run, as many servers keep other programs from the mailbox until then.
  virtual void SetPopUserName(std::string_view user) = 0;
  virtual void SetPopPassword(std::string_view password) = 0;
  virtual void SetPopHost(std::string_view host) = 0;
  virtual void SetPopPort(int port) = 0;  // 110 until set; a port in the host's text wins
  virtual Result<int> MailboxCount() = 0;
  // Of all mails, in the mailbox's order. `lines`: how many lines of each mail's body.
  virtual Result<std::unique_ptr<MailBundle>> FetchHeaders(int lines) = 0;
  // The whole mail of one that FetchHeaders of this engine made. It lies in a private file below
  // the user's cache until the message goes. Fails with err::mailLost when the mail is no longer
  // there, refused, too large, too much for the memory or another one than FetchHeaders has shown,
  // or when the connection broke for the second time while it came.
  virtual Result<std::unique_ptr<MailMessage>> FetchFullMail(const MailMessage& head) = 0;
  // On success the server has said that the mail is gone for good; a mail that was gone already is
  // one. On failure it may be there still. Nothing is deleted where the server shows another mail
  // in its place.
  virtual Outcome DeleteMail(const MailMessage& head) = 0;
  virtual void Disconnect() = 0;

  // The mail folders of this machine, which are read and never changed.
  // The most mails that FetchOutlookFolder brings.
  virtual void SetFetchLimit(int mails) = 0;
  // `Subject contains "text"`, exact in its letters; "" for none. What is not of this form lets
  // FetchOutlookFolder fail with err::mail.
  virtual void SetOutlookFilter(std::string_view expression) = 0;
  // The mails that pass the filter, whole. `folder`: the native or Windows path of an mbox file or
  // a Maildir, or levels by "/" below the folders of the mail programs. Fails with err::mail when
  // there is no such folder.
  virtual Result<std::unique_ptr<MailBundle>> FetchOutlookFolder(std::string_view folder) = 0;
  // The folders of the mail programs that are found here, as FetchOutlookFolder takes them.
  virtual std::vector<std::string> OutlookFolders() = 0;
};

class MailSystem {
 public:
  virtual ~MailSystem() = default;
  // An engine that reads and writes attachments in `files`, which outlives it. nullptr when the
  // program's part for the net is missing: an installation that is not whole.
  virtual std::unique_ptr<MailEngine> load(FileSystem& files) = 0;
};

}  // namespace skv
