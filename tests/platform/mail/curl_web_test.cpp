#include "platform/mail/curl_web.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <thread>

namespace skv::test {
namespace {

// A web server on this machine that gives one answer to each request until its end, then is silent
// or hangs up.
class WebServer {
 public:
  WebServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto* place = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(socket_, place, length), 0);
    EXPECT_EQ(::listen(socket_, 8), 0);
    EXPECT_EQ(::getsockname(socket_, place, &length), 0);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ~WebServer() {
    ::shutdown(socket_, SHUT_RDWR);
    thread_.join();
    ::close(socket_);
  }
  WebServer(const WebServer&) = delete;
  WebServer& operator=(const WebServer&) = delete;

  std::string url(const std::string& path) const {
    return "http://127.0.0.1:" + std::to_string(port_) + path;
  }

 private:
  void serve() {
    for (;;) {
      const int client = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
      if (client < 0) return;
      char request[4096];
      const ssize_t got = ::read(client, request, sizeof request);
      const std::string answer = answerTo({request, static_cast<std::size_t>(got > 0 ? got : 0)});
      ::send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
      ::shutdown(client, SHUT_WR);
      ::close(client);
    }
  }
  static std::string answerTo(const std::string& request) {
    const auto is = [&](const char* path) {
      return request.starts_with("GET " + std::string(path) + " ");
    };
    const std::string ok = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
    if (is("/good")) return ok + std::string("Version:1.00\0>x", 15);
    if (is("/moved")) return "HTTP/1.1 302 Found\r\nLocation: /good\r\nContent-Length: 0\r\n\r\n";
    if (is("/file")) return "HTTP/1.1 302 Found\r\nLocation: file:///etc/hostname\r\n\r\n";
    if (is("/round")) return "HTTP/1.1 302 Found\r\nLocation: /round\r\nContent-Length: 0\r\n\r\n";
    if (is("/long")) return ok + std::string(70000, 'x');
    if (is("/cut")) return "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nVersion:";
    if (is("/noise")) return std::string(300, '\xff');
    return "HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nVersion:9";
  }

  int socket_;
  int port_ = 0;
  std::thread thread_;
};

TEST(CurlWebTest, TakesATextAndNothingElse) {
  const WebServer server;
  CurlWeb web;
  int yields = 0;
  const auto alive = [&] { return ++yields > 0; };
  for (const char* path : {"/good", "/moved"}) {
    const auto text = web.fetch(server.url(path), alive);
    ASSERT_TRUE(text.ok()) << text.outcome().description();
    EXPECT_EQ(text.value(), std::string("Version:1.00\0>x", 15));
  }
  EXPECT_GT(yields, 0);
  for (const char* path : {"/file", "/round", "/long", "/cut", "/noise", "/none"})
    EXPECT_EQ(web.fetch(server.url(path), alive).outcome().number(), err::web) << path;
  for (const char* url : {"file:///etc/hostname", "ftp://127.0.0.1/x", "", "http://127.0.0.1:1/"})
    EXPECT_EQ(web.fetch(url, alive).outcome().number(), err::web) << url;
  EXPECT_EQ(web.fetch(server.url("/good"), [] { return false; }).outcome().number(),
            err::cancelled);
}

}  // namespace
}  // namespace skv::test
