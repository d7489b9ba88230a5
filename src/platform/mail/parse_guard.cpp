#include "platform/mail/parse_guard.h"

#include <gmime/gmime.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <thread>

#include "base/text.h"
#include "platform/disk/native_calls.h"

// The heap of a sanitizer is not glibc's. GCC and clang tell of them in ways of their own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKYVAULT_OTHER_HEAP
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
    __has_feature(memory_sanitizer)
#define SKYVAULT_OTHER_HEAP
#endif
#endif
#ifdef SKYVAULT_OTHER_HEAP
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();  // NOLINT(*-reserved-identifier)
#endif

namespace skv {

namespace {

// A mail of a thousand parts takes some 2 MB. The headers of a part take as much as three times of
// what was seen of them once the parser hands them over.
constexpr std::size_t mostMemory = std::size_t{8} << 20U;
// Memory is looked at after so many bytes, of which one that may begin a part counts as many.
constexpr std::size_t judgedAtOnce = std::size_t{1} << 16U;
constexpr std::size_t weightOfParts = 8;
// A line that may begin a part is compared with the marks of all parts that it lies in, which may
// be a thousand. Mails have fewer such lines, be they of text.
constexpr std::size_t mostDashes = 50'000;
constexpr std::size_t mostOpenWords = 64;
constexpr std::chrono::milliseconds timeOfOthers{500};
// The parser asks for a few thousand bytes at a time.
constexpr std::size_t readSize = std::size_t{1} << 18U;

struct GuardedStream {
  GMimeStreamFs base;
  ParseGuard* guard;
};

ssize_t readGuarded(GMimeStream* stream, char* buffer, std::size_t length) {
  auto* guarded = reinterpret_cast<GuardedStream*>(stream);  // NOLINT(*-reinterpret-cast)
  const auto got = guarded->guard->read(stream->position, {buffer, length});
  stream->position += got;
  guarded->base.eos = got == 0;
  return got;
}

constexpr std::array<std::string_view, 9> hiddenNames = {
    "subject", "from", "sender", "reply-to", "to", "cc", "bcc", "date", "message-id"};
constexpr std::size_t longestHidden = 16;  // with the colon

bool isHidden(std::string_view line) {
  const std::size_t end =
      std::min(line.substr(0, longestHidden).find_first_of(": \t"), line.size());
  return end < line.size() &&
         std::ranges::find(hiddenNames, lowerAscii(line.substr(0, end))) != hiddenNames.end();
}

// Gives such headers other names, in lines that begin at `from` or behind it. Answers how many
// lines there may begin a part.
std::size_t hideHeaders(std::span<char> bytes, std::size_t from) {
  const std::string_view text(bytes.data(), bytes.size());
  std::size_t dashes = 0;
  for (std::size_t line = from; line < text.size();) {
    const bool begins = line == 0 || text[line - 1] == '\n';
    if (begins && isHidden(text.substr(line))) bytes[line] = 'X';
    if (begins && text.substr(line, 2) == "--") ++dashes;
    line = std::min(text.find('\n', line), text.size() - 1) + 1;
  }
  return dashes;
}

// Takes the begin off encoded words ("=?utf-8?q?...") where too many in a row have no end: the
// parser looks for the end of each in all that is left of the header. `open`: how many there were.
void dropEndlessWords(std::span<char> bytes, std::size_t& open) {
  const std::string_view text(bytes.data(), bytes.size());
  for (std::size_t at = text.find('?'); at != std::string_view::npos; at = text.find('?', at + 1)) {
    if (at > 0 && text[at - 1] == '=' && ++open > mostOpenWords) bytes[at - 1] = '_';
    if (text.substr(at + 1, 1) == "=") open = 0;
  }
}

void initClass(gpointer its, gpointer) { static_cast<GMimeStreamClass*>(its)->read = &readGuarded; }

GType guardedType() {
  static const GType type = g_type_register_static_simple(
      g_mime_stream_fs_get_type(), "SkyvaultGuardedStream", sizeof(GMimeStreamFsClass), &initClass,
      sizeof(GuardedStream), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace

GMimeStream* ParseGuard::streamOf(int file, std::int64_t begin, std::int64_t end) {
  file_ = file;
  begin_ = begin;
  end_ = end;
  auto* guarded = static_cast<GuardedStream*>(g_object_new(guardedType(), nullptr));
  auto* stream = reinterpret_cast<GMimeStream*>(guarded);  // NOLINT(*-reinterpret-cast)
  g_mime_stream_construct(stream, begin, end);
  guarded->base.owner = FALSE;
  guarded->base.eos = FALSE;
  guarded->base.fd = file;
  guarded->guard = this;
  return stream;
}

std::int64_t ParseGuard::read(std::int64_t at, std::span<char> into) {
  if (at < pieceBegin_ || at >= pieceBegin_ + pieceLength_) readPiece(at);
  const std::int64_t skipped = at - pieceBegin_;
  const auto bytes = std::span(piece_).subspan(
      static_cast<std::size_t>(skipped),
      std::min(into.size(), static_cast<std::size_t>(pieceLength_ - skipped)));
  std::ranges::copy(bytes, into.begin());
  return mayReadOn(bytes) ? static_cast<std::int64_t>(bytes.size()) : 0;
}

void ParseGuard::readPiece(std::int64_t at) {
  // With the byte before, and so many behind that a header's name is whole.
  const std::int64_t from = std::max(at - 1, begin_);
  piece_.resize(readSize + longestHidden + 1);
  const auto wanted = static_cast<std::size_t>(
      std::clamp<std::int64_t>(end_ - from, 0, static_cast<std::int64_t>(piece_.size())));
  const ssize_t got = retried([&] { return ::pread(file_, piece_.data(), wanted, from); });
  if (got < 0) error_ = errno;
  const auto length = static_cast<std::size_t>(std::max<ssize_t>(got, 0));
  const auto before = std::min<std::size_t>(static_cast<std::size_t>(at - from), length);
  dashes_ += hideHeaders({piece_.data(), length}, before);
  dropEndlessWords({piece_.data(), length}, openWords_);
  piece_.erase(piece_.begin(), piece_.begin() + static_cast<std::ptrdiff_t>(before));
  pieceBegin_ = at;
  pieceLength_ = static_cast<std::int64_t>(std::min(length - before, readSize));
}

std::size_t ParseGuard::inUse() {
#ifdef SKYVAULT_OTHER_HEAP
  return __sanitizer_get_current_allocated_bytes();
#else
  const auto memory = ::mallinfo2();
  return memory.uordblks + memory.hblkhd;
#endif
}

bool ParseGuard::mayReadOn(std::span<const char> bytes) {
  const bool mayHoldParts = std::memchr(bytes.data(), '-', bytes.size()) != nullptr;
  unjudged_ += bytes.size() * (mayHoldParts ? weightOfParts : 1);
  if (dashes_ > mostDashes) tooMuch_ = ended_ = true;
  if (ended_ || unjudged_ < judgedAtOnce) return !ended_;
  unjudged_ = 0;
  // Pictures may be read meanwhile, for which nobody has to pay here: they go soon.
  const auto since = std::chrono::steady_clock::now();
  while ((tooMuch_ = growsTooMuch()) && std::chrono::steady_clock::now() - since < timeOfOthers &&
         beat())
    std::this_thread::sleep_for(MailPulse::interval);
  ended_ = tooMuch_ || !beat();
  return !ended_;
}

// What the window takes while it lives is not the mail's doing. To ask for the heap's size is dear
// where it has many holes, so it is asked only when the window lives.
bool ParseGuard::beat() {
  if (!pulse_.isDue()) return pulse_.beat();
  const std::size_t now = inUse();
  const bool goesOn = pulse_.beat();
  before_ += inUse() - now;
  return goesOn;
}

bool ParseGuard::growsTooMuch() const {
  const std::size_t now = inUse();
  return now > before_ && now - before_ > mostMemory;
}

}  // namespace skv
