// A process of its own in which the system's calls fail, or which stands on a disk of its own.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace skv::test {

// What `work` answers in a child process where every one of the calls (SYS_openat, ...) fails with
// `error`. None when this machine does not allow it. `work` opens its own files and descriptors,
// and its expectations do not count.
std::optional<std::string> withFailingCalls(const std::vector<long>& calls, int error,
                                            const std::function<std::string()>& work);

// The same with a disk in memory of so many bytes, mounted for that child alone at a native folder.
std::optional<std::string> withSmallDisk(const std::string& folder, std::size_t bytes,
                                         const std::function<std::string()>& work);

}  // namespace skv::test
