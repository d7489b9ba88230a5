// How hard each file of a new archive is packed.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "platform/file_system.h"

struct libdeflate_compressor;
struct z_stream_s;

namespace skv {

struct FileToPack {
  std::string path;        // Windows path
  std::uint64_t size = 0;  // bytes
  int level = 0;           // libdeflate's; 0 is stored
};

// Sets the levels for an archive of level 0 to 9. At 9 the archive gets at most as large as zlib's
// highest level would make it, within half a percent, in a fraction of its time: most files are
// smaller than that at a quick level already. What is missing (with drawn pictures much) shows in a
// trial beside zlib with pieces of a few files of each kind. The kinds that gain most by it get the
// level that tries everything, for just as many files as make good for the rest.
void chooseLevels(const FileSystem& files, int level, std::span<FileToPack> toPack);

// Packs at whatever level is asked for. For one thread.
class Deflater {
 public:
  Deflater();
  ~Deflater();
  Deflater(Deflater&&) noexcept;
  Deflater& operator=(Deflater&&) = delete;

  // Level 1 to 12.
  std::vector<char> pack(std::span<const char> bytes, int level);

 private:
  struct Closer {
    void operator()(libdeflate_compressor* one) const;
  };
  struct SmallCloser {
    void operator()(z_stream_s* one) const;
  };
  std::vector<char> packSmall(std::span<const char> bytes);

  std::vector<std::unique_ptr<libdeflate_compressor, Closer>> compressors_;  // by level
  std::unique_ptr<z_stream_s, SmallCloser> small_;
};

}  // namespace skv
