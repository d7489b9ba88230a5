// System call failures as the program's outcomes, and descriptors that close themselves.
#pragma once

#include <cerrno>
#include <string_view>

#include "base/outcome.h"

namespace skv {

// Whether a call's error number says that nothing stands there.
inline bool isMissing(int error) { return error == ENOENT || error == ENOTDIR; }

// The outcome of a failed system call, by the classic numbers. `path` is what the user sees.
// fileNotFound and pathNotFound come of isMissing() alone.
Outcome systemFailure(int error, std::string_view path);

class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept;
  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  int release();
  // Answers errno of a failed close, which can be the first word of a full disk.
  int close();

 private:
  int fd_;
};

// Repeats a call that a signal has interrupted.
template <class Call>
auto retried(Call call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

}  // namespace skv
