// Mail servers of a test: real ones, and one that does what the test tells it.
#pragma once

#include <array>
#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace skv::test {

// Dovecot and an SMTP server, see mail_servers.py. They end with the object, and with the process.
class MailServers {
 public:
  MailServers();
  ~MailServers();
  MailServers(const MailServers&) = delete;
  MailServers& operator=(const MailServers&) = delete;

  std::string pop3() const { return host(0); }
  std::string pop3s() const { return host(1); }
  std::string smtp() const { return host(2); }
  std::string smtps() const { return host(3); }
  std::vector<int> tlsPorts() const { return {ports_[1], ports_[3]}; }
  std::string caFile() const { return folder_ + "/ca.pem"; }
  void putIntoMailbox(const std::string& mail);
  int mailsInMailbox() const;
  // The mails that were sent, each with a line of client name, sender and recipients before it.
  std::vector<std::string> sent() const;

 private:
  std::string host(std::size_t server) const {
    return "localhost:" + std::to_string(ports_[server]);
  }
  std::string folder_;
  std::array<int, 4> ports_{};
  int input_ = -1;  // of the servers, which end when it closes
  int process_ = -1;
  int put_ = 0;
};

// A server in a thread, for one connection after the other.
class RudeServer {
 public:
  // What the server sends on a line of the client ("" is the connection itself). None: it hangs up;
  // "": it is silent. What begins with "~" comes byte by byte, 10 ms apart; after what ends with
  // "~" it hangs up.
  using Answer = std::function<std::optional<std::string>(const std::string& line)>;
  explicit RudeServer(Answer answer, const std::string& address = "127.0.0.1");
  ~RudeServer();
  RudeServer(const RudeServer&) = delete;
  RudeServer& operator=(const RudeServer&) = delete;

  std::string host() const { return address_ + ":" + std::to_string(port_); }
  std::vector<std::string> heard() const;  // the lines of all clients

 private:
  void serve();
  void talk(int client);
  const Answer answer_;
  const std::string address_;
  int port_ = 0, listener_ = -1;
  std::atomic<bool> ending_ = false;
  mutable std::mutex mutex_;
  std::vector<std::string> heard_;
  std::thread thread_;
};

// An address of this machine that is not a loopback one; "" when it has none.
std::string otherAddress();

}  // namespace skv::test
