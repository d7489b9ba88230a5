#include "platform/wmf/confinement.h"

#include <fcntl.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>

namespace skv {

namespace {

constexpr rlim_t megabyte = rlim_t{1} << 20;
constexpr rlim_t secondsOfWork = 8;
constexpr unsigned secondsInAll = 12;  // more than anybody waits for

bool limit(decltype(RLIMIT_CPU) resource, rlim_t most) {
  const rlimit both{most, most};
  return ::setrlimit(resource, &both) == 0;
}

// What is not allowed fails, as on a system that does not have it.
bool allowFewCalls() {
  const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
  if (!filter) return false;
  bool ok = true;
  for (const int call :
       {SCMP_SYS(read),          SCMP_SYS(pread64),      SCMP_SYS(readv),   SCMP_SYS(write),
        SCMP_SYS(close),         SCMP_SYS(lseek),        SCMP_SYS(_llseek), SCMP_SYS(fstat),
        SCMP_SYS(fstat64),       SCMP_SYS(stat),         SCMP_SYS(stat64),  SCMP_SYS(newfstatat),
        SCMP_SYS(fstatat64),     SCMP_SYS(statx),        SCMP_SYS(access),  SCMP_SYS(faccessat),
        SCMP_SYS(brk),           SCMP_SYS(mmap),         SCMP_SYS(mmap2),   SCMP_SYS(munmap),
        SCMP_SYS(mremap),        SCMP_SYS(madvise),      SCMP_SYS(futex),   SCMP_SYS(getrandom),
        SCMP_SYS(clock_gettime), SCMP_SYS(rt_sigreturn), SCMP_SYS(exit),    SCMP_SYS(exit_group)})
    ok = seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0) == 0 && ok;
  // Fonts.
  constexpr unsigned writing = O_ACCMODE | O_CREAT | O_TRUNC;
  ok = seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(openat), 1,
                        SCMP_A2(SCMP_CMP_MASKED_EQ, writing, O_RDONLY)) == 0 &&
       seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(open), 1,
                        SCMP_A1(SCMP_CMP_MASKED_EQ, writing, O_RDONLY)) == 0 &&
       ok;
  ok = ok && seccomp_load(filter) == 0;
  seccomp_release(filter);
  return ok;
}

}  // namespace

bool confine() {
  ::alarm(secondsInAll);
  // What it writes is one picture.
  const bool limited = limit(RLIMIT_CPU, secondsOfWork) && limit(RLIMIT_AS, 512 * megabyte) &&
                       limit(RLIMIT_FSIZE, 16 * megabyte) && limit(RLIMIT_NOFILE, 16) &&
                       limit(RLIMIT_NPROC, 0) && limit(RLIMIT_CORE, 0);
  return limited && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && allowFewCalls();
}

}  // namespace skv
