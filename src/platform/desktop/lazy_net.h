// Mail and web by way of the program's library for them, which is loaded with the first call.
#pragma once

#include "platform/mail_engine.h"
#include "platform/web.h"

namespace skv {

struct NetModule;

class LazyNet : public MailSystem, public Web {
 public:
  std::unique_ptr<MailEngine> load(FileSystem& files) override;
  Result<std::string> fetch(std::string_view url, const std::function<bool()>& yield) override;

 private:
  // Beside the program, or where an installation has it; nullptr when it is missing.
  const NetModule* module();

  const NetModule* module_ = nullptr;
};

}  // namespace skv
