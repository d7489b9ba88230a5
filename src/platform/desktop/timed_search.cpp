#include "platform/desktop/timed_search.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace skv {

namespace {

struct Findings {
  std::mutex mutex;
  std::condition_variable change;
  std::vector<std::string> found;
  bool ended = false;
};

}  // namespace

std::vector<std::string> foundInTime(std::chrono::milliseconds limit,
                                     std::function<void(const Tell&)> search) {
  const auto findings = std::make_shared<Findings>();
  std::thread([findings, search = std::move(search)] {
    search([&findings](std::string each) {
      const std::lock_guard lock(findings->mutex);
      findings->found.push_back(std::move(each));
    });
    const std::lock_guard lock(findings->mutex);
    findings->ended = true;
    findings->change.notify_one();
  }).detach();
  std::unique_lock lock(findings->mutex);
  findings->change.wait_for(lock, limit, [&] { return findings->ended; });
  return findings->found;
}

}  // namespace skv
