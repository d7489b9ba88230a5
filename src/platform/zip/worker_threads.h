// The second and further hands of a job on an archive.
#pragma once

#include <algorithm>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace skv {

// Starts a thread for each of the machine's hands, as far as there are portions for them. What
// could not be started the others do; without any the caller does it all.
template <class Work>
void startWorkers(std::vector<std::thread>& threads, std::size_t portions, Work work) {
  constexpr std::size_t most = 2;
  const std::size_t wanted = std::min(most, portions);
  threads.reserve(wanted);
  try {
    while (threads.size() < wanted) threads.emplace_back(work);
  } catch (const std::system_error&) {
    return;
  }
}

}  // namespace skv
