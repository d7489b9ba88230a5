// Pictures of every kind that is read, by decoders that are safe with what strangers have made.
#pragma once

#include <QByteArray>
#include <cstdint>
#include <stop_token>
#include <string>
#include <string_view>

#include "base/outcome.h"
#include "base/pixels.h"
#include "platform/disk/os_error.h"

namespace skv {

// The picture behind an open file of `length` bytes; for the rest see PictureReader::read. `name`
// is what a failure calls it, `metafileProgram` the native path of the program that draws
// metafiles. Any thread may call.
Result<Pixels> decodePicture(Descriptor file, std::int64_t length, std::string_view name,
                             const std::string& metafileProgram, int longestSide,
                             const std::stop_token& stop);

// The picture in memory, which is no metafile.
Result<Pixels> decodePicture(const QByteArray& bytes, std::string_view name);

}  // namespace skv
