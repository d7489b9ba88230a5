#include "platform/mail/curl_web.h"

#include <gtest/gtest.h>

#include <map>

#include "platform/mail/mail_servers.h"

namespace skv::test {

TEST(CurlWebTest, TakesATextAndNothingElse) {
  const std::string ok = "HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n";
  const std::string text("Version:1.00\0>x", 15);
  const std::map<std::string, std::string> pages = {
      {"/good", ok + text},
      {"/moved", "HTTP/1.1 302 Found\r\nLocation: /good\r\nContent-Length: 0\r\n\r\n"},
      {"/file", "HTTP/1.1 302 Found\r\nLocation: file:///etc/hostname\r\n\r\n"},
      {"/round", "HTTP/1.1 302 Found\r\nLocation: /round\r\nContent-Length: 0\r\n\r\n"},
      {"/long", ok + std::string(70000, 'x')},
      {"/cut", "HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nVersion:"},
      {"/noise", std::string(300, '\xff')},
      {"/none", "HTTP/1.1 404 Not Found\r\nContent-Length: 9\r\n\r\nVersion:9"}};
  // A request ends with an empty line, and so does the connection.
  const RudeServer server([&, asked = std::string()](const std::string& line) mutable {
    if (line.starts_with("GET ")) asked = line.substr(4, line.find(' ', 4) - 4);
    return line.empty() && !asked.empty() ? pages.at(std::exchange(asked, {})) + "~" : "";
  });
  CurlWeb web;
  int yields = 0;
  const auto alive = [&] { return ++yields > 0; };
  const std::string host = "http://" + server.host();
  for (const char* path : {"/good", "/moved"}) {
    const auto got = web.fetch(host + path, alive);
    ASSERT_TRUE(got.ok()) << got.outcome().description();
    EXPECT_EQ(got.value(), text);
  }
  EXPECT_GT(yields, 0);
  for (const char* path : {"/file", "/round", "/long", "/cut", "/noise", "/none"})
    EXPECT_EQ(web.fetch(host + path, alive).outcome().number(), err::web) << path;
  for (const char* url : {"file:///etc/hostname", "ftp://127.0.0.1/x", "", "http://127.0.0.1:1/"})
    EXPECT_EQ(web.fetch(url, alive).outcome().number(), err::web) << url;
  EXPECT_EQ(web.fetch(host + "/good", [] { return false; }).outcome().number(), err::cancelled);
}

TEST(CurlWebTest, AServerThatHangsOrDripsIsGivenUp) {
  const RudeServer server([](const std::string& line) -> std::string {
    if (line == "GET /drips HTTP/1.1") return "~HTTP/1.1 200 OK\r\n\r\n" + std::string(1000, 'x');
    return "";
  });
  CurlWeb web(std::chrono::milliseconds(300));
  for (const char* path : {"/hangs", "/drips"}) {
    const auto start = std::chrono::steady_clock::now();
    const auto got = web.fetch("http://" + server.host() + path, [] { return true; });
    EXPECT_EQ(got.outcome().number(), err::web) << path;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10)) << path;
  }
}

}  // namespace skv::test
