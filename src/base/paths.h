// Windows paths as text: plain concatenation, folders with a trailing backslash.
#pragma once

#include <string>
#include <string_view>

namespace skv {

// `path` with a backslash at its end, one added when there is none ("" becomes "\").
std::string withBackslash(std::string_view path);
// `path` without one backslash at its end.
std::string withoutBackslash(std::string_view path);
// The folder's own name: the element before the last backslash, "" when there is no backslash.
// FolderName("C:\\FS2002\\aircraft\\b737\\") is "b737".
std::string FolderName(std::string_view folder);
// The folder in which a file or folder lies, with trailing backslash: "C:\\FS2002\\" for
// "C:\\FS2002\\aircraft\\" and for "C:\\FS2002\\Scenery.cfg". "" for a drive's root.
std::string folderAbove(std::string_view path);
// What follows the last backslash; the whole text when there is none.
std::string fileName(std::string_view path);

// Whether `name` can stand as one element of a path and names something of its own: not empty, no
// separator, and not dots and blanks alone, which lead to the folder itself or the one above.
bool isElementName(std::string_view name);

// What no name of a file or folder can hold, the separators aside.
bool isForbiddenInNames(char c);

}  // namespace skv
