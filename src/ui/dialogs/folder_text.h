// What a person types or pastes as a folder, in the form in which the program keeps one.
#pragma once

#include <string>
#include <string_view>

#include "core/app.h"

namespace skv {

// A full Windows path with a backslash at its end:
//
//   C:\FS2002, c:/FS2002/, "C:\FS2002\."                C:\FS2002\ .
//   /home/anna/.wine/drive_c/FS2002, ~/.wine/...        C:\FS2002\ .
//   file:///home/anna/.wine/drive_c/My%20Sim            C:\My Sim\ .
//
// Nothing has to stand there. Fails with a reason that goes on from the text in quotation marks: it
// is no full path, no drive reaches it, or it could not be stored.
Result<std::string> folderFromText(const App& app, std::string_view typed);

}  // namespace skv
