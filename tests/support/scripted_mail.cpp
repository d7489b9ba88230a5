#include "support/scripted_mail.h"

#include "base/paths.h"

namespace skv::test {

class ScriptedMail::Full : public MailMessage {
 public:
  Full(ScriptedMail& script, FileSystem& files, ScriptedMailItem item)
      : script_(script), files_(files), item_(std::move(item)) {}
  std::string GetSubject() const override { return item_.subject; }
  Result<std::string> GetBody() const override {
    if (Outcome failure = script_.called("GetBody"); !failure.ok()) return failure;
    return item_.body;
  }
  Result<int> AttachmentCount() const override {
    if (Outcome failure = script_.called("AttachmentCount"); !failure.ok()) return failure;
    return static_cast<int>(item_.attachments.size());
  }
  Result<std::string> AttachmentName(int index) const override {
    if (Outcome failure = script_.called("AttachmentName"); !failure.ok()) return failure;
    const auto* attachment = at(index);
    if (attachment == nullptr) return Outcome::failure(err::invalidProcedureCall);
    return attachment->name;
  }
  Outcome SaveAttachment(int index, std::string_view folder) const override {
    if (Outcome failure = script_.called("SaveAttachment", std::string(folder)); !failure.ok())
      return failure;
    const auto* attachment = at(index);
    if (attachment == nullptr) return Outcome::failure(err::invalidProcedureCall);
    if (!isElementName(attachment->name))
      return Outcome::failure(err::badFileName, attachment->name);
    auto file = files_.createFile(withBackslash(folder) + attachment->name);
    if (!file.ok()) return file.outcome();
    if (Outcome written = file.value()->write(attachment->content); !written.ok()) return written;
    if (Outcome named = file.value()->commit({}); !named.ok()) return named;
    return files_.flushDisk(folder);
  }

 private:
  const ScriptedAttachment* at(int index) const {
    if (index < 0 || index >= static_cast<int>(item_.attachments.size())) return nullptr;
    return &item_.attachments[static_cast<std::size_t>(index)];
  }
  ScriptedMail& script_;
  FileSystem& files_;
  const ScriptedMailItem item_;
};

class ScriptedMail::Head : public MailMessage {
 public:
  explicit Head(ScriptedMailItem its) : item(std::move(its)) {}
  std::string GetSubject() const override { return item.subject; }
  Result<std::string> GetBody() const override { return item.body; }
  Result<int> AttachmentCount() const override { return 0; }
  Result<std::string> AttachmentName(int) const override {
    return Outcome::failure(err::invalidProcedureCall);
  }
  Outcome SaveAttachment(int, std::string_view) const override {
    return Outcome::failure(err::invalidProcedureCall);
  }
  const ScriptedMailItem item;
};

class ScriptedMail::Bundle : public MailBundle {
 public:
  Bundle(ScriptedMail& script, std::vector<std::unique_ptr<MailMessage>> mails)
      : script_(script), mails_(std::move(mails)) {}
  int MessageCount() const override { return static_cast<int>(mails_.size()); }
  Result<const MailMessage*> MessageAt(int index) const override {
    if (Outcome failure = script_.called("MessageAt"); !failure.ok()) return failure;
    if (index < 0 || index >= MessageCount()) return Outcome::failure(err::invalidProcedureCall);
    return static_cast<const MailMessage*>(mails_[static_cast<std::size_t>(index)].get());
  }

 private:
  ScriptedMail& script_;
  std::vector<std::unique_ptr<MailMessage>> mails_;
};

class ScriptedMail::Draft : public OutgoingMail {
 public:
  Draft(ScriptedMail& script, FileSystem& files) : script_(script), files_(files) {}
  Outcome AddRecipient(std::string_view displayName, std::string_view address) override {
    if (Outcome failure = script_.called("AddRecipient", std::string(address)); !failure.ok())
      return failure;
    if (address.find('@') == std::string_view::npos)
      return Outcome::failure(err::mail, "no address: " + std::string(address));
    mail.displayName = displayName;
    mail.to = address;
    return {};
  }
  Outcome SetFromAddress(std::string_view address) override {
    if (Outcome failure = script_.called("SetFromAddress", std::string(address)); !failure.ok())
      return failure;
    if (address.find('@') == std::string_view::npos)
      return Outcome::failure(err::mail, "no address: " + std::string(address));
    mail.from = address;
    return {};
  }
  void SetFromName(std::string_view name) override { mail.fromName = name; }
  void SetSubject(std::string_view subject) override { mail.subject = subject; }
  void SetBody(std::string_view text) override { mail.body = text; }
  Result<std::string> AddAttachment(std::string_view path) override {
    if (Outcome failure = script_.called("AddAttachment", std::string(path)); !failure.ok())
      return failure;
    auto content = files_.readFile(path);
    if (!content.ok()) return content.outcome();
    mail.attachments.push_back({fileName(path), std::move(content).value()});
    return std::string("application/zip");
  }
  Outcome SetAttachmentName(int index, std::string_view name) override {
    if (Outcome failure = script_.called("SetAttachmentName", std::string(name)); !failure.ok())
      return failure;
    if (index < 0 || index >= static_cast<int>(mail.attachments.size()))
      return Outcome::failure(err::invalidProcedureCall);
    mail.attachments[static_cast<std::size_t>(index)].name = name;
    return {};
  }
  SentMail mail;

 private:
  ScriptedMail& script_;
  FileSystem& files_;
};

class ScriptedMail::Engine : public MailEngine {
 public:
  Engine(ScriptedMail& script, FileSystem& files) : script_(script), files_(files) {}

  void AllowPlain(std::string_view host) override { script_.plainHosts.emplace_back(host); }
  void SetSmtpHost(std::string_view host) override {
    smtpHost_ = host;
    noted("SetSmtpHost", host);
  }
  void SetSmtpUserName(std::string_view user) override { noted("SetSmtpUserName", user); }
  void SetSmtpPassword(std::string_view password) override { noted("SetSmtpPassword", password); }
  std::unique_ptr<OutgoingMail> NewMessage() override {
    return std::make_unique<Draft>(script_, files_);
  }
  Outcome SendMail(const OutgoingMail& mail) override {
    return deliver("SendMail", mail, script_.reached(smtpHost_), script_.sent);
  }
  Outcome SendMailByOutlook(const OutgoingMail& mail) override {
    return deliver("SendMailByOutlook", mail, {}, script_.handedOver);
  }

  void SetPopUserName(std::string_view user) override { noted("SetPopUserName", user); }
  void SetPopPassword(std::string_view password) override { noted("SetPopPassword", password); }
  void SetPopHost(std::string_view host) override {
    popHost_ = host;
    noted("SetPopHost", host);
  }
  void SetPopPort(int port) override { noted("SetPopPort", std::to_string(port)); }
  Result<int> MailboxCount() override {
    if (Outcome failure = connected("MailboxCount"); !failure.ok()) return failure;
    return static_cast<int>(script_.mailbox.size());
  }
  Result<std::unique_ptr<MailBundle>> FetchHeaders(int lines) override {
    if (Outcome failure = connected("FetchHeaders", std::to_string(lines)); !failure.ok())
      return failure;
    std::vector<std::unique_ptr<MailMessage>> heads;
    for (const ScriptedMailItem& item : script_.mailbox)
      heads.push_back(std::make_unique<Head>(item));
    return bundle(std::move(heads));
  }
  Result<std::unique_ptr<MailMessage>> FetchFullMail(const MailMessage& head) override {
    if (Outcome failure = connected("FetchFullMail", head.GetSubject()); !failure.ok())
      return failure;
    const auto item = find(head);
    if (item == script_.mailbox.end())
      return Outcome::failure(err::mail, "the mail is no longer in the mailbox");
    return std::unique_ptr<MailMessage>(std::make_unique<Full>(script_, files_, *item));
  }
  Outcome DeleteMail(const MailMessage& head) override {
    if (Outcome failure = connected("DeleteMail", head.GetSubject()); !failure.ok()) return failure;
    const auto item = find(head);
    if (item != script_.mailbox.end()) script_.mailbox.erase(item);
    return {};
  }
  void Disconnect() override { script_.closed = true; }

  void SetFetchLimit(int mails) override { noted("SetFetchLimit", std::to_string(mails)); }
  void SetOutlookFilter(std::string_view expression) override {
    noted("SetOutlookFilter", expression);
  }
  Result<std::unique_ptr<MailBundle>> FetchOutlookFolder(std::string_view folder) override {
    if (Outcome failure = yielded("FetchOutlookFolder", std::string(folder)); !failure.ok())
      return failure;
    const auto found = script_.folders.find(std::string(folder));
    if (found == script_.folders.end())
      return Outcome::failure(err::mail, "no such folder: " + std::string(folder));
    std::vector<std::unique_ptr<MailMessage>> mails;
    for (const ScriptedMailItem& item : found->second)
      if (item.subject.find("/FSSkyvault") != std::string::npos)
        mails.push_back(std::make_unique<Full>(script_, files_, item));
    return bundle(std::move(mails));
  }
  std::vector<std::string> OutlookFolders() override {
    std::vector<std::string> names;
    for (const auto& [name, mails] : script_.folders) names.push_back(name);
    return names;
  }

 private:
  void noted(const std::string& operation, std::string_view value) {
    script_.called(operation, std::string(value)).skipped();
  }
  Outcome yielded(const std::string& operation, const std::string& argument = {}) {
    if (Outcome failure = script_.called(operation, argument); !failure.ok()) return failure;
    if (Progress) Progress(50);
    if (Yield && !Yield()) return Outcome::failure(err::cancelled);
    if (Progress) Progress(100);
    return {};
  }
  Outcome connected(const std::string& operation, const std::string& argument = {}) {
    if (Outcome failure = yielded(operation, argument); !failure.ok()) return failure;
    Outcome reached = script_.reached(popHost_);
    if (reached.ok()) script_.closed = false;
    return reached;
  }
  Outcome deliver(const std::string& operation, const OutgoingMail& mail, Outcome reached,
                  std::vector<SentMail>& box) {
    if (Outcome failure = yielded(operation); !failure.ok()) return failure;
    if (reached.ok()) box.push_back(dynamic_cast<const Draft&>(mail).mail);
    return reached;
  }
  // By its subject, which a test keeps different.
  std::vector<ScriptedMailItem>::iterator find(const MailMessage& head) const {
    return std::ranges::find(script_.mailbox, head.GetSubject(), &ScriptedMailItem::subject);
  }
  Result<std::unique_ptr<MailBundle>> bundle(
      std::vector<std::unique_ptr<MailMessage>> mails) const {
    return std::unique_ptr<MailBundle>(std::make_unique<Bundle>(script_, std::move(mails)));
  }

  ScriptedMail& script_;
  FileSystem& files_;
  std::string smtpHost_, popHost_;
};

std::unique_ptr<MailEngine> ScriptedMail::load(FileSystem& files) {
  return std::make_unique<Engine>(*this, files);
}

}  // namespace skv::test
