#include "platform/desktop/picture_source.h"

#include <unistd.h>

#include <algorithm>
#include <cstring>

namespace skv {

PictureSource::PictureSource(Descriptor file, qint64 length, std::stop_token stop)
    : file_(std::move(file)), length_(length), stop_(std::move(stop)) {
  open(ReadOnly | Unbuffered);
}

bool PictureSource::seek(qint64 position) {
  if (!QIODevice::seek(position)) return false;
  at_ = position;
  return true;
}

void PictureSource::beginDecoding(Reading reading) {
  seek(0);
  reading_ = reading;
  ranOut_ = false;
}

void PictureSource::limitScans(qint64 from, qint64 most) {
  scansFrom_ = from;
  scans_ = most;
}

qint64 PictureSource::fromBlock(char* data, qint64 most) {
  if (at_ < blockAt_ || at_ >= blockAt_ + blockLength_) {
    const auto got =
        retried([&] { return ::pread(file_.get(), block_.data(), block_.size(), at_); });
    if (got < 0) error_ = errno;
    blockAt_ = at_;
    blockLength_ = std::max<qint64>(got, 0);
  }
  const qint64 count = std::min(most, blockAt_ + blockLength_ - at_);
  std::memcpy(data, block_.data() + (at_ - blockAt_), static_cast<std::size_t>(count));
  at_ += count;
  return count;
}

qint64 PictureSource::readData(char* data, qint64 most) {
  if (most <= 0 || stopped()) return 0;
  const qint64 begin = at_;
  qint64 total = 0;
  while (total < most) {
    const qint64 count = fromBlock(data + total, most - total);
    if (count == 0) break;
    total += count;
  }
  if (begin >= scansFrom_ && !scansLeft(data, total)) total = 0;
  if (total == 0 || (reading_ == Reading::exact && total < most)) ranOut_ = true;
  return total;
}

// In the data of a scan a mark's first byte does not stand alone.
bool PictureSource::scansLeft(const char* data, qint64 count) {
  constexpr char mark = '\xFF', scan = '\xDA';
  if (scans_ < 0) return true;
  const char* const end = data + count;
  if (markBegins_ && count > 0 && *data == scan) --scans_;
  for (const char* at = data; (at = std::find(at, end, mark)) != end;)
    if (++at != end && *at == scan) --scans_;
  if (count > 0) markBegins_ = end[-1] == mark;
  scans_ = std::max<qint64>(scans_, 0);
  return scans_ > 0;
}

}  // namespace skv
