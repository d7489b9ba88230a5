#include "platform/wmf/confinement.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
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

// Where libwmf looks for fonts, and what tells it which there are.
constexpr const char* fontFolders[] = {"/usr/share/fonts", "/usr/local/share/fonts",
                                       "/usr/share/ghostscript/fonts",
                                       "/var/lib/ghostscript/fonts"};
constexpr const char* fontLists[] = {"/etc/libwmf.fontmap"};

bool allowReading(int rules, const char* path, std::uint64_t access) {
  landlock_path_beneath_attr beneath{};
  beneath.allowed_access = access;
  beneath.parent_fd = ::open(path, O_PATH | O_CLOEXEC);
  if (beneath.parent_fd < 0) return errno == ENOENT || errno == ENOTDIR;
  const bool added =
      ::syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0) == 0;
  ::close(beneath.parent_fd);
  return added;
}

// False where the kernel cannot do it. The process has given up to gain privileges before.
bool allowFontsOnly() {
  constexpr std::uint64_t read = LANDLOCK_ACCESS_FS_READ_FILE;
  landlock_ruleset_attr all{};
  all.handled_access_fs = LANDLOCK_ACCESS_FS_MAKE_SYM * 2 - 1;  // all of the first version
  const int rules = static_cast<int>(::syscall(SYS_landlock_create_ruleset, &all, sizeof all, 0));
  if (rules < 0) return false;
  bool ok = true;
  for (const char* folder : fontFolders)
    ok = allowReading(rules, folder, read | LANDLOCK_ACCESS_FS_READ_DIR) && ok;
  for (const char* list : fontLists) ok = allowReading(rules, list, read) && ok;
  ok = ok && ::syscall(SYS_landlock_restrict_self, rules, 0) == 0;
  ::close(rules);
  return ok;
}

// What is not allowed fails, as on a system that does not have it.
bool allowFewCalls(bool opening) {
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
  constexpr unsigned writing = O_ACCMODE | O_CREAT | O_TRUNC;
  if (opening)
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

Confinement confine() {
  ::alarm(secondsInAll);
  // What it writes is one picture.
  const bool limited = limit(RLIMIT_CPU, secondsOfWork) && limit(RLIMIT_AS, 512 * megabyte) &&
                       limit(RLIMIT_FSIZE, 16 * megabyte) && limit(RLIMIT_NOFILE, 16) &&
                       limit(RLIMIT_NPROC, 0) && limit(RLIMIT_CORE, 0);
  if (!limited || ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return Confinement::failed;
  const bool fonts = allowFontsOnly();
  if (!allowFewCalls(fonts)) return Confinement::failed;
  return fonts ? Confinement::withFonts : Confinement::withoutFonts;
}

}  // namespace skv
