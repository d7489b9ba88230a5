// The words of a mail as people read them: headers and texts, decoded, in UTF-8. What is broken
// comes as well as it can; nothing here fails.
#pragma once

#include <string>
#include <string_view>

#include "platform/mail/mail_pulse.h"

namespace skv {

// A header's value as people read it (RFC 2047), on one line. Of one that is longer than 16 KB the
// beginning.
std::string decodedHeader(const std::string& value);

// `bytes` in a character set by its name in mails. An unknown one is taken for UTF-8, or for
// Windows-1252 when the bytes are not that.
std::string decodedText(const std::string& bytes, const std::string& charset);
// Text for a box: "\n" at the line ends, no other control characters than tabs.
std::string plainText(std::string_view text);
// What a reader would see of a text in HTML, in UTF-8. Ends early when the caller of the pulse
// wants that.
std::string textOfHtml(std::string_view html, MailPulse& pulse);

// For a line that goes into a header: control characters become blanks.
std::string onOneLine(std::string_view text);

}  // namespace skv
