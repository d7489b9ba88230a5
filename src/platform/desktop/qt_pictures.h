// Picture files by Qt's decoders.
#pragma once

#include "platform/file_system.h"
#include "platform/pictures.h"

namespace skv {

class QtPictureReader : public PictureReader {
 public:
  explicit QtPictureReader(const FileSystem& files) : files_(files) {}
  Result<Pixels> read(std::string_view path, int longestSide = 0) const override;

 private:
  const FileSystem& files_;
};

}  // namespace skv
