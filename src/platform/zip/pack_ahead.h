// Files packed on several threads, some way ahead of whoever writes them.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/outcome.h"
#include "platform/zip/levels.h"

namespace skv {

struct PackedFile {
  Outcome outcome;  // of reading the file
  std::vector<char> data;
  std::uint64_t size = 0;  // bytes, unpacked
  std::uint32_t crc = 0;
  bool deflated = false;           // else `data` is the file as it is
  std::exception_ptr thrown = {};  // instead of an outcome; what is no std::exception
};

class PackAhead {
 public:
  // Files up to this size fit in here: bytes.
  static constexpr std::uint64_t largestFile = std::uint64_t{16} << 20U;

  // `level`: 0 (stored) to 9.
  PackAhead(const FileSystem& files, int level) : files_(files), level_(level) {}
  ~PackAhead();
  PackAhead(const PackAhead&) = delete;
  PackAhead& operator=(const PackAhead&) = delete;

  // Before start(). `path`: Windows path; `size`: bytes. Answers the file's number.
  std::size_t add(std::string path, std::uint64_t size);
  void start();
  // Waits for a file, which is handed out once, and calls `meanwhile` now and then. Numbers are to
  // be taken in rising order. Throws what a call on the file has thrown, failures apart.
  PackedFile take(std::size_t number, const std::function<void()>& meanwhile);

 private:
  // What a worker takes at once: many small files, or a large one.
  struct Portion {
    std::size_t first = 0, count = 0;
    std::uint64_t bytes = 0;
    std::vector<PackedFile> packed = {};
    bool ready = false;
  };

  void work();
  void makePortions();
  bool mayBegin() const;
  std::vector<PackedFile> pack(const Portion& portion, Deflater& deflater) const;
  PackedFile pack(const FileToPack& task, Deflater& deflater) const;

  const FileSystem& files_;
  const int level_;
  std::vector<FileToPack> tasks_;
  std::vector<Portion> portions_;
  std::vector<std::thread> threads_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t held_ = 0;             // bytes of buffers
  std::size_t next_ = 0, wanted_ = 0;  // portions
  bool stop_ = false;
  // The portion that is being handed out.
  std::vector<PackedFile> taken_;
  std::size_t takenFirst_ = 0, portionsTaken_ = 0;
};

}  // namespace skv
