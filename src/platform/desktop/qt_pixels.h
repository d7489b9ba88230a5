// Between Qt's pictures and ours.
#pragma once

#include <QImage>

#include "base/pixels.h"

namespace skv {

// From more pixels than this no picture is made; it is looked at before anything is allocated.
inline constexpr long long mostPixels = 100'000'000;

// The picture on white, of 32 bits for a pixel.
QImage flattened(QImage image);

// On white as well.
Pixels pixelsOf(const QImage& image);

}  // namespace skv
