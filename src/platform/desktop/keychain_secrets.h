// Passwords by way of QtKeychain: the Secret Service of the desktop, or KDE's wallet.
//
// A call waits some seconds for the answer, in which the windows are drawn and take no input. A
// service that has to be unlocked first may be slower than that: the next call finds it open.
#pragma once

#include <chrono>

#include "platform/secrets.h"

namespace skv {

class KeychainSecrets : public Secrets {
 public:
  explicit KeychainSecrets(std::chrono::milliseconds patience = std::chrono::seconds(15))
      : patience_(patience) {}
  Result<std::string> read(std::string_view name) override;
  Outcome write(std::string_view name, std::string_view password) override;

 private:
  std::chrono::milliseconds patience_;
};

}  // namespace skv
