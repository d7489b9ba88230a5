#include "platform/desktop/lazy_net.h"

#include <dlfcn.h>

#include <filesystem>

#include "platform/mail/net_module.h"

namespace skv {

const NetModule* LazyNet::module() {
  if (module_ != nullptr) return module_;
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (error) return nullptr;
  for (const char* place : {"skyvault-net.so", SKYVAULT_LIB "/skyvault-net.so"}) {
    // Never unloaded: its libraries leave threads and handlers behind.
    void* library = ::dlopen((folder / place).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) continue;
    if (const auto entry =
            reinterpret_cast<decltype(&skyvaultNet)>(::dlsym(library, "skyvaultNet")))
      return module_ = entry();
  }
  return nullptr;
}

std::unique_ptr<MailEngine> LazyNet::load(FileSystem& files) {
  const NetModule* net = module();
  return net != nullptr ? net->mail.load(files) : nullptr;
}

Result<std::string> LazyNet::fetch(std::string_view url, const std::function<bool()>& yield) {
  if (const NetModule* net = module()) return net->web.fetch(url, yield);
  return Outcome::withText(err::web,
                           "The program's part for the net, skyvault-net.so, is missing.");
}

}  // namespace skv
