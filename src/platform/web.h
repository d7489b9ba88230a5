// A text from the web.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/outcome.h"

namespace skv {

class Web {
 public:
  virtual ~Web() = default;
  // The body of an http or https address, at most 64 KB, within 10 seconds. `yield` is called often
  // and answers whether to go on; err::cancelled when not. Fails with err::web and a text for the
  // user.
  virtual Result<std::string> fetch(std::string_view url, const std::function<bool()>& yield) = 0;
};

}  // namespace skv
