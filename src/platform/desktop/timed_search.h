// A search that may come upon a disk that does not answer.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace skv {

using Tell = std::function<void(std::string)>;

// Runs the search beside the caller, until it ends or the time is over, and gives what it has told
// so far. A search that is late goes on by itself, to no effect: it must own all that it uses.
std::vector<std::string> foundInTime(std::chrono::milliseconds limit,
                                     std::function<void(const Tell&)> search);

}  // namespace skv
