// Texts from the web by libcurl.
#pragma once

#include <chrono>

#include "platform/web.h"

namespace skv {

class CurlWeb : public Web {
 public:
  // `timeLimit`: for a text in all, from the look for its server on.
  explicit CurlWeb(std::chrono::milliseconds timeLimit = std::chrono::seconds(10))
      : timeLimit_(timeLimit) {}
  Result<std::string> fetch(std::string_view url, const std::function<bool()>& yield) override;

 private:
  const std::chrono::milliseconds timeLimit_;
};

}  // namespace skv
