#include "platform/desktop/metafile_program.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string_view>

#include "platform/desktop/child_process.h"
#include "platform/disk/os_error.h"

namespace skv {

namespace {

using SteadyClock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto longestTime = 10s;
constexpr auto lookForStop = 50ms;
constexpr int mostSide = 4096;  // more than the program draws

Outcome reason(std::string text) { return Outcome::withText(err::invalidPicture, std::move(text)); }

// A program that is at work; ended and collected when this goes.
class Child {
 public:
  // Its standard input is `input`, its output goes to `output`; of our descriptors it has no other.
  Child(const std::string& program, const std::string& argument, int input, int output) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    // Signals as a fresh program has them, whatever this thread blocks.
    sigset_t none, all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    std::array<char*, 3> words{const_cast<char*>(program.c_str()),
                               const_cast<char*>(argument.c_str()), nullptr};
    std::array<char*, 1> environment{nullptr};
    if (::posix_spawn(&pid_, program.c_str(), &actions, &attributes, words.data(),
                      environment.data()) != 0)
      pid_ = -1;
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
  }
  ~Child() {
    if (pid_ < 0) return;
    ::kill(pid_, SIGKILL);
    int status = 0;
    retried([&] { return ::waitpid(pid_, &status, 0); });
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  bool runs() const { return pid_ >= 0; }

 private:
  pid_t pid_ = -1;
};

// What comes out of a pipe, for as long as there is time.
class Output {
 public:
  Output(int fd, const std::stop_token& stop) : fd_(fd), stop_(stop) {}

  // Fills all of it; false when it ends before.
  bool fill(std::uint8_t* bytes, std::size_t count) {
    while (count > 0) {
      if (!wait()) return false;
      const auto got = retried([&] { return ::read(fd_, bytes, count); });
      if (got <= 0) return false;
      bytes += got;
      count -= static_cast<std::size_t>(got);
    }
    return true;
  }
  bool late() const { return SteadyClock::now() >= end_; }

 private:
  bool wait() {
    while (!late() && !stop_.stop_requested()) {
      pollfd waiting{fd_, POLLIN, 0};
      if (::poll(&waiting, 1, std::chrono::milliseconds(lookForStop).count()) > 0) return true;
    }
    return false;
  }

  int fd_;
  const std::stop_token& stop_;
  SteadyClock::time_point end_ = SteadyClock::now() + longestTime;
};

// A picture as "P6\n640 480\n255\n" and its pixels as red, green, blue.
std::optional<Pixels> pixelMap(Output& output) {
  const auto number = [&output](std::uint8_t after) {
    int value = 0;
    for (std::uint8_t c = 0; output.fill(&c, 1);) {
      if (c == after) return value;
      if (c < '0' || c > '9' || value > mostSide) break;
      value = value * 10 + (c - '0');
    }
    return 0;
  };
  std::array<std::uint8_t, 3> begin{};
  if (!output.fill(begin.data(), begin.size()) || begin[0] != 'P' || begin[1] != '6')
    return std::nullopt;
  Pixels pixels;
  pixels.width = number(' ');
  pixels.height = number('\n');
  const bool sound = pixels.width > 0 && pixels.width <= mostSide && pixels.height > 0 &&
                     pixels.height <= mostSide && number('\n') == 255;
  if (!sound) return std::nullopt;
  pixels.rows.resize(pixels.rowBytes() * static_cast<std::size_t>(pixels.height));
  for (auto row = pixels.rows.begin(); row != pixels.rows.end();
       row += static_cast<std::ptrdiff_t>(pixels.rowBytes())) {
    if (!output.fill(&*row, static_cast<std::size_t>(pixels.width) * 3)) return std::nullopt;
    for (auto pixel = row; pixel != row + std::ptrdiff_t{3} * pixels.width; pixel += 3)
      std::swap(pixel[0], pixel[2]);
  }
  return pixels;
}

}  // namespace

std::string findMetafileProgram() {
  std::error_code error;
  const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
  if (error) return {};
  for (const char* place : {"skyvault-wmf", SKYVAULT_LIBEXEC "/skyvault-wmf"})
    if (std::string program = findProgram((folder / place).string()); !program.empty())
      return program;
  return {};
}

Result<Pixels> drawMetafile(const std::string& program, int file, int longestSide,
                            const std::stop_token& stop) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return systemFailure(errno, "");
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  // Out of the way of the standard descriptors, which this process may have closed.
  const auto aside = [](int fd) { return Descriptor(::fcntl(fd, F_DUPFD_CLOEXEC, 3)); };
  Descriptor input = aside(file), drawn = aside(writing.get());
  const Child child(program, std::to_string(longestSide), input.get(), drawn.get());
  input.close();
  drawn.close();
  writing.close();
  if (!child.runs()) return reason("the program skyvault-wmf, which draws metafiles, is missing");
  Output output(reading.get(), stop);
  if (auto pixels = pixelMap(output)) return *std::move(pixels);
  if (stop.stop_requested()) return Outcome::failure(err::cancelled);
  return reason(output.late() ? "drawing the metafile takes too long"
                              : "the metafile is damaged, or of a kind that is not read");
}

}  // namespace skv
