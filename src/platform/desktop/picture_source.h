// A picture file, opened once, as the decoders read it.
#pragma once

#include <QIODevice>
#include <array>
#include <stop_token>

#include "platform/disk/os_error.h"

namespace skv {

class PictureSource : public QIODevice {
 public:
  // `length`: of the file, from its beginning.
  PictureSource(Descriptor file, qint64 length, std::stop_token stop);

  bool isSequential() const override { return false; }
  qint64 size() const override { return length_; }
  bool seek(qint64 position) override;

  // How the decoder reads: exactly what it needs, or in blocks of its own.
  enum class Reading { exact, blocks };
  // From the file's beginning; forgets what was noted before.
  void beginDecoding(Reading reading);
  // Ends after this many scans of a JPEG file, as if nothing were behind them. `from` is where the
  // first one may begin.
  void limitScans(qint64 from, qint64 most);

  // The decoder wanted more than there is. The decoders themselves fill up what is missing.
  bool ranOut() const { return ranOut_; }
  bool stopped() const { return stop_.stop_requested(); }
  int error() const { return error_; }  // the system's number; 0 for none
  int descriptor() const { return file_.get(); }

 protected:
  qint64 readData(char* data, qint64 most) override;
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  qint64 fromBlock(char* data, qint64 most);
  bool scansLeft(const char* data, qint64 count);

  Descriptor file_;
  qint64 length_;
  std::stop_token stop_;
  Reading reading_ = Reading::blocks;
  qint64 at_ = 0;
  std::array<char, 65536> block_;
  qint64 blockAt_ = 0, blockLength_ = 0;
  bool ranOut_ = false;
  int error_ = 0;
  qint64 scansFrom_ = 0, scans_ = -1;  // -1: not limited
  bool markBegins_ = false;            // the last byte was 0xFF
};

}  // namespace skv
