// Windows metafiles, drawn by a program of ours: the library that reads them is hardened by nobody,
// and a hostile file must not take this process down.
#pragma once

#include <stop_token>
#include <string>

#include "base/outcome.h"
#include "base/pixels.h"

namespace skv {

// Where the program lies that belongs to this one: beside it, or where an installation puts it.
// "" when it is in neither place.
std::string findMetafileProgram();

// Draws the metafile behind the descriptor, which is read from its beginning, no larger than
// `longestSide` when that is above 0. Fails with invalidPicture and the bare reason as its text,
// within some ten seconds; with err::cancelled when `stop` was asked for.
Result<Pixels> drawMetafile(const std::string& program, int file, int longestSide,
                            const std::stop_token& stop);

}  // namespace skv
