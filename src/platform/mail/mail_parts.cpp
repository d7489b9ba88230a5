#include "platform/mail/mail_parts.h"

#include <algorithm>
#include <array>

#include "base/text.h"
#include "platform/mail/mail_words.h"

namespace skv {

namespace {

// More are found in no mail that somebody has written.
constexpr std::size_t mostFiles = 10'000;

bool isText(GMimeObject* object) {
  GMimeContentType* type = g_mime_object_get_content_type(object);
  return g_mime_content_type_is_type(type, "text", "*") != 0;
}

bool isHtml(GMimeObject* object) {
  return g_mime_content_type_is_type(g_mime_object_get_content_type(object), "text", "html") != 0;
}

std::string nameOf(GMimePart* part) {
  const char* name = g_mime_part_get_filename(part);
  if (name == nullptr) return {};
  // Some programs put encoded words (RFC 2047) where they have no place.
  const std::string plain = name;
  return plain.find("=?") == std::string::npos ? plain : decodedHeader(plain);
}

bool isAttachment(GMimePart* part) {
  return g_mime_part_is_attachment(part) != 0 || !nameOf(part).empty();
}

// The child that shows what the others show as well, as the plainest text.
GMimeObject* plainest(GMimeMultipart* alternatives) {
  GMimeObject* last = nullptr;
  for (int child = 0; child < g_mime_multipart_get_count(alternatives); ++child) {
    last = g_mime_multipart_get_part(alternatives, child);
    if (GMIME_IS_PART(last) && isText(last) && !isHtml(last)) return last;
  }
  return last;
}

// "begin 644 name": the name, "" for another line.
std::string nameOfBegin(std::string_view line) {
  constexpr std::string_view word = "begin ";
  if (!line.starts_with(word)) return {};
  line.remove_prefix(word.size());
  const std::size_t mode = std::min(line.find_first_not_of("01234567"), line.size());
  if (mode < 3 || mode > 4 || line.substr(mode, 1) != " ") return {};
  return trim(line.substr(mode + 1));
}

// Whether a line holds as many characters as its first one says. Blanks at its end may have been
// lost, and some programs add a check character.
bool isUuLine(std::string_view line) {
  if (line.empty() || line.front() < ' ' || line.front() > '`') return false;
  const std::size_t bytes = (static_cast<std::size_t>(line.front()) - ' ') & 63U;
  return line.size() <= (bytes + 2) / 3 * 4 + 2;
}

// The files that stand uuencoded in a text: from the line "begin 644 name" to the line "end".
void findUuencoded(GMimePart* text, MailPulse& pulse, std::vector<MailPart>& files) {
  constexpr std::size_t longestLine = 512;  // longer ones are neither "begin" nor "end"
  MailPart open;
  bool inside = false, first = false;
  std::uint64_t offset = 0;
  const auto take = [&](std::string_view line, std::uint64_t begin, std::uint64_t end) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (!inside) {
      open = {text, nameOfBegin(line), true, {begin, 0}};
      inside = first = !open.name.empty();
    } else if (trim(line) == "end" && !first) {
      open.range.end = end;
      files.push_back(open);
      inside = false;
    } else {
      inside = isUuLine(line);
      first = false;
    }
  };

  const auto stream = decodedStream(text);
  std::string line;
  std::uint64_t begin = 0;
  std::array<char, 16384> buffer;
  for (;;) {
    const ssize_t got = g_mime_stream_read(stream.get(), buffer.data(), buffer.size());
    if (got <= 0 || files.size() >= mostFiles || !pulse.beat()) break;
    std::string_view piece(buffer.data(), static_cast<std::size_t>(got));
    while (!piece.empty()) {
      const std::size_t newline = piece.find('\n');
      const std::size_t length = std::min(newline, piece.size());
      line += piece.substr(0, std::min(length, longestLine - std::min(longestLine, line.size())));
      const bool ended = newline != std::string_view::npos;
      piece.remove_prefix(length + (ended ? 1 : 0));
      offset += length + (ended ? 1 : 0);
      if (!ended) continue;
      take(line, begin, offset);
      line.clear();
      begin = offset;
    }
  }
  if (!line.empty()) take(line, begin, offset);
}

class Walk {
 public:
  explicit Walk(MailPulse& pulse) : pulse_(pulse) {}
  MailParts found;

  void visit(GMimeObject* object) {
    if (object == nullptr) return;
    if (GMIME_IS_MULTIPART(object)) {
      visitMultipart(GMIME_MULTIPART(object));
    } else if (GMIME_IS_MESSAGE_PART(object)) {
      GMimeMessage* inner = g_mime_message_part_get_message(GMIME_MESSAGE_PART(object));
      if (inner != nullptr) visit(g_mime_message_get_mime_part(inner));
    } else if (GMIME_IS_PART(object)) {
      visitPart(GMIME_PART(object));
    }
  }

 private:
  void visitMultipart(GMimeMultipart* multipart) {
    const bool alternative =
        g_mime_content_type_is_type(g_mime_object_get_content_type(GMIME_OBJECT(multipart)),
                                    "multipart", "alternative") != 0;
    if (alternative && found.text == nullptr) {
      GMimeObject* chosen = plainest(multipart);
      if (chosen != nullptr && GMIME_IS_PART(chosen) && isText(chosen) &&
          !isAttachment(GMIME_PART(chosen)))
        found.text = GMIME_PART(chosen);
    }
    for (int child = 0; child < g_mime_multipart_get_count(multipart); ++child)
      visit(g_mime_multipart_get_part(multipart, child));
  }

  void visitPart(GMimePart* part) {
    std::string name = nameOf(part);
    if (!name.empty() || g_mime_part_is_attachment(part) != 0) {
      found.attachments.push_back({part, std::move(name), false, {}});
      return;
    }
    if (!isText(GMIME_OBJECT(part))) return;
    if (found.text == nullptr) found.text = part;
    if (!isHtml(GMIME_OBJECT(part))) findUuencoded(part, pulse_, found.attachments);
  }

  MailPulse& pulse_;
};

}  // namespace

MailParts partsOf(GMimeObject* mail, MailPulse& pulse) {
  Walk walk(pulse);
  walk.visit(mail);
  return std::move(walk.found);
}

static GMimeContentEncoding encodingOf(GMimePart* part) {
  GMimeDataWrapper* content = g_mime_part_get_content(part);
  return content == nullptr ? GMIME_CONTENT_ENCODING_DEFAULT
                            : g_mime_data_wrapper_get_encoding(content);
}

bool isBase64(GMimePart* part) { return encodingOf(part) == GMIME_CONTENT_ENCODING_BASE64; }

GOwned<GMimeStream> rawStream(GMimePart* part) {
  GMimeDataWrapper* content = g_mime_part_get_content(part);
  if (content == nullptr) return GOwned<GMimeStream>(g_mime_stream_mem_new());
  GMimeStream* raw = g_mime_data_wrapper_get_stream(content);
  g_mime_stream_reset(raw);
  g_object_ref(raw);
  return GOwned<GMimeStream>(raw);
}

GOwned<GMimeStream> decodedStream(GMimePart* part) {
  const auto raw = rawStream(part);
  GOwned<GMimeStream> decoded(g_mime_stream_filter_new(raw.get()));
  const GMimeContentEncoding encoding = encodingOf(part);
  if (encoding == GMIME_CONTENT_ENCODING_BASE64 ||
      encoding == GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE ||
      encoding == GMIME_CONTENT_ENCODING_UUENCODE) {
    const GOwned<GMimeFilter> decoder(g_mime_filter_basic_new(encoding, FALSE));
    g_mime_stream_filter_add(GMIME_STREAM_FILTER(decoded.get()), decoder.get());
  }
  return decoded;
}

}  // namespace skv
