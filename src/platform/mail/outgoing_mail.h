// A mail that is going out: what it says, and the bytes by which it travels.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/disk/os_error.h"
#include "platform/file_system.h"
#include "platform/mail/server_link.h"
#include "platform/mail_message.h"

namespace skv {

// The file of an attachment, open for reading.
struct AttachedFile {
  std::string name;  // in the mail
  std::string path;  // Windows path, for messages
  std::shared_ptr<const Descriptor> file;
  std::uint64_t length = 0;
};

class OutgoingMessage : public OutgoingMail {
 public:
  explicit OutgoingMessage(const FileSystem& files) : files_(files) {}

  Outcome AddRecipient(std::string_view displayName, std::string_view address) override;
  Outcome SetFromAddress(std::string_view address) override;
  void SetFromName(std::string_view name) override;
  void SetSubject(std::string_view subject) override;
  void SetBody(std::string_view text) override;
  Result<std::string> AddAttachment(std::string_view path) override;
  Outcome SetAttachmentName(int index, std::string_view name) override;

  struct Address {
    std::string name, address;
  };
  const std::vector<Address>& recipients() const { return recipients_; }
  const Address& sender() const { return sender_; }
  const std::string& subject() const { return subject_; }
  const std::string& body() const { return body_; }  // with "\n" at its line ends
  const std::vector<AttachedFile>& attachments() const { return attachments_; }

  // Fails when it lacks a sender or a recipient.
  Result<Envelope> envelope() const;
  // The whole mail with CR LF at its line ends, from its beginning. Reading it fails when a file
  // has become shorter. Keeps the files open, and nothing else of this object.
  Result<MailSource> encoded() const;

 private:
  const FileSystem& files_;
  std::vector<Address> recipients_;
  Address sender_;
  std::string subject_, body_;
  std::vector<AttachedFile> attachments_;
};

}  // namespace skv
