#include "platform/mail/pop3_session.h"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "base/text.h"

namespace skv {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 18U;
constexpr std::size_t longestAnswerLine = 8192;
constexpr std::uint64_t longestCapabilities = std::uint64_t{1} << 16U;
// A name of UIDL has 70 characters at the most (RFC 1939).
constexpr std::uint64_t longestEntry = 100;
// A farewell is a courtesy.
constexpr std::chrono::seconds quitTime{2};
// Commands on their way at once. Their answers wait in the network's buffers, so that the server is
// never idle; the commands themselves are so short that they never fill one.
constexpr std::size_t window = 64;

// Without its end, of which the line feed is off already.
std::string plainLine(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return trim(line);
}

}  // namespace

Pop3Session::Pop3Session(std::unique_ptr<ServerLink> link, ServerAccess access,
                         std::chrono::milliseconds lineTime)
    : link_(std::move(link)),
      access_(std::move(access)),
      lineTime_(lineTime),
      buffer_(bufferSize) {}

Result<std::unique_ptr<Pop3Session>> Pop3Session::open(const ServerAccess& access,
                                                       const MailOptions& options,
                                                       MailPulse& pulse) {
  auto link = ServerLink::open(access, options, pulse);
  if (!link.ok()) return link.outcome();
  std::unique_ptr<Pop3Session> session(
      new Pop3Session(std::move(link).value(), access, options.silenceTime));
  if (Outcome asked = session->askForCapabilities(); !asked.ok()) return asked;
  return session;
}

Outcome Pop3Session::askForCapabilities() {
  std::string text;
  const auto answer = listing("CAPA", longestCapabilities, text);
  if (!answer.ok() || !answer.value().agreed) return answer.outcome();
  text = "\n" + lowerAscii(text);
  pipelining_ = text.find("\npipelining\r\n") != std::string::npos;
  offersTop_ = text.find("\ntop\r\n") != std::string::npos;
  return {};
}

Result<Pop3Answer> Pop3Session::command(std::string_view line) {
  if (Outcome sent = link_->send(std::string(line) + "\r\n"); !sent.ok()) return sent;
  return readAnswer();
}

void Pop3Session::farewell() {
  link_->setPatience(quitTime);
  command("QUIT").outcome().skipped();
}

Result<Pop3Answer> Pop3Session::mail(std::string_view line, const Sink& sink) {
  auto answer = command(line);
  if (!answer.ok() || !answer.value().agreed) return answer;
  if (Outcome read = readLines(largestMail, {}, sink); !read.ok()) return read;
  return answer;
}

Result<Pop3Answer> Pop3Session::listing(std::string_view line, std::uint64_t longest,
                                        std::string& text) {
  auto answer = command(line);
  if (!answer.ok() || !answer.value().agreed) return answer;
  Outcome read = readLines(longest, lineTime_, [&text](std::string_view piece) {
    text += piece;
    return true;
  });
  if (!read.ok()) return read;
  return answer;
}

Outcome Pop3Session::mails(
    const std::vector<std::string>& lines, std::size_t kept,
    const std::function<void(std::size_t, const Pop3Answer&, const std::string&)>& answered) {
  const std::size_t ahead = pipelining_ ? window : 1;
  std::size_t sent = 0;
  for (std::size_t at = 0; at < lines.size(); ++at) {
    // Half a window at a time: a packet for each command would cost as much as waiting for it.
    if (sent - at <= ahead / 2) {
      std::string batch;
      for (; sent < lines.size() && sent - at < ahead; ++sent) batch += lines[sent] + "\r\n";
      if (Outcome gone = link_->send(batch); !gone.ok()) return gone;
    }
    const auto answer = readAnswer();
    if (!answer.ok()) return answer.outcome();
    std::string text;
    if (answer.value().agreed) {
      Outcome read = readLines(largestMail, {}, [&](std::string_view piece) {
        text += piece.substr(0, kept - std::min(kept, text.size()));
        return true;
      });
      if (!read.ok()) return read;
    }
    answered(at, answer.value(), text);
  }
  return {};
}

Result<Pop3Session::Listing> Pop3Session::list(std::string_view command, int count) {
  std::string text;
  const auto answer =
      listing(command, longestEntry * (static_cast<std::uint64_t>(count) + 100), text);
  if (!answer.ok()) return answer.outcome();
  Listing listing{answer.value().agreed, {}};
  for (const std::string& line : split(text, '\n')) {
    int number = 0;
    const char* const end = line.data() + line.size();
    const auto [rest, error] = std::from_chars(line.data(), end, number);
    if (error != std::errc() || number <= 0 || rest == end || *rest != ' ') continue;
    listing.entries.emplace_back(number, plainLine(std::string_view(rest, end)));
  }
  return listing;
}

Outcome Pop3Session::readMore() {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  const auto got = link_->receive(std::span(buffer_).subspan(end_));
  if (!got.ok()) return got.outcome();
  end_ += got.value();
  return {};
}

Result<Pop3Answer> Pop3Session::readAnswer() {
  const auto since = std::chrono::steady_clock::now();
  std::size_t length = 0;
  while ((length = unread().find('\n')) == std::string_view::npos) {
    if (unread().size() > longestAnswerLine)
      return serverFailure(access_, "answers without an end");
    if (std::chrono::steady_clock::now() - since > lineTime_)
      return serverFailure(access_, "does not answer");
    if (Outcome more = readMore(); !more.ok()) return more;
  }
  const std::string line = plainLine(unread().substr(0, length));
  begin_ += length + 1;
  if (line.starts_with("+OK")) return Pop3Answer{true, trim(line.substr(3))};
  if (line.starts_with("-ERR")) return Pop3Answer{false, trim(line.substr(4))};
  return serverFailure(access_, "answers what is no POP3", line);
}

// The end is a line of one dot. In between pieces go on as large as they come, up to the next line
// that has a dot to lose.
Outcome Pop3Session::readLines(std::uint64_t longest,
                               std::optional<std::chrono::milliseconds> lineTime,
                               const Sink& sink) {
  bool lineBegins = true;
  std::uint64_t taken = 0;
  auto lineSince = std::chrono::steady_clock::now();
  for (;;) {
    const std::string_view text = unread();
    std::size_t at = 0, from = 0;
    bool wanted = true;
    const auto pass = [&](std::size_t to) {
      if (to > from && wanted) wanted = sink(text.substr(from, to - from));
      from = to;
    };
    bool ended = false;
    while (at < text.size()) {
      if (lineBegins && text[at] == '.') {
        const std::string_view rest = text.substr(at + 1, 2);
        if (rest.empty() || rest == "\r") break;  // what it is comes with the next piece
        pass(at);
        from = at + 1;
        if (rest == "\r\n" || rest.front() == '\n') {
          at += rest.front() == '\n' ? 2 : 3;
          from = at;
          ended = true;
          break;
        }
      }
      const std::size_t newline = text.find('\n', at);
      lineBegins = newline != std::string_view::npos;
      at = lineBegins ? newline + 1 : text.size();
    }
    pass(at);
    begin_ += at;
    if (!wanted) return Outcome::failure(err::cancelled);
    if (ended) return {};
    taken += at;
    if (taken > longest) return serverFailure(access_, "answers without an end");
    const auto now = std::chrono::steady_clock::now();
    if (text.find('\n') != std::string_view::npos) lineSince = now;
    if (lineTime && now - lineSince > *lineTime) return serverFailure(access_, "does not answer");
    if (Outcome more = readMore(); !more.ok()) return more;
  }
}

}  // namespace skv
