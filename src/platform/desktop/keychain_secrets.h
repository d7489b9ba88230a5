// Passwords by way of QtKeychain.
#pragma once

#include "platform/secrets.h"

namespace skv {

class KeychainSecrets : public Secrets {
 public:
  Result<std::string> read(std::string_view name) override;
  Outcome write(std::string_view name, std::string_view password) override;
};

}  // namespace skv
