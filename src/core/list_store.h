// The program's own list files: lines of fields, the record of a list on screen.
//
// A list is written only over the very file content that it was made of, which its ListSource
// holds: what was not read, or what another program has changed since, is not written over.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/app.h"

namespace skv {

inline constexpr char fieldSeparator = '\x01';

// The text without what would break the format (code 1, line ends): that becomes a blank.
std::string inOneField(std::string text);
// The same for what stands in a line from `start` on. False when there was something to replace.
bool keepInOneField(std::string& line, std::size_t start);

// The lines of a file, which may end in CR LF or LF, each split into its fields; empty lines are
// none. Views of `bytes`.
std::vector<std::vector<std::string_view>> listLines(std::string_view bytes);

// The content of a list file, "" for one that is clearly not there. In a folder that is not there
// itself, nothing is clear: its disk may be away.
Result<std::string> readListFile(const FileSystem& files, const std::string& file);

// The same for a list that is filled from it now: `source` says so from then on.
Result<std::string> loadListFile(App& app, ListSource& source, const std::string& file);

// Replaces the file in one step, when its content still is what `source` holds; `source` holds the
// new one then.
Outcome saveListFile(App& app, ListSource& source, const std::string& file, std::string bytes);

// "The list ... could not be saved.", and why.
void tellListFailure(App& app, const std::string& what, const std::string& file,
                     const Outcome& failure);

}  // namespace skv
