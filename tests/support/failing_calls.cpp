#include "support/failing_calls.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace skv::test {

namespace {

std::optional<std::string> inChild(const std::function<bool()>& prepare,
                                   const std::function<std::string()>& work) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return std::nullopt;
  const pid_t child = ::fork();
  if (child == 0) {
    if (!prepare()) ::_exit(1);
    const std::string answer = work();
    const bool written =
        ::write(ends[1], answer.data(), answer.size()) == static_cast<ssize_t>(answer.size());
    ::_exit(written ? 0 : 2);
  }
  ::close(ends[1]);
  std::string answer;
  std::array<char, 4096> buffer;
  for (ssize_t got = 0; (got = ::read(ends[0], buffer.data(), buffer.size())) > 0;)
    answer.append(buffer.data(), static_cast<std::size_t>(got));
  ::close(ends[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 1) return std::nullopt;
  return status == 0 ? answer : "the child ended with " + std::to_string(status);
}

}  // namespace

std::optional<std::string> withFailingCalls(const std::vector<long>& calls, int error,
                                            const std::function<std::string()>& work) {
  std::vector<sock_filter> filter = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, 0)};
  for (const long call : calls) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const auto prepare = [&] {
    sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
  };
  return inChild(prepare, work);
}

}  // namespace skv::test
