// Connections to mail servers, by libcurl.
//
// It connects, encrypts, checks the certificate and logs in. What follows is, for a mailbox, a
// conversation of lines that the caller leads, and for a mail that goes out libcurl's as well.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/outcome.h"
#include "platform/mail/curl_mail_engine.h"
#include "platform/mail/mail_host.h"
#include "platform/mail/mail_pulse.h"

namespace skv {

struct ServerAccess {
  MailHost host;
  std::vector<int> ports;  // tried in turn until one can be reached
  std::string user, password;
  bool plainAllowed = false;
};

// What a server has said, fit for a message: one line of its own words, without the password.
std::string serverWords(std::string_view line, const ServerAccess& access);

// A failure as messages tell it: `The mail server "host" <what>: <words>`.
Outcome serverFailure(const ServerAccess& access, std::string_view what,
                      std::string_view words = {});

class CurlCall;

// A mailbox that is open to commands. Ends without a farewell.
class ServerLink {
 public:
  static Result<std::unique_ptr<ServerLink>> open(const ServerAccess& access,
                                                  const MailOptions& options, MailPulse& pulse);
  ~ServerLink();
  ServerLink(const ServerLink&) = delete;
  ServerLink& operator=(const ServerLink&) = delete;

  // Both fail when the connection is lost, and with err::cancelled. What is left of a connection
  // after that is of no use.
  Outcome send(std::string_view bytes);
  // How long the server may be silent from now on.
  void setPatience(std::chrono::milliseconds time);
  // Waits for one byte at least, and answers how many came. `until`: when to wait no longer,
  // should this be before the server's time for silence is over.
  Result<std::size_t> receive(std::span<char> buffer,
                              std::optional<std::chrono::steady_clock::time_point> until = {});
  // What has failed has failed by waiting.
  bool silent() const { return silent_; }

 private:
  explicit ServerLink(std::unique_ptr<CurlCall> call);
  Outcome wait(short events, std::chrono::steady_clock::time_point until);
  std::unique_ptr<CurlCall> call_;
  bool silent_ = false;
};

struct Envelope {
  std::string from;
  std::vector<std::string> to;
};

// Bytes of a mail with CR LF at its line ends, asked for piece by piece: 0 is the end.
struct MailSource {
  std::function<Result<std::size_t>(std::span<char>)> read;
  std::uint64_t size = 0;
};

// `source` answers the mail from its beginning, each time it is called.
Outcome sendBySmtp(const ServerAccess& access, const Envelope& envelope,
                   const std::function<Result<MailSource>()>& source, const MailOptions& options,
                   MailPulse& pulse);

}  // namespace skv
