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

constexpr std::string_view lineEnd = "\r\n";

}  // namespace

std::uint64_t leadingNumber(std::string_view words) {
  std::uint64_t number = 0;
  std::from_chars(words.data(), words.data() + words.size(), number);
  return number;
}

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
  text = "\r\n" + lowerAscii(text);
  pipelining_ = text.find("\r\npipelining\r\n") != std::string::npos;
  offersTop_ = text.find("\r\ntop\r\n") != std::string::npos;
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
  for (std::string_view lines = text; !lines.empty();) {
    const std::string_view line = lines.substr(0, lines.find(lineEnd));
    lines.remove_prefix(std::min(line.size() + lineEnd.size(), lines.size()));
    int number = 0;
    const char* const end = line.data() + line.size();
    const auto [rest, error] = std::from_chars(line.data(), end, number);
    if (error != std::errc() || number <= 0 || number > count || rest == end || *rest != ' ')
      continue;
    listing.entries.emplace_back(number, trim(std::string_view(rest, end)));
  }
  return listing;
}

Outcome Pop3Session::readMore(std::optional<std::chrono::steady_clock::time_point> until) {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  const auto got = link_->receive(std::span(buffer_).subspan(end_), until);
  if (!got.ok()) return got.outcome();
  end_ += got.value();
  return {};
}

Result<Pop3Answer> Pop3Session::readAnswer() {
  const auto until = std::chrono::steady_clock::now() + lineTime_;
  std::size_t length = 0;
  while ((length = unread().find(lineEnd)) == std::string_view::npos) {
    if (unread().size() > longestAnswerLine)
      return serverFailure(access_, "answers without an end");
    if (Outcome more = readMore(until); !more.ok()) return more;
  }
  const std::string line = trim(unread().substr(0, length));
  begin_ += length + lineEnd.size();
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
  char last = '\n';  // of what was looked at
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
        const std::string_view rest = text.substr(at + 1, lineEnd.size());
        if (rest.size() < lineEnd.size() && lineEnd.starts_with(rest)) break;  // more is to come
        pass(at);
        from = at + 1;
        ended = rest == lineEnd;
        if (ended) {
          from = at += 1 + lineEnd.size();
          break;
        }
      }
      const std::size_t feed = text.find('\n', at);
      if (feed != std::string_view::npos && feed > 0) last = text[feed - 1];
      lineBegins = feed != std::string_view::npos && last == '\r';
      at = feed == std::string_view::npos ? text.size() : feed + 1;
      last = text[at - 1];
    }
    pass(at);
    begin_ += at;
    if (!wanted) return Outcome::failure(err::cancelled);
    if (ended) return {};
    taken += at;
    endless_ = taken > longest;
    if (endless_) return serverFailure(access_, "answers without an end");
    if (text.find('\n') != std::string_view::npos) lineSince = std::chrono::steady_clock::now();
    std::optional<std::chrono::steady_clock::time_point> until;
    if (lineTime) until = lineSince + *lineTime;
    if (Outcome more = readMore(until); !more.ok()) return more;
  }
}

}  // namespace skv
