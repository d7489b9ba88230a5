// Picture files by Qt's decoders.
#pragma once

#include "platform/file_system.h"
#include "platform/pictures.h"

namespace skv {

class QtPictureReader : public PictureReader {
 public:
  // `metafileProgram`: the native path of the program that draws metafiles, by default the one that
  // belongs to this program.
  explicit QtPictureReader(const FileSystem& files, std::string metafileProgram = {});
  Result<Pixels> read(std::string_view path, int longestSide = 0,
                      std::stop_token stop = {}) const override;
  std::string state(std::string_view path) const override;

 private:
  const FileSystem& files_;
  std::string metafileProgram_;
};

}  // namespace skv
