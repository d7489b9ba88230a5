// Pictures as JPEG files.
#pragma once

#include <string_view>

#include "base/outcome.h"
#include "pictures/cdib_section.h"
#include "platform/file_system.h"

namespace skv {

// The error number of a picture that could not be saved.
inline constexpr int jpegError = 26001;

// `quality` is from 1 to 100. An older file of that name, read-only or not, is replaced in one step
// and its attributes and times stay; when the save fails it stays itself.
Outcome SaveJPEGFile(FileSystem& files, const cDIBSection& dib, std::string_view file, int quality);

}  // namespace skv
