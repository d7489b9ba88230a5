// A search that may come upon a disk that does not answer.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace skv {

// What a search tells of its findings.
template <class Finding>
using Tell = std::function<void(Finding)>;

// Runs the search beside the caller, until it ends or the time is over, and gives what it has told
// so far. A search that is late goes on by itself, to no effect: it must own all that it uses.
template <class Finding>
std::vector<Finding> foundInTime(std::chrono::milliseconds limit,
                                 std::function<void(const Tell<Finding>&)> search) {
  struct Findings {
    std::mutex mutex;
    std::condition_variable change;
    std::vector<Finding> found;
    bool ended = false;
  };
  const auto findings = std::make_shared<Findings>();
  std::thread([findings, search = std::move(search)] {
    search([&findings](Finding each) {
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
