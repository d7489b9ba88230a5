// The words of a mail as people read them: headers and texts, decoded, in UTF-8. What is broken
// comes as well as it can; nothing here fails.
#pragma once

#include <string>
#include <string_view>

namespace skv {

// The value of the first header of this name in a block of headers, unfolded, as it was sent.
std::string headerIn(std::string_view headers, std::string_view name);
// A header's value as people read it (RFC 2047), on one line.
std::string decodedHeader(const std::string& value);

// `bytes` in a character set by its name in mails. An unknown one is taken for UTF-8, or for
// Windows-1252 when the bytes are not that.
std::string decodedText(const std::string& bytes, const std::string& charset);
// Text for a box: "\n" at the line ends, no other control characters than tabs.
std::string plainText(std::string_view text);
// What a reader would see of a text in HTML.
std::string textOfHtml(const std::string& html);

// For a line that goes into a header: control characters become blanks.
std::string onOneLine(std::string_view text);

}  // namespace skv
