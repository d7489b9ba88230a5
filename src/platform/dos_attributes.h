// The attributes that Windows keeps for a file and Linux does not, where Wine and Samba keep them:
// the extended attribute user.DOSATTRIB.
#pragma once

#include <optional>
#include <string>

namespace skv {

// The bits of the attribute, as Windows numbers them.
namespace dos {
inline constexpr unsigned readOnly = 0x01;
inline constexpr unsigned hidden = 0x02;
inline constexpr unsigned system = 0x04;
inline constexpr unsigned archive = 0x20;
}  // namespace dos

// The value: Wine's and older Samba's text ("0x22"), or newer Samba's record. 0 for anything else.
unsigned parseDosAttributes(const std::string& value);

// The attribute of a file itself, not of what a link leads to. 0 when it has none. `supported`,
// when given, becomes false on a disk without extended attributes.
unsigned readDosAttributes(const std::string& native, bool* supported = nullptr);

// Stores the bits, or takes the attribute away for 0. Answers errno, 0 for success; a disk without
// extended attributes fails for bits other than 0 alone.
int writeDosAttributes(const std::string& native, unsigned bits);
int writeDosAttributes(int fd, unsigned bits);

}  // namespace skv
