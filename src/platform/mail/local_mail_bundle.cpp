#include "platform/mail/local_mail_bundle.h"

#include <fcntl.h>

#include "platform/disk/native_calls.h"

namespace skv {

namespace {

// Opens without a trace where the system lets us.
Descriptor openUntouched(const std::string& native, int flags) {
  Descriptor file(openFile(native, flags | O_NOATIME));
  if (!file.valid() && errno == EPERM) return openFile(native, flags);
  return file;
}

class LocalBundle : public MailBundle {
 public:
  LocalBundle(std::unique_ptr<MailPlace> place, std::vector<FoundMail> mails, FileSystem& files,
              MailPulse& pulse)
      : place_(std::move(place)), mails_(std::move(mails)), files_(files), pulse_(pulse) {
    faces_.reserve(mails_.size());
    for (std::size_t index = 0; index < mails_.size(); ++index)
      faces_.emplace_back(*this, static_cast<int>(index));
  }

  int MessageCount() const override { return static_cast<int>(mails_.size()); }
  Result<const MailMessage*> MessageAt(int index) const override {
    if (index < 0 || index >= MessageCount()) return Outcome::failure(err::invalidProcedureCall);
    return static_cast<const MailMessage*>(&faces_[static_cast<std::size_t>(index)]);
  }

 private:
  // Stands for a mail that is read when somebody asks for more than its subject.
  class Face : public MailMessage {
   public:
    Face(const LocalBundle& bundle, int index) : bundle_(bundle), index_(index) {}

    std::string GetSubject() const override { return bundle_.found(index_).subject; }
    std::string GetSender() const override {
      const auto mail = bundle_.opened(index_);
      return mail.ok() ? mail.value()->GetSender() : std::string();
    }
    std::uint64_t AttachmentSize(int attachment) const override {
      const auto mail = bundle_.opened(index_);
      return mail.ok() ? mail.value()->AttachmentSize(attachment) : 0;
    }
    Result<std::string> GetBody() const override {
      const auto mail = bundle_.opened(index_);
      if (!mail.ok()) return mail.outcome();
      return mail.value()->GetBody();
    }
    Result<int> AttachmentCount() const override {
      const auto mail = bundle_.opened(index_);
      if (!mail.ok()) return mail.outcome();
      return mail.value()->AttachmentCount();
    }
    Result<std::string> AttachmentName(int attachment) const override {
      const auto mail = bundle_.opened(index_);
      if (!mail.ok()) return mail.outcome();
      return mail.value()->AttachmentName(attachment);
    }
    Outcome SaveAttachment(int attachment, std::string_view folder) const override {
      const auto mail = bundle_.opened(index_);
      if (!mail.ok()) return mail.outcome();
      return mail.value()->SaveAttachment(attachment, folder);
    }

   private:
    const LocalBundle& bundle_;
    const int index_;
  };

  const FoundMail& found(int index) const { return mails_[static_cast<std::size_t>(index)]; }

  // Shared, since a yield within a call may lead to another mail.
  Result<std::shared_ptr<const MailMessage>> opened(int index) const {
    if (open_ && openIndex_ == index) return open_;
    pulse_.restart();
    auto file = place_->take(found(index), pulse_);
    if (!file.ok()) return file.outcome();
    auto mail = readMail(std::move(file).value(), files_, pulse_);
    if (!mail.ok()) return mail.outcome();
    open_ = std::move(mail).value();
    openIndex_ = index;
    return open_;
  }

  const std::unique_ptr<MailPlace> place_;
  const std::vector<FoundMail> mails_;
  std::vector<Face> faces_;
  FileSystem& files_;
  MailPulse& pulse_;
  mutable std::shared_ptr<const MailMessage> open_;
  mutable int openIndex_ = -1;
};

}  // namespace

Outcome MailPlace::gone(const FoundMail& mail) {
  return Outcome::withText(
      err::mail, "The mail \"" + mail.subject + "\" is no longer where it was in the mail folder.");
}

std::unique_ptr<MailBundle> localMailBundle(std::unique_ptr<MailPlace> place,
                                            std::vector<FoundMail> mails, FileSystem& files,
                                            MailPulse& pulse) {
  return std::make_unique<LocalBundle>(std::move(place), std::move(mails), files, pulse);
}

Result<Descriptor> openStoredFile(const std::string& native) {
  // A pipe would let the call wait for a writer.
  Descriptor file = openUntouched(native, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!file.valid()) return systemFailure(errno, native);
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return systemFailure(errno, native);
  if (!S_ISREG(status.st_mode)) return Outcome::failure(err::pathFileAccess, native);
  return file;
}

Result<Descriptor> openStoredFolder(const std::string& native) {
  Descriptor folder = openUntouched(native, O_RDONLY | O_DIRECTORY);
  if (!folder.valid()) return systemFailure(errno, native);
  return folder;
}

}  // namespace skv
