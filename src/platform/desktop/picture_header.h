// What a picture file is, and how large a picture it holds, before anything is decoded.
#pragma once

#include <QIODevice>
#include <optional>

namespace skv {

enum class PictureKind { jpeg, png, webp, gif, bmp, metafile };

struct PictureHeader {
  PictureKind kind = PictureKind::jpeg;
  // As stored, not turned upright. Of a metafile not known.
  qint64 width = 0, height = 0;
  qint64 pixels = 0;  // the most that decoding one picture of the file may take
  qint64 end = 0;     // of what was read of the file
};

// By the content alone. None when it is nothing that we know, or damaged.
std::optional<PictureHeader> pictureHeader(QIODevice& file);

}  // namespace skv
