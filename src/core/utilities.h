// Small free functions that every other room calls.
#pragma once

#include <string>
#include <string_view>

#include "core/app.h"

namespace skv {

// Whether anything stands at `path`, hidden entries included. A drive may be given as "c" or "c:".
// Two characters that sort between "a:" and "z:" are read as a folder. An empty path is false.
bool PathExists(const FileSystem& files, std::string_view path);
// Whether a folder stands there, or a link to one.
bool folderExists(const FileSystem& files, std::string_view path);

// Free bytes of the disk behind a path: its first three characters, or server and share of a
// network path. 0 when it cannot be told.
double GetDiskFree(const FileSystem& files, std::string_view path);

// Makes every folder of the path that is missing. Failures are passed over: whoever needs to know
// tests with PathExists.
void MakePath(FileSystem& files, std::string_view path);

// The checkpoint of an operation: shows a pending error in the "Error #" box, clears it and answers
// true, which tells the caller to leave.
bool ReportError(App& app);

// Opens a document or an address with the desktop's program for it; a failure is told in a box.
void ShellOpen(App& app, const std::string& target);

}  // namespace skv
