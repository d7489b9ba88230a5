// The headers of a mail that a mail program has stored, as far as a search looks at them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace skv {

// What lies behind this many bytes of headers is not looked at.
inline constexpr std::size_t longestHead = std::size_t{256} << 10U;

struct StoredHead {
  bool whole = false;      // the empty line at the end of the headers was there
  std::size_t length = 0;  // up to that line
  std::string subject;     // as it was sent, unfolded
  bool deleted = false;    // so marked by the mail program, and gone for its user
};

// `mail`: from its beginning on, as far as it is at hand.
StoredHead readStoredHead(std::string_view mail);

// The first header of that name, which is in small letters, as it was sent, unfolded; "" for none.
std::string storedHeader(std::string_view mail, std::string_view name);

// Tells whether a mail is still the same: equal for equal headers, but for those by which mail
// programs and servers note what became of it.
std::uint64_t markOfHead(std::string_view head);
// Of what the sender has written, the same on its whole way: what stands between a server and us
// may add to a mail that it hands over whole.
std::uint64_t markOfSender(std::string_view head);

// "Name: value", or what stands for one in a forwarded mbox.
bool isHeaderLine(std::string_view line);

}  // namespace skv
