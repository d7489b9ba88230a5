// A process that has given up what drawing a picture does not need, and tries to do it all the
// same.
//
//   skyvault-attempts <a font>
//
// Prints the names of what it could do.
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <functional>
#include <utility>

#include "platform/wmf/confinement.h"

int main(int, char** words) {
  const char* const font = words[1];
  const std::pair<const char*, std::function<bool()>> attempts[] = {
      {"font", [font] { return ::open(font, O_RDONLY) >= 0; }},
      {"passwd", [] { return ::open("/etc/passwd", O_RDONLY) >= 0; }},
      {"own memory", [] { return ::open("/proc/self/mem", O_RDONLY) >= 0; }},
      {"write", [] { return ::open("/tmp/skyvault-attempt", O_WRONLY | O_CREAT, 0600) >= 0; }},
      {"overwrite a font", [font] { return ::open(font, O_RDWR) >= 0; }},
      {"folder", [] { return ::mkdir("/tmp/skyvault-attempts", 0700) == 0; }},
      {"socket", [] { return ::socket(AF_INET, SOCK_STREAM, 0) >= 0; }},
      {"socket of this machine", [] { return ::socket(AF_UNIX, SOCK_STREAM, 0) >= 0; }},
      {"signal", [] { return ::kill(::getppid(), 0) == 0; }},
      {"watch", [] { return ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) == 0; }},
      {"rights", [] { return ::fchmod(STDOUT_FILENO, 0777) == 0; }},
      {"process", [] { return ::fork() >= 0; }},
      {"program",
       [] {
         char name[] = "/bin/true";
         char* arguments[] = {name, nullptr};
         return ::execv(name, arguments) == 0;
       }},
  };
  if (skv::confine() == skv::Confinement::failed) return 2;
  for (const auto& [name, succeeds] : attempts)
    if (succeeds()) ::dprintf(STDOUT_FILENO, "%s\n", name);
  ::_exit(0);
}
