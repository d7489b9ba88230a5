#include "platform/mail/parse_guard.h"

#include <malloc.h>

#include <cstring>

namespace skv {

namespace {

// A mail of a thousand parts takes some 2 MB. The headers of a part take as much as three times of
// what was seen of them once the parser hands them over.
constexpr std::size_t mostMemory = std::size_t{8} << 20U;
// Memory is looked at after so many bytes, of which one that may begin a part counts as many.
constexpr std::size_t judgedAtOnce = std::size_t{1} << 16U;
constexpr std::size_t weightOfParts = 8;

struct GuardedStream {
  GMimeStreamFs base;
  ParseGuard* guard;
};

GMimeStreamClass* plainClass = nullptr;

ssize_t readGuarded(GMimeStream* stream, char* buffer, std::size_t length) {
  auto* guarded = reinterpret_cast<GuardedStream*>(stream);  // NOLINT(*-reinterpret-cast)
  const ssize_t got = plainClass->read(stream, buffer, length);
  if (got <= 0) return got;
  return guarded->guard->mayReadOn({buffer, static_cast<std::size_t>(got)}) ? got : 0;
}

void initClass(gpointer its, gpointer) {
  plainClass = static_cast<GMimeStreamClass*>(g_type_class_peek_parent(its));
  static_cast<GMimeStreamClass*>(its)->read = &readGuarded;
}

GType guardedType() {
  static const GType type = g_type_register_static_simple(
      g_mime_stream_fs_get_type(), "SkyvaultGuardedStream", sizeof(GMimeStreamFsClass), &initClass,
      sizeof(GuardedStream), nullptr, static_cast<GTypeFlags>(0));
  return type;
}

}  // namespace

GMimeStream* ParseGuard::streamOf(int file, std::int64_t begin, std::int64_t end) {
  auto* guarded = static_cast<GuardedStream*>(g_object_new(guardedType(), nullptr));
  auto* stream = reinterpret_cast<GMimeStream*>(guarded);  // NOLINT(*-reinterpret-cast)
  g_mime_stream_construct(stream, begin, end);
  guarded->base.owner = FALSE;
  guarded->base.eos = FALSE;
  guarded->base.fd = file;
  guarded->guard = this;
  return stream;
}

std::size_t ParseGuard::inUse() {
  const auto memory = ::mallinfo2();
  return memory.uordblks + memory.hblkhd;
}

bool ParseGuard::mayReadOn(std::span<const char> bytes) {
  const bool mayHoldParts = std::memchr(bytes.data(), '-', bytes.size()) != nullptr;
  unjudged_ += bytes.size() * (mayHoldParts ? weightOfParts : 1);
  if (ended_ || unjudged_ < judgedAtOnce) return !ended_;
  unjudged_ = 0;
  const std::size_t now = inUse();
  ended_ = (now > before_ && now - before_ > mostMemory) || !pulse_.beat();
  // The window has lived meanwhile, which is not the mail's doing.
  before_ += inUse() - now;
  return !ended_;
}

}  // namespace skv
