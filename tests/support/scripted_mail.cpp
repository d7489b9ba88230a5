#include "support/scripted_mail.h"

#include "base/paths.h"
#include "support/text.h"

namespace skv::test {

class ScriptedMail::Message : public MailMessage {
 public:
  Message(ScriptedMail& script, FileSystem& files, ScriptedMailItem item)
      : script_(script), files_(files), item_(std::move(item)) {}
  std::string GetSubject() const override { return item_.subject; }
  std::string GetSender() const override { return item_.sender; }
  std::uint64_t AttachmentSize(int index) const override { return at(index).content.size(); }
  Result<std::string> GetBody() const override { return script_.answer("GetBody", item_.body); }
  Result<int> AttachmentCount() const override {
    return script_.answer("AttachmentCount", static_cast<int>(item_.attachments.size()));
  }
  Result<std::string> AttachmentName(int index) const override {
    return script_.answer("AttachmentName", at(index).name);
  }
  Outcome SaveAttachment(int index, std::string_view folder) const override {
    if (Outcome failure = script_.called("SaveAttachment", folder); !failure.ok()) return failure;
    const auto& [name, content] = at(index);
    if (!isElementName(name)) return Outcome::failure(err::badFileName, name);
    auto file = files_.createFile(withBackslash(folder) + name);
    if (!file.ok()) return file.outcome();
    if (Outcome written = file.value()->write(content); !written.ok()) return written;
    if (Outcome named = file.value()->commit({}); !named.ok()) return named;
    return files_.flushDisk(folder);
  }

 private:
  // A test that asks for one that is not there fails.
  const ScriptedAttachment& at(int index) const {
    return item_.attachments.at(static_cast<std::size_t>(index));
  }
  ScriptedMail& script_;
  FileSystem& files_;
  const ScriptedMailItem item_;
};

class ScriptedMail::Bundle : public MailBundle {
 public:
  Bundle(ScriptedMail& script, std::vector<std::unique_ptr<MailMessage>> mails)
      : script_(script), mails_(std::move(mails)) {}
  int MessageCount() const override { return static_cast<int>(mails_.size()); }
  Result<const MailMessage*> MessageAt(int index) const override {
    const MailMessage* mail = mails_.at(static_cast<std::size_t>(index)).get();
    return script_.answer("MessageAt", mail);
  }

 private:
  ScriptedMail& script_;
  std::vector<std::unique_ptr<MailMessage>> mails_;
};

class ScriptedMail::Draft : public OutgoingMail {
 public:
  Draft(ScriptedMail& script, FileSystem& files) : script_(script), files_(files) {}
  Outcome AddRecipient(std::string_view displayName, std::string_view address) override {
    const std::string before = mail.to.empty() ? "" : mail.to + "|";
    mail.displayName += (before.empty() ? "" : "|") + std::string(displayName);
    Outcome added = addressed("AddRecipient", address, mail.to);
    mail.to = before + mail.to;
    return added;
  }
  Outcome SetFromAddress(std::string_view address) override {
    return addressed("SetFromAddress", address, mail.from);
  }
  void SetFromName(std::string_view name) override { mail.fromName = name; }
  void SetSubject(std::string_view subject) override { mail.subject = subject; }
  void SetBody(std::string_view text) override { mail.body = text; }
  Result<std::string> AddAttachment(std::string_view path) override {
    if (Outcome failure = script_.called("AddAttachment", path); !failure.ok()) return failure;
    auto content = files_.readFile(path);
    if (!content.ok()) return content.outcome();
    mail.attachments.push_back({fileName(path), std::move(content).value()});
    return std::string("application/zip");
  }
  Outcome SetAttachmentName(int index, std::string_view name) override {
    mail.attachments.at(static_cast<std::size_t>(index)).name = name;
    return script_.called("SetAttachmentName", name);
  }
  SentMail mail;

 private:
  Outcome addressed(const std::string& operation, std::string_view address, std::string& place) {
    place = address;
    if (Outcome failure = script_.called(operation, address); !failure.ok()) return failure;
    if (place.find('@') != std::string::npos) return {};
    return Outcome::failure(err::mail, "no address: " + place);
  }
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
    std::vector<ScriptedMailItem> heads = script_.mailbox;
    for (ScriptedMailItem& head : heads) head.attachments.clear();
    return bundle(heads);
  }
  Result<std::unique_ptr<MailMessage>> FetchFullMail(const MailMessage& head) override {
    if (Outcome failure = connected("FetchFullMail", head.GetSubject()); !failure.ok())
      return failure;
    const auto item = find(head);
    if (item == script_.mailbox.end())
      return Outcome::failure(err::mail, "the mail is no longer in the mailbox");
    if (script_.fetchedSubject.empty()) return message(*item);
    ScriptedMailItem other = *item;
    other.subject = script_.fetchedSubject;
    return message(other);
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
    if (Outcome failure = yielded("FetchOutlookFolder", folder); !failure.ok()) return failure;
    const auto found = script_.folders.find(std::string(folder));
    if (found == script_.folders.end())
      return Outcome::failure(err::mail, "no such folder: " + std::string(folder));
    std::vector<ScriptedMailItem> mails = found->second;
    std::erase_if(mails, [](const auto& mail) { return !holds(mail.subject, "/FSSkyvault"); });
    return bundle(mails);
  }
  std::vector<std::string> OutlookFolders() override {
    std::vector<std::string> names;
    for (const auto& [name, mails] : script_.folders) names.push_back(name);
    return names;
  }

 private:
  void noted(const std::string& operation, std::string_view value) {
    script_.called(operation, value).skipped();
  }
  Outcome yielded(const std::string& operation, std::string_view argument = {}) {
    if (Outcome failure = script_.called(operation, argument); !failure.ok()) return failure;
    if (Progress) Progress(50);
    if (Yield && !Yield()) return Outcome::failure(err::cancelled);
    if (Progress) Progress(100);
    return {};
  }
  Outcome connected(const std::string& operation, std::string_view argument = {}) {
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
  std::unique_ptr<MailMessage> message(const ScriptedMailItem& item) const {
    return std::make_unique<Message>(script_, files_, item);
  }
  std::unique_ptr<MailBundle> bundle(const std::vector<ScriptedMailItem>& items) const {
    std::vector<std::unique_ptr<MailMessage>> mails;
    for (const ScriptedMailItem& item : items) mails.push_back(message(item));
    return std::make_unique<Bundle>(script_, std::move(mails));
  }

  ScriptedMail& script_;
  FileSystem& files_;
  std::string smtpHost_, popHost_;
};

std::unique_ptr<MailEngine> ScriptedMail::load(FileSystem& files) {
  return std::make_unique<Engine>(*this, files);
}

}  // namespace skv::test
