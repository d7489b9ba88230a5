#include "platform/mail/curl_mail_engine.h"

#include <gmime/gmime.h>

#include <algorithm>
#include <limits>
#include <set>

#include "base/text.h"
#include "platform/disk/user_folders.h"
#include "platform/mail/mail_folders.h"
#include "platform/mail/mail_host.h"
#include "platform/mail/mail_program.h"
#include "platform/mail/mail_pulse.h"
#include "platform/mail/mail_words.h"
#include "platform/mail/outgoing_mail.h"
#include "platform/mail/outlook_folder.h"
#include "platform/mail/pop3_mailbox.h"
#include "platform/mail/received_mail.h"
#include "platform/mail/server_link.h"
#include "platform/mail/work_file.h"

namespace skv {

namespace {

constexpr int popPort = 110;
constexpr int submissionPort = 587, relayPort = 25;

// What TOP has brought of a mail.
class HeadMail : public MailMessage {
 public:
  explicit HeadMail(const MailHead& head) : key(head.key) {
    subject_ = decodedHeader(head.subject);
    lines_ = plainText(isUtf8(head.lines) ? head.lines : CodePage(1252).decode(head.lines));
  }
  std::string GetSubject() const override { return subject_; }
  Result<std::string> GetBody() const override { return lines_; }
  Result<int> AttachmentCount() const override { return 0; }
  Result<std::string> AttachmentName(int) const override { return none(); }
  Outcome SaveAttachment(int, std::string_view) const override { return none(); }

  const MailKey key;

 private:
  static Outcome none() { return Outcome::failure(err::invalidProcedureCall); }
  std::string subject_, lines_;
};

class HeadBundle : public MailBundle {
 public:
  explicit HeadBundle(std::vector<MailHead> heads) {
    mails_.reserve(heads.size());
    for (MailHead& head : heads) {
      mails_.push_back(std::make_unique<HeadMail>(head));
      head = {};
    }
  }
  int MessageCount() const override { return static_cast<int>(mails_.size()); }
  Result<const MailMessage*> MessageAt(int index) const override {
    if (index < 0 || index >= MessageCount()) return Outcome::failure(err::invalidProcedureCall);
    return static_cast<const MailMessage*>(mails_[static_cast<std::size_t>(index)].get());
  }

 private:
  std::vector<std::unique_ptr<HeadMail>> mails_;
};

class CurlMailEngine : public MailEngine {
 public:
  CurlMailEngine(FileSystem& files, const MailOptions& options)
      : files_(files), options_(withWorkFolder(options)), mailbox_(options_, pulse_) {}

  void AllowPlain(std::string_view host) override {
    if (const auto read = readMailHost(host)) plainHosts_.insert(read->name);
  }

  void SetSmtpHost(std::string_view host) override { smtpHost_ = host; }
  void SetSmtpUserName(std::string_view user) override { smtpUser_ = user; }
  void SetSmtpPassword(std::string_view password) override { smtpPassword_ = password; }
  std::unique_ptr<OutgoingMail> NewMessage() override {
    return std::make_unique<OutgoingMessage>(files_);
  }

  Outcome SendMail(const OutgoingMail& mail) override {
    return alone([&]() -> Outcome {
      const auto* message = dynamic_cast<const OutgoingMessage*>(&mail);
      if (message == nullptr) return Outcome::failure(err::invalidProcedureCall);
      const auto envelope = message->envelope();
      if (!envelope.ok()) return envelope.outcome();
      auto access = accessTo(smtpHost_, "SMTP", smtpUser_, smtpPassword_);
      if (!access.ok()) return access.outcome();
      if (access.value().host.port != 0)
        access.value().ports = {access.value().host.port};
      else if (smtpUser_.empty())
        access.value().ports = {relayPort, submissionPort};
      else
        access.value().ports = {submissionPort, relayPort};
      return sendBySmtp(
          access.value(), envelope.value(), [&] { return message->encoded(); }, options_, pulse_);
    });
  }
  Outcome SendMailByOutlook(const OutgoingMail& mail) override {
    return alone([&]() -> Outcome {
      const auto* message = dynamic_cast<const OutgoingMessage*>(&mail);
      if (message == nullptr) return Outcome::failure(err::invalidProcedureCall);
      return handToMailProgram(*message, options_.workFolder, pulse_);
    });
  }

  void SetPopUserName(std::string_view user) override { popUser_ = user; }
  void SetPopPassword(std::string_view password) override { popPassword_ = password; }
  void SetPopHost(std::string_view host) override { popHost_ = host; }
  void SetPopPort(int port) override { popPort_ = port; }

  Result<int> MailboxCount() override {
    int count = 0;
    const Outcome counted = inMailbox([&]() -> Outcome {
      const auto answer = mailbox_.count();
      if (answer.ok()) count = answer.value();
      return answer.outcome();
    });
    if (!counted.ok()) return counted;
    return count;
  }

  Result<std::unique_ptr<MailBundle>> FetchHeaders(int lines) override {
    std::unique_ptr<MailBundle> bundle;
    const Outcome fetched = inMailbox([&]() -> Outcome {
      auto heads = mailbox_.heads(std::max(lines, 0));
      if (!heads.ok()) return heads.outcome();
      bundle = std::make_unique<HeadBundle>(std::move(heads).value());
      return {};
    });
    if (!fetched.ok()) return fetched;
    return bundle;
  }

  Result<std::unique_ptr<MailMessage>> FetchFullMail(const MailMessage& head) override {
    std::unique_ptr<MailMessage> full;
    const Outcome fetched = inMailbox([&]() -> Outcome {
      const auto* known = dynamic_cast<const HeadMail*>(&head);
      if (known == nullptr) return Outcome::failure(err::invalidProcedureCall);
      auto file = makeWorkFile(options_.workFolder);
      if (!file.ok()) return file.outcome();
      const auto shared = std::make_shared<const Descriptor>(std::move(file).value());
      if (Outcome got = mailbox_.fetch(known->key, shared->get()); !got.ok()) return got;
      const off_t length = ::lseek(shared->get(), 0, SEEK_END);
      auto mail = readMail({shared, 0, length}, files_, pulse_);
      if (!mail.ok()) return mail.outcome();
      full = std::move(mail).value();
      return {};
    });
    if (fetched.number() == err::mailLost)
      return Outcome::withText(err::mailLost, "The mail \"" + head.GetSubject() +
                                                  "\" was not fetched. " + fetched.description());
    if (!fetched.ok()) return fetched;
    return full;
  }

  Outcome DeleteMail(const MailMessage& head) override {
    return inMailbox([&]() -> Outcome {
      const auto* known = dynamic_cast<const HeadMail*>(&head);
      if (known == nullptr) return Outcome::failure(err::invalidProcedureCall);
      return mailbox_.remove(known->key);
    });
  }

  void Disconnect() override {
    alone([this] {
      mailbox_.close();
      return Outcome();
    }).skipped();
  }

  void SetFetchLimit(int mails) override { fetchLimit_ = std::max(mails, 0); }
  void SetOutlookFilter(std::string_view expression) override { outlookFilter_ = expression; }
  Result<std::unique_ptr<MailBundle>> FetchOutlookFolder(std::string_view folder) override {
    std::unique_ptr<MailBundle> bundle;
    const Outcome done = alone([&]() -> Outcome {
      auto fetched = fetchOutlookFolder(
          {std::string(folder), outlookFilter_, static_cast<std::size_t>(fetchLimit_)},
          options_.workFolder, files_, pulse_);
      if (!fetched.ok()) return fetched.outcome();
      bundle = std::move(fetched).value();
      return {};
    });
    if (!done.ok()) return done;
    return bundle;
  }
  std::vector<std::string> OutlookFolders() override {
    std::vector<std::string> names;
    for (MailFolder& folder : localMailFolders()) names.push_back(std::move(folder.name));
    return names;
  }

 private:
  // Yield may run any operation of the program: it must not come back in here.
  template <class Work>
  Outcome alone(Work work) {
    if (busy_) return Outcome::withText(err::mail, "A mail is under way. Please wait for it.");
    busy_ = true;
    pulse_.restart();
    Outcome done = work();
    busy_ = false;
    return done;
  }

  template <class Work>
  Outcome inMailbox(Work work) {
    return alone([&]() -> Outcome {
      auto access = accessTo(popHost_, "POP", popUser_, popPassword_);
      if (!access.ok()) return access.outcome();
      const int port = access.value().host.port != 0 ? access.value().host.port : popPort_;
      access.value().ports = {port};
      mailbox_.setAccess(access.value());
      return work();
    });
  }

  Result<ServerAccess> accessTo(const std::string& text, std::string_view protocol,
                                const std::string& user, const std::string& password) const {
    const auto host = readMailHost(text);
    if (!host && trim(text).empty())
      return Outcome::withText(err::mail, "There is no " + std::string(protocol) + " Mailhost.");
    if (!host)
      return Outcome::withText(
          err::mail, "This is no " + std::string(protocol) + " Mailhost: " + onOneLine(text));
    if (onOneLine(user) != user || onOneLine(password) != password)
      return Outcome::withText(err::mail, "The user name or the password holds a line end.");
    return ServerAccess{*host, {}, user, password, plainHosts_.contains(host->name)};
  }

  static MailOptions withWorkFolder(MailOptions options) {
    if (options.workFolder.empty()) options.workFolder = cacheFolder() + "/mail";
    return options;
  }

  FileSystem& files_;
  const MailOptions options_;
  MailPulse pulse_{*this};
  Pop3Mailbox mailbox_;
  bool busy_ = false;
  std::set<std::string> plainHosts_;
  std::string smtpHost_, smtpUser_, smtpPassword_;
  std::string popHost_, popUser_, popPassword_;
  int popPort_ = popPort;
  int fetchLimit_ = std::numeric_limits<int>::max();
  std::string outlookFilter_;
};

}  // namespace

CurlMailSystem::CurlMailSystem(MailOptions options) : options_(std::move(options)) {
  g_mime_init();
}

std::unique_ptr<MailEngine> CurlMailSystem::load(FileSystem& files) {
  return std::make_unique<CurlMailEngine>(files, options_);
}

}  // namespace skv
