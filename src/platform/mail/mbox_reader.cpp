#include "platform/mail/mbox_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "platform/disk/native_calls.h"
#include "platform/mail/stored_head.h"
#include "platform/mail/work_file.h"

namespace skv {

namespace {

constexpr std::string_view fromLine = "From ";
constexpr std::size_t pieceSize = std::size_t{1} << 20U;
static_assert(pieceSize >= 4 * longestHead);

std::size_t findIn(std::string_view text, std::string_view word, std::size_t at) {
  const void* found = at >= text.size()
                          ? nullptr
                          : ::memmem(text.data() + at, text.size() - at, word.data(), word.size());
  return found == nullptr ? std::string_view::npos
                          : static_cast<std::size_t>(static_cast<const char*>(found) - text.data());
}

// The line feed before a line that begins with "From ". Line by line: looking for all of it at once
// takes twice as long.
std::size_t findLineFrom(std::string_view text, std::size_t at) {
  for (at = text.find('\n', at); at != std::string_view::npos; at = text.find('\n', at + 1))
    if (text.substr(at + 1).starts_with(fromLine)) return at;
  return at;
}

// Reads up to `length` bytes at `offset`, fewer at the end of the file.
Result<std::size_t> readAt(int fd, char* into, std::size_t length, std::int64_t offset) {
  std::size_t got = 0;
  while (got < length) {
    const ssize_t piece = retried([&] {
      return ::pread(fd, into + got, length - got, offset + static_cast<std::int64_t>(got));
    });
    if (piece < 0) return systemFailure(errno, "the mail folder");
    if (piece == 0) break;
    got += static_cast<std::size_t>(piece);
  }
  return got;
}

// A window of the file that moves forward.
class Window {
 public:
  Window(int fd, std::int64_t end) : fd_(fd), end_(end), buffer_(pieceSize) {}

  std::string_view text() const { return {buffer_.data(), filled_}; }
  std::int64_t offset() const { return offset_; }  // of the text in the file
  std::int64_t end() const { return end_; }        // of the file
  bool more() const { return offset_ + static_cast<std::int64_t>(filled_) < end_; }
  bool shrunk() const { return shrunk_; }

  // Drops so many bytes of the front, and reads on.
  Outcome advance(std::size_t dropped) {
    std::memmove(buffer_.data(), buffer_.data() + dropped, filled_ - dropped);
    filled_ -= dropped;
    offset_ += static_cast<std::int64_t>(dropped);
    const std::int64_t at = offset_ + static_cast<std::int64_t>(filled_);
    const auto wanted = static_cast<std::size_t>(
        std::min<std::int64_t>(static_cast<std::int64_t>(buffer_.size() - filled_), end_ - at));
    const auto got = readAt(fd_, buffer_.data() + filled_, wanted, at);
    if (!got.ok()) return got.outcome();
    filled_ += got.value();
    if (got.value() < wanted) {
      shrunk_ = true;
      end_ = offset_ + static_cast<std::int64_t>(filled_);
    }
    return {};
  }

 private:
  const int fd_;
  std::int64_t end_, offset_ = 0;
  std::vector<char> buffer_;
  std::size_t filled_ = 0;
  bool shrunk_ = false;
};

class MboxScan {
 public:
  MboxScan(int fd, std::int64_t length, const OutlookFilter& filter, std::size_t limit,
           MailPulse& pulse)
      : window_(fd, length), filter_(filter), limit_(limit), pulse_(pulse) {}

  Outcome run() {
    if (Outcome read = advance(0); !read.ok()) return read;
    if (window_.text().starts_with(fromLine))
      if (Outcome begun = beginMail(0, 0); !begun.ok()) return begun;
    while (found_.size() < limit_ || open_) {
      const std::size_t line = findLineFrom(window_.text(), at_);
      if (line != std::string_view::npos) {
        at_ = line + 1;
        const std::size_t before = emptyLineAt(line);
        if (before == std::string_view::npos) continue;
        if (Outcome begun = beginMail(line + 1, before); !begun.ok()) return begun;
      } else if (window_.more()) {
        // What may be the beginning of such a line, and the empty line before it.
        const std::size_t kept = std::min(window_.text().size(), fromLine.size() + 2);
        const std::size_t dropped = window_.text().size() - kept;
        at_ = std::max(at_, dropped) - dropped;
        if (Outcome read = advance(dropped); !read.ok()) return read;
      } else {
        const bool cut = open_ && window_.shrunk();
        const std::string_view text = window_.text();
        const std::size_t last = text.ends_with('\n') ? emptyLineAt(text.size() - 1) : text.npos;
        endMail(window_.offset() + static_cast<std::int64_t>(std::min(last, text.size())));
        if (cut) found_.pop_back();
        break;
      }
    }
    return {};
  }

  std::vector<FoundMail> take() { return std::move(found_); }

 private:
  Outcome advance(std::size_t dropped) {
    if (Outcome read = window_.advance(dropped); !read.ok()) return read;
    if (!pulse_.beat()) return MailPulse::cancelled();
    pulse_.tell(static_cast<std::uint64_t>(window_.offset()),
                static_cast<std::uint64_t>(window_.end()));
    return {};
  }

  // Where the empty line begins that ends with the line feed `line`; npos when it is not empty.
  std::size_t emptyLineAt(std::size_t line) const {
    const std::string_view text = window_.text();
    const auto endsLine = [&](std::size_t at) {  // whether a line ends before `at`
      return at == 0 ? window_.offset() == 0 : text[at - 1] == '\n';
    };
    if (endsLine(line)) return line;
    if (line > 0 && text[line - 1] == '\r' && endsLine(line - 1)) return line - 1;
    return std::string_view::npos;
  }

  // `start`: of a "From " line; `before`: where the mail before it ends.
  Outcome beginMail(std::size_t start, std::size_t before) {
    const std::int64_t endOfLast = window_.offset() + static_cast<std::int64_t>(before);
    std::string_view head;
    StoredHead read;
    for (;;) {
      const std::string_view text = window_.text().substr(start);
      const std::size_t line = std::min(text.find('\n'), text.size() - 1) + 1;
      head = text.substr(line);
      const std::size_t next = head.find('\n');
      const bool enough =
          !window_.more() || head.size() >= longestHead || text.size() > pieceSize / 2;
      if (next != std::string_view::npos || enough) {
        if (!isHeaderLine(head.substr(0, next))) {
          at_ = start + fromLine.size() - 1;
          return {};
        }
        read = readStoredHead(head);
        if (read.whole || enough) break;
      }
      if (Outcome more = advance(start); !more.ok()) return more;
      start = 0;
    }
    endMail(endOfLast);
    const auto begin = static_cast<std::size_t>(head.data() - window_.text().data());
    at_ = begin + read.length - std::min<std::size_t>(read.length, 1);
    if (read.deleted || found_.size() >= limit_) return {};
    auto subject = filter_.passed(read.subject);
    if (!subject) return {};
    const std::int64_t offset = window_.offset() + static_cast<std::int64_t>(begin);
    found_.push_back(
        {std::move(*subject), offset, offset, markOfHead(head.substr(0, read.length))});
    open_ = true;
    return {};
  }

  void endMail(std::int64_t end) {
    if (open_) found_.back().end = std::max(found_.back().begin, end);
    open_ = false;
  }

  Window window_;
  const OutlookFilter& filter_;
  const std::size_t limit_;
  MailPulse& pulse_;
  std::vector<FoundMail> found_;
  bool open_ = false;   // the end of the last mail found is to come
  std::size_t at_ = 0;  // how far the window's text has been searched
};

// Undoes what was done to lines that look like the beginning of a mail: one ">" of ">From " goes.
class Unquoting {
 public:
  explicit Unquoting(int into) : into_(into) {}

  // Answers how many bytes of the front are done with. `last`: nothing follows.
  Result<std::size_t> write(std::string_view text, bool last) {
    std::size_t done = 0;
    for (std::size_t at = 0;;) {
      const std::size_t line = findIn(text, "\n>", at);
      if (line == std::string_view::npos) {
        // A line feed at the end waits for what follows.
        const std::size_t end = text.ends_with('\n') && !last ? text.size() - 1 : text.size();
        if (const int error = writeAll(into_, text.substr(done, std::max(done, end) - done)))
          return systemFailure(error, "the mail under way");
        return std::max(done, end);
      }
      const std::size_t rest = text.find_first_not_of('>', line + 1);
      const bool open = rest == std::string_view::npos || rest + fromLine.size() > text.size();
      // So many are no quoting.
      constexpr std::size_t most = 64;
      if (open && !last && text.size() - line < most) {
        if (const int error = writeAll(into_, text.substr(done, line - done)))
          return systemFailure(error, "the mail under way");
        return line;
      }
      at = line + 1;
      if (open || text.substr(rest, fromLine.size()) != fromLine) continue;
      if (const int error = writeAll(into_, text.substr(done, at - done)))
        return systemFailure(error, "the mail under way");
      done = at + 1;
    }
  }

 private:
  const int into_;
};

class MboxPlace : public MailPlace {
 public:
  MboxPlace(Descriptor file, std::string workFolder)
      : file_(std::move(file)), workFolder_(std::move(workFolder)) {}

  Result<MailFile> take(const FoundMail& mail, MailPulse& pulse) const override {
    std::vector<char> buffer(pieceSize);
    auto begin = readAt(file_.get(), buffer.data(), longestHead, mail.begin);
    if (!begin.ok()) return begin.outcome();
    const std::string_view text(buffer.data(), begin.value());
    const StoredHead head = readStoredHead(text);
    const auto headEnd = mail.begin + static_cast<std::int64_t>(head.length);
    if (head.deleted || headEnd > mail.end || markOfHead(text.substr(0, head.length)) != mail.mark)
      return gone(mail);

    auto copy = makeWorkFile(workFolder_);
    if (!copy.ok()) return copy.outcome();
    if (const int error = writeAll(copy.value().get(), text.substr(0, head.length)))
      return systemFailure(error, workFolder_);
    Unquoting unquoting(copy.value().get());
    std::size_t filled = 0;
    for (std::int64_t at = headEnd; at < mail.end || filled > 0;) {
      const auto wanted = static_cast<std::size_t>(
          std::min<std::int64_t>(static_cast<std::int64_t>(buffer.size() - filled), mail.end - at));
      const auto got = readAt(file_.get(), buffer.data() + filled, wanted, at);
      if (!got.ok()) return got.outcome();
      if (got.value() < wanted) return gone(mail);
      at += static_cast<std::int64_t>(wanted);
      filled += wanted;
      const auto done = unquoting.write({buffer.data(), filled}, at == mail.end);
      if (!done.ok()) return done.outcome();
      filled -= done.value();
      std::memmove(buffer.data(), buffer.data() + done.value(), filled);
      if (!pulse.beat()) return MailPulse::cancelled();
    }
    const off_t length = ::lseek(copy.value().get(), 0, SEEK_END);
    return MailFile{std::make_shared<const Descriptor>(std::move(copy).value()), 0, length};
  }

 private:
  const Descriptor file_;
  const std::string workFolder_;
};

}  // namespace

Result<std::vector<FoundMail>> scanMbox(int file, const OutlookFilter& filter, std::size_t limit,
                                        MailPulse& pulse) {
  struct stat status {};
  if (::fstat(file, &status) != 0) return systemFailure(errno, "the mail folder");
  ::posix_fadvise(file, 0, 0, POSIX_FADV_SEQUENTIAL);
  MboxScan scan(file, status.st_size, filter, limit, pulse);
  if (Outcome scanned = scan.run(); !scanned.ok()) return scanned;
  return scan.take();
}

std::unique_ptr<MailPlace> mboxPlace(Descriptor file, std::string workFolder) {
  return std::make_unique<MboxPlace>(std::move(file), std::move(workFolder));
}

}  // namespace skv
