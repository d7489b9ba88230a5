// What a long call of the mail engine owes to its caller: signs of life, and an ear for the wish to
// end.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/mail_engine.h"

namespace skv {

class MailPulse {
 public:
  explicit MailPulse(const MailEngine& engine) : engine_(engine) {}

  // Whether the next beat asks the caller.
  bool isDue() const { return !stopped_ && std::chrono::steady_clock::now() - last_ >= interval; }
  // To be called at least every few milliseconds. Answers false, and from then on, once the caller
  // wants the call to end.
  bool beat() {
    const auto now = std::chrono::steady_clock::now();
    if (stopped_ || now - last_ < interval) return !stopped_;
    if (engine_.Yield && !engine_.Yield()) stopped_ = true;
    last_ = std::chrono::steady_clock::now();
    return !stopped_;
  }
  // Never 100: the other side has to confirm what it was sent, and may have more than it has said.
  void tell(std::uint64_t done, std::uint64_t whole) {
    const int percent = whole == 0 ? 0 : static_cast<int>(done >= whole ? 99 : done * 100 / whole);
    if (percent == percent_) return;
    percent_ = percent;
    if (engine_.Progress) engine_.Progress(percent);
  }
  // A new call begins: its first sign of life is due at once.
  void restart() {
    stopped_ = false;
    percent_ = -1;
    last_ = {};
  }
  static Outcome cancelled() { return Outcome::failure(err::cancelled); }

  // Between two signs of life, and the longest time to wait for anything without one.
  static constexpr std::chrono::milliseconds interval{20};

 private:
  const MailEngine& engine_;
  std::chrono::steady_clock::time_point last_{};
  int percent_ = -1;
  bool stopped_ = false;
};

}  // namespace skv
