#include "platform/mail/outgoing_mail.h"

#include <fcntl.h>
#include <gmime/gmime.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>

#include "base/paths.h"
#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/mail/base64_lines.h"
#include "platform/mail/mail_words.h"

namespace skv {

namespace {

constexpr std::size_t longestAddress = 254;
constexpr std::string_view wordCharacters = "!#$%&'*+-/=?^_`{|}~";

bool isWord(std::string_view word, std::string_view extra, bool foreign) {
  return !word.empty() && std::ranges::all_of(word, [&](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') ||
           (byte >= 'A' && byte <= 'Z') || (foreign && byte >= 0x80) ||
           extra.find(c) != std::string_view::npos;
  });
}

bool isAddress(std::string_view address) {
  const std::size_t at = address.find('@');
  if (at == std::string_view::npos || address.size() > longestAddress || !isUtf8(address))
    return false;
  const auto words = split(address.substr(0, at), '.');
  const auto labels = split(address.substr(at + 1), '.');
  return std::ranges::all_of(
             words, [](const std::string& word) { return isWord(word, wordCharacters, false); }) &&
         std::ranges::all_of(labels, [](const std::string& label) {
           return isWord(label, "-_", true) && !label.starts_with('-') && !label.ends_with('-');
         });
}

// `whose`: " to send to", ...
Outcome noAddress(std::string_view text, std::string_view whose) {
  const std::string address = "EMail address" + std::string(whose);
  return Outcome::withText(err::mail, text.empty()
                                          ? "There is no " + address + "."
                                          : "This is no " + address + ": " + onOneLine(text));
}
constexpr std::string_view ofRecipient = " to send to", ofSender = " of a sender";

std::string randomText() {
  static constexpr char digits[] = "0123456789abcdefghijklmnopqrstuv";
  constexpr std::size_t length = 26;  // 130 bits
  std::random_device random;
  std::string text;
  while (text.size() < length) text += digits[random() & 31U];
  return text;
}

std::string withLineFeeds(std::string_view text) {
  std::string lines;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\0') continue;
    if (text[at] != '\r')
      lines += text[at];
    else if (at + 1 == text.size() || text[at + 1] != '\n')
      lines += '\n';
  }
  return lines;
}

std::string withCrLf(std::string_view lines) {
  std::string text;
  for (const char c : lines) {
    if (c == '\n') text += '\r';
    text += c;
  }
  return text;
}

GMimeDataWrapper* contentOf(const std::string& bytes, GMimeContentEncoding encoding) {
  GMimeStream* stream = g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size());
  GMimeDataWrapper* content = g_mime_data_wrapper_new_with_stream(stream, encoding);
  g_object_unref(stream);
  return content;
}

GMimeObject* textPart(const std::string& body) {
  GMimePart* part = g_mime_part_new_with_type("text", "plain");
  g_mime_object_set_content_type_parameter(GMIME_OBJECT(part), "charset", "utf-8");
  GMimeDataWrapper* content = contentOf(body, GMIME_CONTENT_ENCODING_DEFAULT);
  g_mime_part_set_content(part, content);
  g_object_unref(content);
  g_mime_part_set_content_encoding(
      part, g_mime_part_get_best_content_encoding(part, GMIME_ENCODING_CONSTRAINT_7BIT));
  return GMIME_OBJECT(part);
}

// The part of an attachment with `mark` in the place of its content.
GMimeObject* attachmentPart(const AttachedFile& attached, const std::string& type,
                            const std::string& mark) {
  const std::size_t slash = type.find('/');
  GMimePart* part =
      g_mime_part_new_with_type(type.substr(0, slash).c_str(), type.substr(slash + 1).c_str());
  g_mime_object_set_disposition(GMIME_OBJECT(part), GMIME_DISPOSITION_ATTACHMENT);
  g_mime_part_set_filename(part, attached.name.c_str());
  // The file name goes by RFC 2231. The name of the type is for programs that know only RFC 2047.
  GMimeParamList* names =
      g_mime_content_type_get_parameters(g_mime_object_get_content_type(GMIME_OBJECT(part)));
  if (GMimeParam* name = g_mime_param_list_get_parameter(names, "name"))
    g_mime_param_set_encoding_method(name, GMIME_PARAM_ENCODING_METHOD_RFC2047);
  GMimeDataWrapper* content = contentOf(mark, GMIME_CONTENT_ENCODING_BASE64);
  g_mime_part_set_content(part, content);
  g_object_unref(content);
  g_mime_part_set_content_encoding(part, GMIME_CONTENT_ENCODING_BASE64);
  return GMIME_OBJECT(part);
}

std::string typeOf(std::string_view name) {
  return lowerAscii(name).ends_with(".zip") ? "application/zip" : "application/octet-stream";
}

// A mail as it is read: texts with a file behind each but the last.
class EncodedMail {
 public:
  EncodedMail(std::vector<std::string> texts, std::vector<AttachedFile> files)
      : texts_(std::move(texts)), files_(std::move(files)) {}

  std::uint64_t size() const {
    std::uint64_t size = 0;
    for (const std::string& text : texts_) size += text.size();
    for (const AttachedFile& file : files_) size += base64Length(file.length);
    return size;
  }

  Result<std::size_t> read(std::span<char> buffer) {
    while (ready_.empty()) {
      if (inFile_) {
        if (Outcome filled = fillFromFile(); !filled.ok()) return filled;
      } else if (at_ < texts_.size()) {
        ready_ = texts_[at_];
        inFile_ = at_ < files_.size();
        offset_ = 0;
        if (!inFile_) ++at_;
      } else {
        return std::size_t{0};
      }
    }
    const std::size_t length = std::min(buffer.size(), ready_.size());
    std::memcpy(buffer.data(), ready_.data(), length);
    ready_.remove_prefix(length);
    return length;
  }

 private:
  static constexpr std::size_t linesAtOnce = 2048;

  Outcome fillFromFile() {
    const AttachedFile& file = files_[at_];
    bytes_.resize(linesAtOnce * base64LineInput);
    encoded_.resize(linesAtOnce * base64LineOutput);
    const std::size_t wanted = std::min<std::uint64_t>(bytes_.size(), file.length - offset_);
    std::size_t got = 0;
    while (got < wanted) {
      const ssize_t piece = retried([&] {
        return ::pread(file.file->get(), bytes_.data() + got, wanted - got,
                       static_cast<off_t>(offset_ + got));
      });
      if (piece < 0) return systemFailure(errno, file.path);
      if (piece == 0) return Outcome::failure(err::deviceIo, file.path + " has become shorter");
      got += static_cast<std::size_t>(piece);
    }
    offset_ += got;
    ready_ = {encoded_.data(), base64Lines(std::span(bytes_).first(got), encoded_.data())};
    if (offset_ == file.length) {
      inFile_ = false;
      ++at_;
    }
    return {};
  }

  std::vector<std::string> texts_;
  std::vector<AttachedFile> files_;
  std::size_t at_ = 0;  // of the text or file that is being read
  bool inFile_ = false;
  std::uint64_t offset_ = 0;
  std::vector<unsigned char> bytes_;
  std::vector<char> encoded_;
  std::string_view ready_;
};

}  // namespace

Outcome OutgoingMessage::AddRecipient(std::string_view displayName, std::string_view address) {
  const std::string plain = trim(address);
  if (!isAddress(plain)) return noAddress(address, ofRecipient);
  recipients_.push_back({onOneLine(trim(displayName)), plain});
  return {};
}

Outcome OutgoingMessage::SetFromAddress(std::string_view address) {
  const std::string plain = trim(address);
  if (!isAddress(plain)) return noAddress(address, ofSender);
  sender_.address = plain;
  return {};
}

void OutgoingMessage::SetFromName(std::string_view name) { sender_.name = onOneLine(trim(name)); }
void OutgoingMessage::SetSubject(std::string_view subject) { subject_ = onOneLine(subject); }
void OutgoingMessage::SetBody(std::string_view text) { body_ = withLineFeeds(text); }

Result<std::string> OutgoingMessage::AddAttachment(std::string_view path) {
  const auto state = files_.fileState(path);
  if (!state.ok()) return state.outcome();
  if (state.value().attributes.folder) return Outcome::failure(err::pathFileAccess, path);
  const auto native = files_.nativePath(path);
  if (!native.ok()) return native.outcome();
  auto file = std::make_shared<Descriptor>(openFile(native.value(), O_RDONLY));
  if (!file->valid()) return systemFailure(errno, path);
  struct stat status {};
  if (::fstat(file->get(), &status) != 0) return systemFailure(errno, path);
  attachments_.push_back({fileName(path), std::string(path), std::move(file),
                          static_cast<std::uint64_t>(status.st_size)});
  return typeOf(attachments_.back().name);
}

Outcome OutgoingMessage::SetAttachmentName(int index, std::string_view name) {
  if (index < 0 || index >= static_cast<int>(attachments_.size()))
    return Outcome::failure(err::invalidProcedureCall);
  if (!isElementName(name) || onOneLine(name) != name)
    return Outcome::failure(err::badFileName, onOneLine(name));
  attachments_[static_cast<std::size_t>(index)].name = name;
  return {};
}

Result<Envelope> OutgoingMessage::envelope() const {
  if (recipients_.empty()) return noAddress({}, ofRecipient);
  if (sender_.address.empty()) return noAddress({}, ofSender);
  Envelope envelope{sender_.address, {}};
  for (const Address& recipient : recipients_) envelope.to.push_back(recipient.address);
  return envelope;
}

Result<MailSource> OutgoingMessage::encoded() const {
  if (Result<Envelope> complete = envelope(); !complete.ok()) return complete.outcome();
  GMimeMessage* message = g_mime_message_new(TRUE);
  g_mime_message_add_mailbox(message, GMIME_ADDRESS_TYPE_FROM, sender_.name.c_str(),
                             sender_.address.c_str());
  for (const Address& recipient : recipients_)
    g_mime_message_add_mailbox(message, GMIME_ADDRESS_TYPE_TO, recipient.name.c_str(),
                               recipient.address.c_str());
  g_mime_message_set_subject(message, subject_.c_str(), "utf-8");
  GDateTime* now = g_date_time_new_now_local();
  g_mime_message_set_date(message, now);
  g_date_time_unref(now);
  const std::string id = randomText() + sender_.address.substr(sender_.address.find('@'));
  g_mime_message_set_message_id(message, id.c_str());

  const std::string mark = randomText();
  GMimeObject* text = textPart(body_);
  if (attachments_.empty()) {
    g_mime_message_set_mime_part(message, text);
  } else {
    GMimeMultipart* mixed = g_mime_multipart_new_with_subtype("mixed");
    const std::string boundary = "=-" + randomText();
    g_mime_multipart_set_boundary(mixed, boundary.c_str());
    g_mime_multipart_add(mixed, text);
    for (const AttachedFile& attached : attachments_) {
      GMimeObject* part = attachmentPart(attached, typeOf(attached.path), mark);
      g_mime_multipart_add(mixed, part);
      g_object_unref(part);
    }
    g_mime_message_set_mime_part(message, GMIME_OBJECT(mixed));
    g_object_unref(mixed);
  }
  g_object_unref(text);

  char* written = g_mime_object_to_string(GMIME_OBJECT(message), nullptr);
  const std::string whole = withCrLf(written);
  g_free(written);
  g_object_unref(message);

  std::vector<std::string> texts;
  std::string_view rest = whole;
  for (std::size_t at; (at = rest.find(mark)) != std::string_view::npos;) {
    texts.emplace_back(rest.substr(0, at));
    rest.remove_prefix(at + mark.size());
    // The lines of an attachment end themselves.
    if (rest.starts_with("\r\n")) rest.remove_prefix(2);
  }
  texts.emplace_back(rest);
  const auto mail = std::make_shared<EncodedMail>(std::move(texts), attachments_);
  return MailSource{[mail](std::span<char> buffer) { return mail->read(buffer); }, mail->size()};
}

}  // namespace skv
