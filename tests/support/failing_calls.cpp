#include "support/failing_calls.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>

namespace skv::test {

std::optional<std::string> withFailingCalls(const std::vector<long>& calls, int error,
                                            const std::function<std::string()>& work) {
  std::vector<sock_filter> filter = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, 0)};
  for (const long call : calls) {
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call), 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned>(error)));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) return std::nullopt;
  const pid_t child = ::fork();
  if (child == 0) {
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
      ::_exit(1);
    const std::string answer = work();
    ::_exit(::write(ends[1], answer.data(), answer.size()) < 0 ? 2 : 0);
  }
  ::close(ends[1]);
  std::string answer(PIPE_BUF, '\0');
  answer.resize(static_cast<std::size_t>(
      std::max<ssize_t>(0, ::read(ends[0], answer.data(), answer.size()))));
  ::close(ends[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status) && WEXITSTATUS(status) == 1) return std::nullopt;
  return status == 0 ? answer : "the child ended with " + std::to_string(status);
}

void withFullDisk(unsigned long bytes, const std::function<void()>& work) {
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit small{bytes, before.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &small);
  work();
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
}

}  // namespace skv::test
