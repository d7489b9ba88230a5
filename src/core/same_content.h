// Whether two files hold the same.
#pragma once

#include <string>

#include "platform/file_system.h"

namespace skv {

// By their lengths and their bytes. Fails where one of them cannot be read.
Result<bool> sameContent(const FileSystem& files, const std::string& one, const std::string& other);

}  // namespace skv
