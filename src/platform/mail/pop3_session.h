// The conversation with a POP3 server, command by command.
//
//   STAT              +OK 2 320
//   TOP 1 10          +OK, the headers and ten lines of the body, "."
//   DELE 1            +OK: the server will delete the mail when it hears QUIT, and not before
//
// A line ends with CR LF and with nothing else: what a mail holds between line feeds alone is no
// line of the conversation, and a dot there neither ends a mail nor goes.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/outcome.h"
#include "platform/mail/server_link.h"

namespace skv {

// Bytes; nobody sends larger ones. It holds for TOP as well, which counts lines: a mail may be one.
inline constexpr std::uint64_t largestMail = std::uint64_t{2} << 30U;

// The server's word on a command. That it says no is no failure of the call.
struct Pop3Answer {
  bool agreed = false;
  std::string words;  // behind "+OK" or "-ERR"
};

// The number with which an answer's words begin; 0 for none.
std::uint64_t leadingNumber(std::string_view words);

class Pop3Session {
 public:
  static Result<std::unique_ptr<Pop3Session>> open(const ServerAccess& access,
                                                   const MailOptions& options, MailPulse& pulse);

  // Every call that fails leaves a session of no use. Why:
  enum class End {
    broken,   // the connection was lost
    silent,   // the server kept it waiting: it would most likely do so again
    endless,  // what it sent was more than a mail can be
  };
  End end() const { return endless_ ? End::endless : link_->silent() ? End::silent : End::broken; }

  Result<Pop3Answer> command(std::string_view line);

  // QUIT, with a moment's patience for the answer to it. Only where nothing was deleted: what
  // deletes is command("QUIT").
  void farewell();

  // A mail, or a part of it, as it comes: whole pieces, dots in front of lines taken off. `sink`
  // answers whether it wants more; without that the call fails with err::cancelled.
  using Sink = std::function<bool(std::string_view)>;
  Result<Pop3Answer> mail(std::string_view command, const Sink& sink);
  // The same for many commands, with the next ones under way while the server answers the first,
  // where it takes that. `answered` gets the answers in their order, with the first `kept` bytes of
  // each.
  Outcome mails(const std::vector<std::string>& commands, std::size_t kept,
                const std::function<void(std::size_t index, const Pop3Answer&, const std::string&)>&
                    answered);

  // The lines of UIDL or LIST: number and value. Not agreed: none. `count`: of the mails in the
  // mailbox; the call fails for a server that names many more.
  struct Listing {
    bool agreed = false;
    std::vector<std::pair<int, std::string>> entries;
  };
  Result<Listing> list(std::string_view command, int count);

  // The server says of itself that it knows TOP.
  bool offersTop() const { return offersTop_; }

  const ServerAccess& access() const { return access_; }

 private:
  Pop3Session(std::unique_ptr<ServerLink> link, ServerAccess access,
              std::chrono::milliseconds lineTime);
  Outcome askForCapabilities();
  Result<Pop3Answer> readAnswer();
  // A text of the server's own: its lines come in time, and it is not long.
  Result<Pop3Answer> listing(std::string_view command, std::uint64_t longest, std::string& text);
  // `lineTime`: for the end of each line, where there is one.
  Outcome readLines(std::uint64_t longest, std::optional<std::chrono::milliseconds> lineTime,
                    const Sink& sink);
  // `until`: when the server has had its time, however much it sends in between.
  Outcome readMore(std::optional<std::chrono::steady_clock::time_point> until = {});
  std::string_view unread() const {
    return std::string_view(buffer_.data() + begin_, end_ - begin_);
  }

  std::unique_ptr<ServerLink> link_;
  const ServerAccess access_;
  const std::chrono::milliseconds lineTime_;
  bool pipelining_ = false, offersTop_ = false, endless_ = false;
  std::vector<char> buffer_;
  std::size_t begin_ = 0, end_ = 0;  // of what has come and was not looked at
};

}  // namespace skv
