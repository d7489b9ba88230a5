// Characters written as "%41", as addresses and the settings file write them.
#pragma once

#include <string>
#include <string_view>

namespace skv {

// "%41" is "A"; what is no such escape stays as it is.
std::string percentDecoded(std::string_view text);

}  // namespace skv
