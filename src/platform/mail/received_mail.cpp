#include "platform/mail/received_mail.h"

#include <algorithm>
#include <array>
#include <future>

#include "base/paths.h"
#include "base/text.h"
#include "platform/disk/native_calls.h"
#include "platform/mail/base64_lines.h"
#include "platform/mail/mail_parts.h"
#include "platform/mail/mail_words.h"
#include "platform/mail/parse_guard.h"

namespace skv {

namespace {

constexpr std::size_t longestBody = std::size_t{4} << 20U;
constexpr std::size_t textPiece = std::size_t{1} << 14U;
constexpr std::size_t filePiece = std::size_t{1} << 20U;

// The name without the folders that other systems' programs put before it.
std::string lastElement(std::string_view name) {
  const std::size_t separator = name.find_last_of("/\\");
  return trim(separator == std::string_view::npos ? name : name.substr(separator + 1));
}

// Puts one file and its name on the disk: 0 or the system's error number.
int flushFile(const std::string& native) {
  const Descriptor file = openFile(native, O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
  if (!file.valid()) return errno;
  if (const int error = errorOf([&] { return ::fsync(file.get()); })) return error;
  const Descriptor folder =
      openFile(native.substr(0, native.rfind('/') + 1), O_RDONLY | O_DIRECTORY);
  if (!folder.valid()) return errno;
  const int error = errorOf([&] { return ::fsync(folder.get()); });
  return error == EINVAL ? 0 : error;  // a disk that has nothing to flush
}

std::string_view orEmpty(const char* text) { return text == nullptr ? "" : text; }

// The decoded bytes of a part, each piece made in a thread of its own. `part` outlives the reader.
class PartReader {
 public:
  explicit PartReader(GMimePart* part)
      : base64_(isBase64(part)), stream_(base64_ ? rawStream(part) : decodedStream(part)) {}

  // The bytes stay until the piece after the next is asked for, which may be when this one is
  // there.
  std::future<Result<std::span<char>>> readAhead() {
    return std::async(std::launch::async, [this] { return read(); });
  }
  // The last piece that was got is the last one.
  bool ended() const { return ended_; }

 private:
  Result<std::span<char>> read() {
    std::vector<char>& bytes = pieces_[at_ = 1 - at_];
    bytes.resize(filePiece + 1);
    std::vector<char>& raw = base64_ ? raw_ : bytes;
    raw.resize(filePiece + 1);
    // Beyond its end a stretch of a file answers a failure.
    const ssize_t got = g_mime_stream_eos(stream_.get()) != 0
                            ? 0
                            : g_mime_stream_read(stream_.get(), raw.data(), filePiece);
    if (got < 0) return Outcome::failure(err::deviceIo, "reading the mail");
    ended_ = got == 0;
    const auto length = static_cast<std::size_t>(got);
    if (!base64_) return std::span(bytes).first(length);
    return std::span(bytes).first(ended_ ? decoder_.finish(bytes.data())
                                         : decoder_.decode({raw.data(), length}, bytes.data()));
  }

  const bool base64_;
  const GOwned<GMimeStream> stream_;
  Base64Decoder decoder_;
  std::vector<char> raw_;
  std::array<std::vector<char>, 2> pieces_;
  std::size_t at_ = 0;
  bool ended_ = false;
};

class ReceivedMail : public MailMessage {
 public:
  ReceivedMail(MailFile where, GOwned<GMimeMessage> message, FileSystem& files, MailPulse& pulse)
      : where_(std::move(where)),
        message_(std::move(message)),
        parts_(partsOf(g_mime_message_get_mime_part(message_.get()), pulse)),
        files_(files),
        pulse_(pulse) {}

  std::string GetSubject() const override { return header("Subject"); }
  std::string GetSender() const override { return header("From"); }

  Result<std::string> GetBody() const override {
    if (parts_.text == nullptr) return std::string();
    const auto [bytes, cut] = textBytes();
    GMimeContentType* type = g_mime_object_get_content_type(GMIME_OBJECT(parts_.text));
    std::string text = decodedText(
        bytes, std::string(orEmpty(g_mime_content_type_get_parameter(type, "charset"))));
    if (g_mime_content_type_is_type(type, "text", "html") != 0) text = textOfHtml(text);
    text = plainText(text);
    if (cut) text += "\n[...]";
    return text;
  }

  Result<int> AttachmentCount() const override {
    return static_cast<int>(parts_.attachments.size());
  }

  Result<std::string> AttachmentName(int index) const override {
    if (!has(index)) return Outcome::failure(err::invalidProcedureCall);
    return lastElement(at(index).name);
  }

  std::uint64_t AttachmentSize(int index) const override {
    if (!has(index)) return 0;
    const auto [begin, end] = at(index).range;
    return at(index).uuencoded ? (end - begin) * 3 / 4 : likelyLength(at(index).part);
  }

  Outcome SaveAttachment(int index, std::string_view folder) const override {
    if (!has(index)) return Outcome::failure(err::invalidProcedureCall);
    const std::string name = lastElement(at(index).name);
    if (!isElementName(name) || std::ranges::any_of(name, isForbiddenInNames))
      return Outcome::failure(err::badFileName, onOneLine(name));
    pulse_.restart();
    const std::string path = withBackslash(folder) + name;
    auto file = files_.createFile(path);
    if (!file.ok()) return file.outcome();
    Outcome written = at(index).uuencoded ? writeUuencoded(at(index), *file.value())
                                          : writePart(at(index), *file.value());
    if (!written.ok()) return written;
    if (Outcome named = file.value()->commit({}); !named.ok()) return named;
    return flushed(path);
  }

 private:
  std::string header(const char* name) const {
    char* headers = g_mime_object_get_headers(GMIME_OBJECT(message_.get()), nullptr);
    std::string value = decodedHeader(headerIn(orEmpty(headers), name));
    g_free(headers);
    return value;
  }
  bool has(int index) const {
    return index >= 0 && index < static_cast<int>(parts_.attachments.size());
  }
  const MailPart& at(int index) const {
    return parts_.attachments[static_cast<std::size_t>(index)];
  }

  // This file alone: a flush of the whole disk would put the mail itself on it as well. The file
  // has its name, so that a wish to end comes too late.
  Outcome flushed(const std::string& path) const {
    const auto native = files_.nativePath(path);
    if (!native.ok()) return native.outcome();
    auto flush = std::async(std::launch::async, &flushFile, native.value());
    while (flush.wait_for(MailPulse::interval) != std::future_status::ready) pulse_.beat();
    const int error = flush.get();
    return error == 0 ? Outcome() : systemFailure(error, path);
  }

  // Of the mail's text, without the files that stand in it.
  std::pair<std::string, bool> textBytes() const {
    std::string bytes;
    const auto stream = decodedStream(parts_.text);
    std::uint64_t offset = 0;
    auto skipped = parts_.attachments.begin();
    std::array<char, textPiece> buffer;
    for (;;) {
      const ssize_t got = g_mime_stream_read(stream.get(), buffer.data(), buffer.size());
      if (got <= 0 || !pulse_.beat()) return {std::move(bytes), false};
      std::string_view piece(buffer.data(), static_cast<std::size_t>(got));
      while (!piece.empty()) {
        skipped = std::find_if(skipped, parts_.attachments.end(), [&](const MailPart& part) {
          return part.uuencoded && part.part == parts_.text && part.range.end > offset;
        });
        const bool none = skipped == parts_.attachments.end();
        const bool inside = !none && offset >= skipped->range.begin;
        const std::uint64_t until =
            none ? offset + piece.size() : (inside ? skipped->range.end : skipped->range.begin);
        const std::size_t length = std::min<std::uint64_t>(piece.size(), until - offset);
        if (!inside) bytes += piece.substr(0, length);
        piece.remove_prefix(length);
        offset += length;
      }
      if (bytes.size() > longestBody) {
        bytes.resize(longestBody);
        return {std::move(bytes), true};
      }
    }
  }

  // Passes the decoded bytes of a part on, piece by piece, while the next piece is read.
  template <class Take>
  Outcome readPart(GMimePart* part, std::uint64_t length, Take take) const {
    PartReader reader(part);
    std::uint64_t done = 0;
    auto next = reader.readAhead();
    for (;;) {
      if (!pulse_.beat()) return MailPulse::cancelled();
      const auto piece = next.get();
      if (!piece.ok()) return piece.outcome();
      const bool last = reader.ended();
      if (!last) next = reader.readAhead();
      done += piece.value().size();
      pulse_.tell(done, length);
      if (Outcome taken = take(piece.value()); last || !taken.ok()) return taken;
    }
  }

  // What a part is likely to hold: base64 is a third longer than its bytes.
  static std::uint64_t likelyLength(GMimePart* part) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (content == nullptr) return 0;
    const auto raw = g_mime_stream_length(g_mime_data_wrapper_get_stream(content));
    if (raw < 0) return 0;
    return isBase64(part) ? static_cast<std::uint64_t>(raw) * 3 / 4
                          : static_cast<std::uint64_t>(raw);
  }

  Outcome writePart(const MailPart& attachment, FileWriter& file) const {
    return readPart(attachment.part, likelyLength(attachment.part),
                    [&](std::span<const char> bytes) { return file.write(bytes); });
  }

  Outcome writeUuencoded(const MailPart& attachment, FileWriter& file) const {
    const GOwned<GMimeFilter> decoder(
        g_mime_filter_basic_new(GMIME_CONTENT_ENCODING_UUENCODE, FALSE));
    const PartRange range = attachment.range;
    std::uint64_t offset = 0;
    return readPart(attachment.part, range.end, [&](std::span<char> bytes) -> Outcome {
      const std::uint64_t begin = std::clamp(range.begin, offset, offset + bytes.size());
      const std::uint64_t end = std::clamp(range.end, offset, offset + bytes.size());
      const auto inside = bytes.subspan(begin - offset, end - begin);
      offset += bytes.size();
      if (inside.empty()) return {};
      char* out = nullptr;
      std::size_t length = 0, before = 0;
      g_mime_filter_filter(decoder.get(), inside.data(), inside.size(), 0, &out, &length, &before);
      return file.write({out, length});
    });
  }

  const MailFile where_;
  const GOwned<GMimeMessage> message_;
  const MailParts parts_;
  FileSystem& files_;
  MailPulse& pulse_;
};

}  // namespace

Result<std::unique_ptr<MailMessage>> readMail(MailFile where, FileSystem& files, MailPulse& pulse) {
  ParseGuard guard(pulse);
  const GOwned<GMimeStream> stream(guard.streamOf(where.file->get(), where.begin, where.end));
  const GOwned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
  g_mime_parser_set_persist_stream(parser.get(), TRUE);
  GOwned<GMimeMessage> message(g_mime_parser_construct_message(parser.get(), nullptr));
  if (!pulse.beat()) return MailPulse::cancelled();
  if (guard.error() != 0) return systemFailure(guard.error(), "the mail under way");
  if (guard.tooMuch())
    return Outcome::withText(err::mailLost, "A mail has too many parts or headers to be read.");
  if (!message) message.reset(g_mime_message_new(FALSE));
  return std::unique_ptr<MailMessage>(
      std::make_unique<ReceivedMail>(std::move(where), std::move(message), files, pulse));
}

}  // namespace skv
