// What keeps the parsing of a stranger's mail within bounds: it reads through a stream that lives
// on signs of life and ends early, to be refused, where the mail grows in memory, be it by millions
// of parts, by headers without an end or by what nobody has thought of.
//
// Subject, addresses and the like the parser does not get to see: it takes them apart at once, of
// each forwarded mail, too, which may cost minutes or the stack, and nobody here asks it for them.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/mail/mail_pulse.h"

using GMimeStream = struct _GMimeStream;  // NOLINT(bugprone-reserved-identifier)

namespace skv {

class ParseGuard {
 public:
  // Bytes of the whole process's heap.
  static std::size_t inUse();

  explicit ParseGuard(MailPulse& pulse) : pulse_(pulse), before_(inUse()) {}

  // A stretch of a file, one for each guard and for the parser alone: what it keeps of it, it reads
  // without this guard, which outlives the stream. The descriptor stays the caller's.
  GMimeStream* streamOf(int file, std::int64_t begin, std::int64_t end);

  // The system's error number when the file could not be read to its end, else 0.
  int error() const { return error_; }
  // The mail was too much, and its end was not read.
  bool tooMuch() const { return tooMuch_; }

  // For the stream: what stands at `at`, nothing at the end or where the mail is too much.
  std::int64_t read(std::int64_t at, std::span<char> into);

 private:
  void readPiece(std::int64_t at);
  // Whether to read on after these bytes.
  bool mayReadOn(std::span<const char> bytes);
  bool growsTooMuch() const;
  bool beat();
  MailPulse& pulse_;
  std::size_t before_;
  std::size_t unjudged_ = 0;
  std::size_t dashes_ = 0;     // lines so far that may begin a part
  std::size_t openWords_ = 0;  // encoded words since the last end of one
  bool ended_ = false, tooMuch_ = false;

  int file_ = -1, error_ = 0;
  std::int64_t begin_ = 0, end_ = 0;
  std::vector<char> piece_;
  std::int64_t pieceBegin_ = 0, pieceLength_ = 0;
};

}  // namespace skv
