#include "platform/mail/mail_servers.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace skv::test {

namespace fs = std::filesystem;

MailServers::MailServers() {
  std::string name = (fs::temp_directory_path() / "skyvault-mail-XXXXXX").string();
  folder_ = ::mkdtemp(name.data());
  std::array<int, 2> in{}, out{};
  if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0) return;
  process_ = ::fork();
  if (process_ == 0) {
    ::dup2(in[0], STDIN_FILENO);
    ::dup2(out[1], STDOUT_FILENO);
    ::execl("/usr/bin/python3", "python3", MAIL_SERVERS, folder_.c_str(), nullptr);
    ::_exit(127);
  }
  ::close(in[0]);
  ::close(out[1]);
  input_ = in[1];
  FILE* told = ::fdopen(out[0], "r");
  EXPECT_EQ(std::fscanf(told, "%d %d %d %d", &ports_[0], &ports_[1], &ports_[2], &ports_[3]), 4);
  std::fclose(told);
}

MailServers::~MailServers() {
  ::close(input_);
  ::waitpid(process_, nullptr, 0);
  fs::remove_all(folder_);
}

void MailServers::putIntoMailbox(const std::string& mail) {
  const std::string name = std::to_string(1000 + ++put_) + ".mail";
  const fs::path made = folder_ + "/maildir/tmp/" + name;
  std::ofstream(made, std::ios::binary) << mail;
  fs::permissions(made, fs::perms::all);
  fs::rename(made, folder_ + "/maildir/new/" + name);
}

int MailServers::mailsInMailbox() const {
  const auto count = [&](const char* part) {
    return std::distance(fs::directory_iterator(folder_ + part), fs::directory_iterator());
  };
  return static_cast<int>(count("/maildir/new") + count("/maildir/cur"));
}

std::vector<std::string> MailServers::sent() const {
  std::vector<std::string> mails;
  for (int number = 1;; ++number) {
    std::ifstream file(folder_ + "/out/" + std::to_string(number), std::ios::binary);
    if (!file) return mails;
    mails.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  }
}

RudeServer::RudeServer(Answer answer, const std::string& address)
    : answer_(std::move(answer)), address_(address) {
  listener_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in place{};
  place.sin_family = AF_INET;
  ::inet_pton(AF_INET, address.c_str(), &place.sin_addr);
  socklen_t length = sizeof place;
  auto* generic = reinterpret_cast<sockaddr*>(&place);  // NOLINT(*-reinterpret-cast)
  EXPECT_EQ(::bind(listener_, generic, length), 0);
  EXPECT_EQ(::listen(listener_, 8), 0);
  ::getsockname(listener_, generic, &length);
  port_ = ntohs(place.sin_port);
  thread_ = std::thread([this] { serve(); });
}

RudeServer::~RudeServer() {
  ending_ = true;
  thread_.join();
  ::close(listener_);
}

std::vector<std::string> RudeServer::heard() const {
  const std::lock_guard lock(mutex_);
  return heard_;
}

void RudeServer::serve() {
  while (!ending_) {
    pollfd watched{listener_, POLLIN, 0};
    if (::poll(&watched, 1, 20) <= 0) continue;
    const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    talk(client);
    ::close(client);
  }
}

void RudeServer::talk(int client) {
  std::string unread;
  const auto say = [&](const std::string& line) {
    const auto reply = answer_(line);
    const bool slowly = reply && reply->starts_with('~'), last = reply && reply->ends_with('~');
    const std::size_t end = reply ? reply->size() - (last ? 1 : 0) : 0;
    for (std::size_t at = slowly ? 1 : 0; at < end && !ending_;) {
      const ssize_t sent =
          ::send(client, reply->data() + at, slowly ? 1 : end - at, MSG_NOSIGNAL | MSG_DONTWAIT);
      if (slowly) ::usleep(10'000);
      if (sent > 0) at += static_cast<std::size_t>(sent);
      if (sent < 0 && errno != EAGAIN) return false;
      if (sent < 0) ::usleep(1000);
    }
    return reply && !last;
  };
  if (!say("")) return;
  while (!ending_) {
    pollfd watched{client, POLLIN, 0};
    if (::poll(&watched, 1, 20) <= 0) continue;
    std::array<char, 65536> buffer;
    const ssize_t got = ::recv(client, buffer.data(), buffer.size(), 0);
    if (got <= 0) return;
    unread.append(buffer.data(), static_cast<std::size_t>(got));
    for (std::size_t end; (end = unread.find("\r\n")) != std::string::npos;) {
      const std::string line = unread.substr(0, end);
      unread.erase(0, end + 2);
      {
        const std::lock_guard lock(mutex_);
        heard_.push_back(line);
      }
      if (!say(line)) return;
    }
  }
}

std::string otherAddress() {
  ifaddrs* all = nullptr;
  if (::getifaddrs(&all) != 0) return {};
  std::string found;
  for (const ifaddrs* one = all; one != nullptr && found.empty(); one = one->ifa_next) {
    if (one->ifa_addr == nullptr || one->ifa_addr->sa_family != AF_INET ||
        (one->ifa_flags & IFF_LOOPBACK) != 0)
      continue;
    std::array<char, INET_ADDRSTRLEN> text{};
    const auto* v4 = reinterpret_cast<const sockaddr_in*>(one->ifa_addr);  // NOLINT
    ::inet_ntop(AF_INET, &v4->sin_addr, text.data(), text.size());
    found = text.data();
  }
  ::freeifaddrs(all);
  return found;
}

}  // namespace skv::test
