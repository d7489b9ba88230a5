// What a reader would see of a text in HTML. It is read from its beginning to its end once, as no
// tree of its elements is made: those of a stranger may be nested as deep as the text is long.
#include <libxml/HTMLparser.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <array>
#include <charconv>

#include "base/text.h"
#include "platform/mail/mail_words.h"

namespace skv {

namespace {

bool isOneOf(std::string_view name, std::span<const std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

// Elements whose content is no HTML, and that nobody sees.
bool hidesAll(std::string_view name) {
  static constexpr std::array<std::string_view, 3> names = {"script", "style", "title"};
  return isOneOf(name, names);
}

bool beginsLine(std::string_view name) {
  static constexpr std::array<std::string_view, 22> names = {
      "p",  "br", "div", "tr",         "li", "h1",    "h2", "h3", "h4",      "h5",   "h6",
      "ul", "ol", "pre", "blockquote", "hr", "table", "dt", "dd", "section", "body", "article"};
  return isOneOf(name, names);
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' ' || c == 0x7F; }

class HtmlReader {
 public:
  HtmlReader(std::string_view html, MailPulse& pulse) : rest_(html), pulse_(pulse) {}

  std::string read() {
    while (!rest_.empty() && pulse_.beat()) {
      if (rest_.starts_with("<!--"))
        dropBehind("-->", 4);
      else if (rest_.starts_with("<!") || rest_.starts_with("<?"))
        dropBehind(">", 2);
      else if (rest_.size() > 1 && rest_[0] == '<' && (isLetter(rest_[1]) || isEndTag()))
        readTag();
      else
        readText();
    }
    return std::move(text_);
  }

 private:
  bool isEndTag() const { return rest_.size() > 2 && rest_[1] == '/' && isLetter(rest_[2]); }

  // What has no end goes on to the end of all.
  void dropBehind(std::string_view end, std::size_t from) {
    const std::size_t at = rest_.find(end, from);
    rest_.remove_prefix(at == std::string_view::npos ? rest_.size() : at + end.size());
  }

  void readTag() {
    const bool closes = rest_[1] == '/';
    rest_.remove_prefix(closes ? 2 : 1);
    constexpr std::size_t longestName = 16;
    const auto length = static_cast<std::size_t>(
        std::ranges::find_if(rest_.substr(0, longestName),
                             [](char c) { return isBlank(c) || c == '>' || c == '/'; }) -
        rest_.begin());
    const std::string name = lowerAscii(rest_.substr(0, length));
    dropAttributes();
    if (closes)
      closed(name);
    else
      opened(name);
  }

  // A ">" within quotation marks ends no tag; these are some behind a "=" alone.
  void dropAttributes() {
    char before = ' ';
    while (!rest_.empty()) {
      const char c = rest_.front();
      if ((c == '"' || c == '\'') && before == '=') {
        dropBehind(std::string_view(&c, 1), 1);
        before = ' ';
        continue;
      }
      rest_.remove_prefix(1);
      if (c == '>') return;
      if (!isBlank(c)) before = c;
    }
  }

  void opened(const std::string& name) {
    if (hidesAll(name)) return dropElement(name);
    // Not everybody ends the head.
    inHead_ = name == "head" || (inHead_ && !beginsLine(name));
    if (name == "br" || (beginsLine(name) && !text_.ends_with('\n'))) breakLine();
    if (name == "p") breakLine();
    if (name == "td" && !text_.empty() && !text_.ends_with('\n')) text_ += ' ';
  }

  void closed(std::string_view name) {
    if (name == "head") inHead_ = false;
    if (name != "br" && beginsLine(name) && !text_.ends_with('\n')) breakLine();
  }

  void dropElement(const std::string& name) {
    do dropBehind("</", 0);
    while (!rest_.empty() && lowerAscii(rest_.substr(0, name.size())) != name);
    dropAttributes();
  }

  void breakLine() {
    while (text_.ends_with(' ')) text_.pop_back();
    if (!text_.empty() && !text_.ends_with("\n\n")) text_ += '\n';
  }

  // Up to the next "<", which itself is text where it begins nothing.
  void readText() {
    const std::size_t end = std::min(rest_.find('<', 1), rest_.size());
    std::string_view piece = rest_.substr(0, end);
    rest_.remove_prefix(end);
    while (!inHead_ && !piece.empty()) {
      const char c = piece.front();
      if (c == '&' && readEntity(piece)) continue;
      if (!isBlank(c))
        text_ += c;
      else if (!text_.empty() && !text_.ends_with(' ') && !text_.ends_with('\n'))
        text_ += ' ';
      piece.remove_prefix(1);
    }
  }

  // "&szlig;", "&#223;" or "&#xDF;"; false when it is none.
  bool readEntity(std::string_view& piece) {
    constexpr std::size_t longest = 12;
    const std::size_t end = piece.substr(0, longest).find(';');
    if (end == std::string_view::npos) return false;
    const std::string name(piece.substr(1, end - 1));
    std::uint32_t character = 0;
    if (name.starts_with('#')) {
      const bool hex = name.size() > 1 && (name[1] == 'x' || name[1] == 'X');
      const char* const digits = name.data() + (hex ? 2 : 1);
      constexpr int decimalBase = 10, hexBase = 16;
      std::from_chars(digits, name.data() + name.size(), character, hex ? hexBase : decimalBase);
    } else if (const auto* entity =
                   htmlEntityLookup(reinterpret_cast<const xmlChar*>(name.c_str()))) {  // NOLINT
      character = entity->value;
    }
    if (IS_CHAR(character) == 0) return false;
    std::array<xmlChar, 8> bytes{};
    const int length = xmlCopyCharMultiByte(bytes.data(), static_cast<int>(character));
    text_.append(reinterpret_cast<const char*>(bytes.data()),  // NOLINT(*-reinterpret-cast)
                 static_cast<std::size_t>(length));
    piece.remove_prefix(end + 1);
    return true;
  }

  std::string_view rest_;
  MailPulse& pulse_;
  std::string text_;
  bool inHead_ = false;
};

}  // namespace

std::string textOfHtml(std::string_view html, MailPulse& pulse) {
  return HtmlReader(html, pulse).read();
}

}  // namespace skv
