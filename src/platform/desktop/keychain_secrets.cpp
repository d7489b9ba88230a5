#include "platform/desktop/keychain_secrets.h"

namespace skv {

Result<std::string> KeychainSecrets::read(std::string_view) {
  return Outcome::failure(err::deviceUnavailable);
}
Outcome KeychainSecrets::write(std::string_view, std::string_view) {
  return Outcome::failure(err::deviceUnavailable);
}

}  // namespace skv
