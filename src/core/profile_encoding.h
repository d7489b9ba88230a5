// How the bytes of a profile file stand for text. Most are 8-bit text in the system's code page;
// an editor may have saved one as UTF-8 or UTF-16, which its byte order mark tells.
#pragma once

#include <string>
#include <string_view>

#include "base/text.h"

namespace skv {

class ProfileEncoding {
 public:
  // Recognises the encoding of a file's bytes. For UTF-16, `bytes` become UTF-8 that `restore`
  // takes back, whatever they are; otherwise they lose no more than the mark.
  ProfileEncoding(std::string& bytes, const CodePage& codePage);

  // Between the lines as they are held and UTF-8.
  std::string decode(std::string_view lines) const;
  std::string encode(std::string_view text) const;
  // Between the lines as they are held and the code page, in which values are counted and cut.
  std::string toCodePage(std::string_view lines) const;
  // The file's bytes.
  std::string restore(std::string lines) const;

  const CodePage& codePage() const { return codePage_; }

 private:
  enum class Kind { codePage, utf8, utf16LittleEndian, utf16BigEndian };

  CodePage codePage_;
  Kind kind_ = Kind::codePage;
  std::string oddByte_;  // half a UTF-16 unit at the file's end
};

}  // namespace skv
