// The conversation with a POP3 server, command by command.
//
//   STAT              +OK 2 320
//   TOP 1 10          +OK, the headers and ten lines of the body, "."
//   DELE 1            +OK: the server will delete the mail when it hears QUIT, and not before
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/outcome.h"
#include "platform/mail/server_link.h"

namespace skv {

// The server's word on a command. That it says no is no failure of the call.
struct Pop3Answer {
  bool agreed = false;
  std::string words;  // behind "+OK" or "-ERR"
};

class Pop3Session {
 public:
  static Result<std::unique_ptr<Pop3Session>> open(const ServerAccess& access,
                                                   const MailOptions& options, MailPulse& pulse);

  // Every call that fails leaves a session of no use.

  Result<Pop3Answer> command(std::string_view line);

  // QUIT, with a moment's patience for the answer to it. Only where nothing was deleted: what
  // deletes is command("QUIT").
  void farewell();

  // An answer of several lines, as it comes: whole pieces of it, dots in front of lines taken off.
  // `sink` may not fail: it keeps what goes wrong to itself.
  using Sink = std::function<void(std::string_view)>;
  Result<Pop3Answer> longCommand(std::string_view line, std::uint64_t limit, const Sink& sink);
  // The same for many commands, with the next ones under way while the server answers the first,
  // where it takes that. `answered` gets the answers in their order, with the first `kept` bytes of
  // each.
  Outcome longCommands(const std::vector<std::string>& lines, std::uint64_t limit, std::size_t kept,
                       const std::function<void(std::size_t index, const Pop3Answer&,
                                                const std::string&)>& answered);

  // The lines of UIDL or LIST: number and value. Not agreed: none.
  struct Listing {
    bool agreed = false;
    std::vector<std::pair<int, std::string>> entries;
  };
  Result<Listing> list(std::string_view command);

  const ServerAccess& access() const { return access_; }

 private:
  Pop3Session(std::unique_ptr<ServerLink> link, ServerAccess access,
              std::chrono::milliseconds lineTime);
  Outcome askForPipelining();
  Result<Pop3Answer> readAnswer();
  Outcome readLines(std::uint64_t limit, const Sink& sink);
  Outcome readMore();
  std::string_view unread() const {
    return std::string_view(buffer_.data() + begin_, end_ - begin_);
  }

  std::unique_ptr<ServerLink> link_;
  const ServerAccess access_;
  const std::chrono::milliseconds lineTime_;
  bool pipelining_ = false;
  std::vector<char> buffer_;
  std::size_t begin_ = 0, end_ = 0;  // of what has come and was not looked at
};

}  // namespace skv
