// The recipients of a mail as a user types them.
//
//   anna@example.org
//   Anna Berg <anna@example.org>; "Meier, Ben" <ben@example.net>, c@example.com
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace skv {

struct Recipient {
  std::string name, address;  // the name is the address where none was typed
};

// Commas and semicolons part them, outside quotes and "<...>". What holds no "@" is the beginning
// of the next one: "Meier, Ben <ben@example.net>". Nothing is judged: an empty text is one with an
// empty address.
std::vector<Recipient> recipientsIn(std::string_view text);

}  // namespace skv
