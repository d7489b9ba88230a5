#include "mail/recipients.h"

#include "base/text.h"

namespace skv {

namespace {

std::vector<std::string> piecesOf(std::string_view text) {
  std::vector<std::string> pieces{""};
  bool quoted = false, inAddress = false;
  for (const char c : text) {
    if (c == '"') quoted = !quoted;
    if (!quoted && (c == '<' || c == '>')) inAddress = c == '<';
    const bool parts = !quoted && !inAddress && (c == ',' || c == ';');
    // A comma in front of the address belongs to the name: Berg, Anna <anna@example.org>.
    if (parts && pieces.back().find('@') != std::string::npos)
      pieces.emplace_back();
    else if (!parts || !trim(pieces.back()).empty())
      pieces.back() += c;
  }
  if (pieces.size() > 1 && trim(pieces.back()).empty()) pieces.pop_back();
  return pieces;
}

Recipient recipientOf(const std::string& piece) {
  const std::string text = trim(piece);
  const std::size_t begin = text.rfind('<');
  if (begin == std::string::npos || !text.ends_with('>')) return {text, text};
  const std::string address = trim(text.substr(begin + 1, text.size() - begin - 2));
  std::string name = trim(text.substr(0, begin));
  if (name.size() > 1 && name.starts_with('"') && name.ends_with('"'))
    name = trim(name.substr(1, name.size() - 2));
  return {name.empty() ? address : name, address};
}

}  // namespace

std::vector<Recipient> recipientsIn(std::string_view text) {
  std::vector<Recipient> recipients;
  for (const std::string& piece : piecesOf(text)) recipients.push_back(recipientOf(piece));
  return recipients;
}

}  // namespace skv
