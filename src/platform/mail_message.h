// A mail that is going out, and a mail that has come.
//
// Text goes in and comes out as UTF-8. Attachments count from 0. What a mail says was written by
// others: no name or text of one is a path, an address or a command before somebody has judged it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/outcome.h"

namespace skv {

// Made by MailEngine::NewMessage. It goes out as plain text with its attachments and the headers
// From, To, Subject, Date, Message-ID, MIME-Version and those that tell the content: no receipts,
// no priorities, nothing that tells of the program or the machine.
class OutgoingMail {
 public:
  virtual ~OutgoingMail() = default;

  // Adds a To address. Fails with err::mail when `address` is no single address of the form
  // name@domain, in ASCII before the "@". Line ends and other control characters become blanks in
  // a display name, a name of the sender and a subject; an address with one is refused.
  virtual Outcome AddRecipient(std::string_view displayName, std::string_view address) = 0;
  virtual Outcome SetFromAddress(std::string_view address) = 0;  // fails as AddRecipient does
  virtual void SetFromName(std::string_view name) = 0;
  virtual void SetSubject(std::string_view subject) = 0;
  virtual void SetBody(std::string_view text) = 0;

  // Attaches the file of a Windows path, under its own name, and answers its content type. The file
  // is opened here, and read when the mail is sent; it must not change between.
  virtual Result<std::string> AddAttachment(std::string_view path) = 0;
  // Fails with invalidProcedureCall when there is no such attachment, badFileName when the name is
  // empty or holds a separator or a control character.
  virtual Outcome SetAttachmentName(int index, std::string_view name) = 0;
};

// A mail of a mailbox or a mail folder. One that FetchHeaders made has its subject, and as its body
// the first lines as they were sent; it has no attachments. Every other one is whole: its content
// lies in a file, and only what is asked for is read.
class MailMessage {
 public:
  virtual ~MailMessage() = default;

  // Decoded, on one line, "" for none.
  virtual std::string GetSubject() const = 0;
  // Who says to have sent it, decoded, on one line, "" for nobody. A head does not tell.
  virtual std::string GetSender() const { return {}; }
  // The first text that is no attachment, decoded, with "\n" at the line ends and without control
  // characters. Of a text in HTML what a reader would see. A text of more than 4 MB is cut and says
  // so at its end.
  virtual Result<std::string> GetBody() const = 0;

  // What counts as an attachment: a part with a file name or marked as an attachment, however deep
  // in the mail and in mails forwarded with it, and a file that stands uuencoded in a text; in the
  // order of the mail.
  virtual Result<int> AttachmentCount() const = 0;
  // The file name without any folders before it, "" for none. It may be one that no disk takes.
  // Fails with invalidProcedureCall when there is no such attachment.
  virtual Result<std::string> AttachmentName(int index) const = 0;
  // About how many bytes it has, for the user to read; 0 when that is not known.
  virtual std::uint64_t AttachmentSize(int /*index*/) const { return 0; }
  // Writes the attachment under its name into the folder, a Windows path with or without trailing
  // backslash. It is whole and flushed to the disk when the call answers success, and replaces an
  // older file of its name; a failure leaves that as it was. Fails with badFileName when the name
  // is none that the disk takes as it is. What is broken in the mail is saved as far as it can be
  // read. Calls Yield and Progress of the engine that the mail came from.
  virtual Outcome SaveAttachment(int index, std::string_view folder) const = 0;
};

}  // namespace skv
