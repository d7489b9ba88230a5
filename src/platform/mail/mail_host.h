// A mail server as a user writes it down: a name or an address, with or without a port.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct sockaddr;

namespace skv {

struct MailHost {
  std::string name;  // in lower case, an IPv6 address without its brackets
  int port = 0;      // 0: none was given

  // The name as an address line holds it.
  std::string inUrl() const;
  // For messages: with the port, when there is one.
  std::string shown() const;
  // Whether the name alone says that it is this machine. Nothing is trusted for it.
  bool soundsLocal() const;
};

// None for a text that is no host: empty, with a port out of range, or with characters by which it
// would be more than a host in an address.
std::optional<MailHost> readMailHost(std::string_view text);

// Whether a connection to this address stays on this machine.
bool isLoopback(const sockaddr& address);

}  // namespace skv
