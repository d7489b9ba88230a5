// A process of its own in which the system's calls fail.
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

// Does `work` on a disk that takes no file of more than so many bytes.
void withFullDisk(unsigned long bytes, const std::function<void()>& work);

}  // namespace skv::test
