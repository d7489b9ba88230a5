#include "platform/mail/mail_words.h"

#include <gmime/gmime.h>
#include <libxml/HTMLparser.h>

#include <algorithm>
#include <array>

#include "base/text.h"

namespace skv {

namespace {

bool isControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }

std::string validUtf8(std::string_view bytes) {
  return isUtf8(bytes) ? std::string(bytes) : CodePage(1252).decode(bytes);
}

// Gathers the text of an HTML document while it is parsed.
struct HtmlText {
  std::string text;
  int hidden = 0;  // open elements whose content nobody sees

  static HtmlText& self(void* pointer) { return *static_cast<HtmlText*>(pointer); }
  static std::string_view nameOf(const xmlChar* name) {
    return reinterpret_cast<const char*>(name);  // NOLINT(*-reinterpret-cast)
  }
  static bool hides(std::string_view name) {
    return name == "script" || name == "style" || name == "head" || name == "title";
  }
  static bool beginsLine(std::string_view name) {
    static constexpr std::array<std::string_view, 22> blocks = {
        "p",  "br", "div", "tr",         "li", "h1",    "h2", "h3", "h4",      "h5",   "h6",
        "ul", "ol", "pre", "blockquote", "hr", "table", "dt", "dd", "section", "body", "article"};
    return std::ranges::find(blocks, name) != blocks.end();
  }
  void breakLine() {
    while (text.ends_with(' ')) text.pop_back();
    if (!text.empty() && !text.ends_with("\n\n")) text += '\n';
  }

  static void opened(void* pointer, const xmlChar* element, const xmlChar**) {
    HtmlText& self = HtmlText::self(pointer);
    const std::string_view name = nameOf(element);
    if (hides(name)) ++self.hidden;
    if (name == "br" || (beginsLine(name) && !self.text.ends_with('\n'))) self.breakLine();
    if (name == "p") self.breakLine();
    if (name == "td" && !self.text.empty() && !self.text.ends_with('\n')) self.text += ' ';
  }
  static void closed(void* pointer, const xmlChar* element) {
    HtmlText& self = HtmlText::self(pointer);
    const std::string_view name = nameOf(element);
    if (hides(name) && self.hidden > 0) --self.hidden;
    if (name != "br" && beginsLine(name) && !self.text.ends_with('\n')) self.breakLine();
  }
  static void characters(void* pointer, const xmlChar* piece, int length) {
    HtmlText& self = HtmlText::self(pointer);
    if (self.hidden > 0) return;
    for (const char c : nameOf(piece).substr(0, static_cast<std::size_t>(length))) {
      const bool blank = c == ' ' || isControl(c);
      const bool goesOn =
          !self.text.empty() && !self.text.ends_with(' ') && !self.text.ends_with('\n');
      if (!blank)
        self.text += c;
      else if (goesOn)
        self.text += ' ';
    }
  }
};

}  // namespace

std::string headerIn(std::string_view headers, std::string_view name) {
  std::string value;
  bool found = false;
  while (!headers.empty()) {
    const std::size_t end = headers.find('\n');
    std::string_view line = headers.substr(0, end);
    headers.remove_prefix(end == std::string_view::npos ? headers.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    const bool folded = line.starts_with(' ') || line.starts_with('\t');
    if (line.empty() || (found && !folded)) break;
    if (found) value += line;
    const std::size_t colon = line.find(':');
    if (found || folded || colon == std::string_view::npos ||
        !equalsIgnoringCase(trim(line.substr(0, colon)), name))
      continue;
    found = true;
    value = line.substr(colon + 1);
  }
  return value;
}

std::string decodedHeader(const std::string& value) {
  std::string plain = value;
  std::ranges::replace_if(plain, isControl, ' ');
  char* decoded = g_mime_utils_header_decode_text(nullptr, plain.c_str());
  std::string result = onOneLine(validUtf8(decoded));
  g_free(decoded);
  return trim(result);
}

std::string decodedText(const std::string& bytes, const std::string& charset) {
  if (equalsIgnoringCase(charset, "utf-8") || charset.empty()) return validUtf8(bytes);
  GMimeFilter* filter = g_mime_filter_charset_new(charset.c_str(), "UTF-8");
  if (filter == nullptr) return validUtf8(bytes);
  std::string copy = bytes;  // the filter's interface may write
  char* out = nullptr;
  std::size_t length = 0, before = 0;
  g_mime_filter_complete(filter, copy.data(), copy.size(), 0, &out, &length, &before);
  std::string text = validUtf8({out, length});
  g_object_unref(filter);
  return text;
}

std::string plainText(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '\r') {
      if (at + 1 == text.size() || text[at + 1] != '\n') plain += '\n';
    } else if (!isControl(c) || c == '\n' || c == '\t') {
      plain += c;
    }
  }
  return plain;
}

std::string textOfHtml(const std::string& html) {
  HtmlText gathered;
  htmlSAXHandler handler{};
  handler.startElement = &HtmlText::opened;
  handler.endElement = &HtmlText::closed;
  handler.characters = &HtmlText::characters;
  handler.ignorableWhitespace = &HtmlText::characters;
  htmlParserCtxtPtr parser =
      htmlCreatePushParserCtxt(&handler, &gathered, nullptr, 0, nullptr, XML_CHAR_ENCODING_UTF8);
  if (parser == nullptr) return {};
  htmlCtxtUseOptions(
      parser, HTML_PARSE_NONET | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_IGNORE_ENC);
  constexpr std::size_t piece = 4096;
  for (std::size_t at = 0; at < html.size(); at += piece)
    htmlParseChunk(parser, html.data() + at, static_cast<int>(std::min(piece, html.size() - at)),
                   0);
  htmlParseChunk(parser, nullptr, 0, 1);
  htmlFreeParserCtxt(parser);
  return gathered.text;
}

std::string onOneLine(std::string_view text) {
  std::string line(text);
  std::ranges::replace_if(line, isControl, ' ');
  return line;
}

}  // namespace skv
