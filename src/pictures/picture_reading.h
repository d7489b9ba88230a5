// Pictures read for a command, which wants the picture before it goes on.
#pragma once

#include <string>

#include "core/app.h"

namespace skv {

// Reads the picture while the window goes on, without taking input: a large one, or one on a slow
// disk, takes seconds. For `longestSide` see PictureReader::read. Fails with err::cancelled when
// the program ends meanwhile.
Result<Pixels> readPicture(App& app, const std::string& path, int longestSide = 0);

}  // namespace skv
