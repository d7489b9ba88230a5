#include "platform/desktop/end_signals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>

namespace skv {

namespace {

constexpr std::array<int, 3> signals = {SIGTERM, SIGHUP, SIGINT};

int wakeDescriptor = -1;  // what a handler can reach

void heedNoMore() {
  for (const int signal : signals) {
    struct sigaction now {};
    if (::sigaction(signal, nullptr, &now) == 0 && now.sa_handler != SIG_IGN)
      std::signal(signal, SIG_DFL);
  }
}

void wake(int) {
  const int kept = errno;
  heedNoMore();
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = ::write(wakeDescriptor, &one, sizeof one);
  errno = kept;
}

}  // namespace

EndSignals::EndSignals() : wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  wakeDescriptor = wake_.get();
  if (wake_.valid()) listen();
}

EndSignals::~EndSignals() { heedNoMore(); }

// What was to be ignored, as nohup has it, stays ignored.
void EndSignals::listen() const {
  for (const int signal : signals) {
    struct sigaction now {};
    if (::sigaction(signal, nullptr, &now) != 0 || now.sa_handler == SIG_IGN) continue;
    struct sigaction heeded {};
    heeded.sa_handler = wake;
    heeded.sa_flags = SA_RESTART;
    ::sigaction(signal, &heeded, nullptr);
  }
}

void EndSignals::answer() {
  std::uint64_t come = 0;
  [[maybe_unused]] const auto got = ::read(wake_.get(), &come, sizeof come);
  listen();
}

void EndSignals::obey() {
  std::signal(SIGTERM, SIG_DFL);
  std::raise(SIGTERM);
  std::abort();
}

}  // namespace skv
