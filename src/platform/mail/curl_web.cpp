#include "platform/mail/curl_web.h"

namespace skv {

Result<std::string> CurlWeb::fetch(std::string_view url, const std::function<bool()>&) {
  return Outcome::failure(err::web, url);
}

}  // namespace skv
