// Small questions to the disk, and the folders of a path.
//
// "Cannot tell" is never "is not there": a disk that is away, a folder that nobody may look into.
// Who overwrites, saves over or deletes something asks presenceOf() and stops at `unknown`; who
// only shows something may ask PathExists().
#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace skv {

enum class Presence { there, absent, unknown };

// What the failure of a look at a path says of it: only a clear "not found" is absent.
Presence presenceBy(const Outcome& failedLook);
Presence presenceOf(const FileSystem& files, std::string_view path);

// Whether anything stands at `path`, hidden entries included. A drive may be given as "c" or "c:".
// Two characters that sort between "a:" and "z:" are read as a folder. An empty path is false.
bool PathExists(const FileSystem& files, std::string_view path);
// Whether a folder stands there, or a link to one.
bool folderExists(const FileSystem& files, std::string_view path);

// Whether the folder is a link for certain, or why that cannot be told: isLink() says yes to both.
Result<bool> isLinkForCertain(const FileSystem& files, const std::string& folder);

// Free bytes of the disk on which the path lies, or would lie: that of its nearest existing folder,
// since a drive like Z: spans several disks.
Result<double> GetDiskFree(const FileSystem& files, std::string_view path);

// Whether a folder that is missing may be made without being asked for: not where a disk that is
// away would show it. Its mount point is then an empty folder, or gone with the drive.
bool diskIsThere(const FileSystem& files, std::string_view path);

// A path in `folder`, which ends in a backslash, that nothing has: "b737.zip", else "b737 (2).zip",
// and so on. Some thousand are tried; the last of them is answered even if it stands, so that
// whoever makes it has to fail then.
std::string freePath(const FileSystem& files, const std::string& folder, const std::string& name);

// Makes every folder of the path that is missing. Failures are passed over: whoever needs to know
// tests with PathExists.
void MakePath(FileSystem& files, std::string_view path);

}  // namespace skv
