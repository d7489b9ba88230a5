// The mail engine by libcurl, which talks to the servers, and GMime, which knows what a mail is.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/mail_engine.h"

namespace skv {

struct MailOptions {
  // Of the certificates to trust, instead of the machine's own; "": those.
  std::string caFile = {};
  // Native path of the folder for mails under way, made where it is missing; "": below the user's
  // cache.
  std::string workFolder = {};
  std::vector<int> tlsPorts = {465, 995};  // where encryption begins at once
  std::chrono::milliseconds connectTime{30'000};
  std::chrono::milliseconds silenceTime{60'000};
};

class CurlMailSystem : public MailSystem {
 public:
  explicit CurlMailSystem(MailOptions options = {});
  std::unique_ptr<MailEngine> load(FileSystem& files) override;

 private:
  const MailOptions options_;
};

}  // namespace skv
