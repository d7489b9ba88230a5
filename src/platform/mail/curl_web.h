// Texts from the web by libcurl.
#pragma once

#include "platform/web.h"

namespace skv {

class CurlWeb : public Web {
 public:
  Result<std::string> fetch(std::string_view url, const std::function<bool()>& yield) override;
};

}  // namespace skv
