#include "platform/desktop/single_instance.h"

#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

constexpr const char* socketName = "window";
constexpr std::string_view answer = "here";
constexpr std::chrono::milliseconds answerTime{2000};

Outcome cannotUse(const std::string& folder, const std::string& reason) {
  return Outcome::withText(err::pathFileAccess, "FS Skyvault keeps its settings in the folder\r\n" +
                                                    folder + "\r\n" + reason);
}
Outcome cannotUse(const std::string& folder, int error) {
  return cannotUse(folder, std::string("and cannot write there: ") + std::strerror(error) + ".");
}

// An address holds some hundred bytes and a folder's path may be longer, so the socket is named by
// way of the open folder.
sockaddr_un addressIn(const Descriptor& folder) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path = "/proc/self/fd/" + std::to_string(folder.get()) + "/" + socketName;
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  return address;
}

Descriptor openFolder(const std::string& folder) {
  return openFile(folder, O_RDONLY | O_DIRECTORY);
}

// Never one to wait on: the other run may hang.
Descriptor newSocket() {
  return Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
}

template <class Call>
bool withAddress(const Descriptor& folder, Call call) {
  const sockaddr_un address = addressIn(folder);
  return errorOf([&] {
           return call(reinterpret_cast<const sockaddr*>(&address), sizeof address);
         }) == 0;
}

// Whoever holds the lock may take away what a killed run has left.
Descriptor listenIn(const std::string& folder) {
  constexpr int waiting = 4;
  const Descriptor opened = openFolder(folder);
  Descriptor socket = newSocket();
  if (!opened.valid() || !socket.valid()) return Descriptor();
  ::unlinkat(opened.get(), socketName, 0);
  const bool listens =
      withAddress(opened, [&](const sockaddr* address,
                              socklen_t size) { return ::bind(socket.get(), address, size); }) &&
      ::fchmodat(opened.get(), socketName, S_IRUSR | S_IWUSR, 0) == 0 &&
      ::listen(socket.get(), waiting) == 0;
  return listens ? std::move(socket) : Descriptor();
}

// What comes within the time, up to a few bytes.
std::string received(const Descriptor& socket, std::chrono::milliseconds time) {
  pollfd ready{socket.get(), POLLIN, 0};
  std::array<char, 512> bytes{};
  if (retried([&] { return ::poll(&ready, 1, static_cast<int>(time.count())); }) <= 0) return {};
  const auto length = retried([&] { return ::recv(socket.get(), bytes.data(), bytes.size(), 0); });
  return length > 0 ? std::string(bytes.data(), static_cast<std::size_t>(length)) : std::string();
}

bool sendAll(const Descriptor& socket, std::string_view text) {
  return ::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL) ==
         static_cast<ssize_t>(text.size());
}

}  // namespace

Result<SingleInstance> SingleInstance::acquire(const std::string& folder) {
  if (!makePrivateFolder(folder))
    return cannotUse(folder, "which cannot be made here, or belongs to somebody else.");
  Descriptor lock = openFile(folder + "/running", O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
  if (!lock.valid()) return cannotUse(folder, errno);
  const int error = errorOf([&] { return ::flock(lock.get(), LOCK_EX | LOCK_NB); });
  if (error == EWOULDBLOCK)
    return Outcome::withText(alreadyRunning, "FS Skyvault is already running.");
  if (error != 0) return cannotUse(folder, error);
  return SingleInstance(std::move(lock), listenIn(folder));
}

Result<SingleInstance> SingleInstance::acquire() { return acquire(configFolder()); }

std::optional<std::string> SingleInstance::answerCall() const {
  // Who calls has written before it waits, so a caller that is slow is none.
  constexpr std::chrono::milliseconds time{100};
  const Descriptor caller(
      retried([this] { return ::accept4(calls_.get(), nullptr, nullptr, SOCK_CLOEXEC); }));
  if (!caller.valid()) return {};
  std::string token = received(caller, time);
  if (!token.ends_with('\n')) return {};
  sendAll(caller, answer);  // one that has given up is shown the window all the same
  token.pop_back();
  return token;
}

bool SingleInstance::call(const std::string& folder, std::chrono::milliseconds time) {
  const Descriptor opened = openFolder(folder);
  const Descriptor socket = newSocket();
  return opened.valid() && socket.valid() &&
         withAddress(opened,
                     [&](const sockaddr* address, socklen_t size) {
                       return ::connect(socket.get(), address, size);
                     }) &&
         sendAll(socket, environmentValue("XDG_ACTIVATION_TOKEN") + "\n") &&
         received(socket, time) == answer;
}

bool SingleInstance::call() { return call(configFolder(), answerTime); }

}  // namespace skv
