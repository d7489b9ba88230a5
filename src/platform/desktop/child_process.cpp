#include "platform/desktop/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>

#include "base/text.h"
#include "platform/disk/os_error.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

constexpr int cannotRun = 127;

struct Pipe {
  Descriptor reading, writing;
};

std::optional<Pipe> makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

std::vector<char*> argumentsOf(std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  return arguments;
}

// In a new process: what this one ignores or blocks, be it that it was started so, is not for the
// program to inherit, which could not be ended then.
void heedAllSignals() {
  for (int signal = 1; signal < NSIG; ++signal) std::signal(signal, SIG_DFL);
  sigset_t none;
  ::sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

// In a new process.
void readFrom(int input) {
  ::dup2(input >= 0 ? input : ::open("/dev/null", O_RDWR | O_CLOEXEC), STDIN_FILENO);
}

// What comes until the other end closes, or the deadline. Answers whether it closed in time.
bool readUntil(SteadyClock::time_point deadline, int fd, std::string& text) {
  for (;;) {
    const auto left =
        std::chrono::duration_cast<milliseconds>(deadline - SteadyClock::now()).count();
    pollfd waiting{fd, POLLIN, 0};
    const int ready = ::poll(&waiting, 1, left > 0 ? static_cast<int>(left) : 0);
    if (ready == -1 && errno == EINTR) continue;
    if (ready <= 0) return false;
    std::array<char, 512> buffer;
    const auto got = retried([&] { return ::read(fd, buffer.data(), buffer.size()); });
    if (got <= 0) return true;
    text.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

struct Started {
  // Tells one byte: that the program could not be run, or, when its end is to be told, its exit
  // status. Closes as soon as there is nothing to tell any more.
  Descriptor report = Descriptor();
  pid_t group = -1;
};

// Starts the program as a child of the system's first process. After a fork in a program with
// threads only calls of the system are safe, so everything is ready before.
Started start(std::vector<std::string> command, bool tellEnd, int input = -1, int errors = -1) {
  const std::string program = command.empty() ? std::string() : findProgram(command[0]);
  auto pipe = makePipe();
  if (program.empty() || !pipe) return {};
  auto arguments = argumentsOf(command);
  const int report = pipe->writing.get();
  const auto tell = [report](int status) {
    const char byte = static_cast<char>(status);
    [[maybe_unused]] const auto written = ::write(report, &byte, 1);
  };

  const pid_t child = ::fork();
  if (child < 0) return {};
  if (child == 0) {
    heedAllSignals();
    ::setsid();
    if (::fork() != 0) ::_exit(0);
    readFrom(input);
    if (errors >= 0) ::dup2(errors, STDERR_FILENO);
    if (tellEnd) {
      // The one who waits must not keep anything else of this process alive, least of all its lock.
      ::close_range(STDERR_FILENO + 1, static_cast<unsigned>(report - 1), 0);
      ::close_range(static_cast<unsigned>(report + 1), ~0U, 0);
      if (const pid_t watched = ::fork(); watched != 0) {
        int status = 0;
        ::waitpid(watched, &status, 0);
        tell(WIFEXITED(status) ? WEXITSTATUS(status) : cannotRun);
        ::_exit(0);
      }
    }
    ::execv(program.c_str(), arguments.data());
    if (!tellEnd) tell(cannotRun);
    ::_exit(cannotRun);
  }
  int status = 0;
  retried([&] { return ::waitpid(child, &status, 0); });
  return {std::move(pipe->reading), child};
}

}  // namespace

std::string findProgram(const std::string& name) {
  const auto canRun = [](const std::string& program) {
    struct stat status {};
    return ::stat(program.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           ::access(program.c_str(), X_OK) == 0;
  };
  if (name.find('/') != std::string::npos) return canRun(name) ? name : std::string();
  for (std::string& program : split(environmentValue("PATH"), ':')) {
    if (program.empty()) continue;
    program.append("/").append(name);
    if (canRun(program)) return program;
  }
  return {};
}

bool startDetached(std::vector<std::string> command) {
  const Descriptor report = start(std::move(command), false).report;
  constexpr milliseconds longEnough{2000};
  std::string failure;
  if (report.valid()) readUntil(SteadyClock::now() + longEnough, report.get(), failure);
  return report.valid() && failure.empty();
}

Helper::Helper(std::vector<std::string> command, int input, int errors) {
  Started started = start(std::move(command), true, input, errors);
  report_ = std::move(started.report);
  group_ = started.group;
  if (!report_.valid()) status_ = cannotRun;
}

std::optional<int> Helper::status(milliseconds time) {
  if (status_) return status_;
  std::string bytes;
  const bool closed = readUntil(SteadyClock::now() + time, report_.get(), bytes);
  // One that closed without a word was ended by somebody.
  if (!bytes.empty() || closed)
    status_ = bytes.empty() ? cannotRun : static_cast<unsigned char>(bytes[0]);
  return status_;
}

void Helper::end() {
  // The group lives as long as there is no report.
  if (!status(milliseconds(0))) ::kill(-group_, SIGTERM);
}

std::optional<int> startHelper(std::vector<std::string> command, milliseconds time) {
  return Helper(std::move(command)).status(time);
}

std::string firstLineOf(std::vector<std::string> command, milliseconds time) {
  const std::string program = findProgram(command[0]);
  auto pipe = makePipe();
  if (program.empty() || !pipe) return {};
  auto arguments = argumentsOf(command);
  const pid_t child = ::fork();
  if (child < 0) return {};
  if (child == 0) {
    heedAllSignals();
    readFrom(-1);
    ::dup2(pipe->writing.get(), STDOUT_FILENO);
    ::execv(program.c_str(), arguments.data());
    ::_exit(cannotRun);
  }
  pipe->writing.close();
  std::string text;
  if (!readUntil(SteadyClock::now() + time, pipe->reading.get(), text)) ::kill(child, SIGKILL);
  int status = 0;
  retried([&] { return ::waitpid(child, &status, 0); });
  return text.substr(0, text.find('\n'));
}

}  // namespace skv
