#include "platform/mail/mail_host.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/text.h"

namespace skv {

namespace {

constexpr int highestPort = 65535;

bool mayStandInHost(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 0x80 || (byte >= '0' && byte <= '9') || (byte >= 'a' && byte <= 'z') || c == '.' ||
         c == '-' || c == '_';
}

bool mayStandInAddress(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || c == ':' || c == '.';
}

// 0 for what is no port.
int portOf(std::string_view text) {
  int port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && port > 0 && port <= highestPort ? port : 0;
}

}  // namespace

std::string MailHost::inUrl() const {
  return name.find(':') == std::string::npos ? name : "[" + name + "]";
}

std::string MailHost::shown() const {
  return port == 0 ? name : inUrl() + ":" + std::to_string(port);
}

bool MailHost::soundsLocal() const {
  return name == "localhost" || name == "::1" || name.starts_with("127.");
}

std::optional<MailHost> readMailHost(std::string_view text) {
  const std::string plain = lowerAscii(trim(text));
  MailHost host;
  std::string_view rest = plain;
  bool address = false;
  if (rest.starts_with('[')) {
    const std::size_t end = rest.find(']');
    if (end == std::string_view::npos) return {};
    host.name = rest.substr(1, end - 1);
    rest.remove_prefix(end + 1);
    address = true;
  } else if (std::ranges::count(rest, ':') > 1) {
    host.name = rest;
    rest = {};
    address = true;
  } else {
    host.name = rest.substr(0, rest.find(':'));
    rest.remove_prefix(host.name.size());
  }
  if (host.name.empty() || host.name.starts_with('-') ||
      !std::ranges::all_of(host.name, address ? mayStandInAddress : mayStandInHost))
    return {};
  if (rest.empty()) return host;
  host.port = rest.starts_with(':') ? portOf(rest.substr(1)) : 0;
  if (host.port == 0) return {};
  return host;
}

bool isLoopback(const sockaddr& address) {
  if (address.sa_family == AF_INET) {
    sockaddr_in v4;
    std::memcpy(&v4, &address, sizeof v4);
    return ntohl(v4.sin_addr.s_addr) >> 24U == 127;
  }
  if (address.sa_family != AF_INET6) return false;
  sockaddr_in6 v6;
  std::memcpy(&v6, &address, sizeof v6);
  return IN6_IS_ADDR_LOOPBACK(&v6.sin6_addr) ||
         (IN6_IS_ADDR_V4MAPPED(&v6.sin6_addr) && v6.sin6_addr.s6_addr[12] == 127);
}

}  // namespace skv
