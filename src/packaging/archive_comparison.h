// Whether an archive brings something that its add-on, which stands, does not have.
#pragma once

#include <string>
#include <vector>

#include "core/app.h"

namespace skv {

// The entries of an archive that stand nowhere in the folders under their own name, whatever folder
// that is in, with the length and the CRC-32 of the entry. What is hidden is not installed either
// and not looked for. Empty as well when `package`, "" for none, is the same archive byte for byte,
// as a thinned out add-on has no more.
//
// An add-on whose files were changed since lacks entries, and so does one whose archive holds
// archives, since nothing tells what became of them. Fails when the disk or the archive does not
// tell. Reads each file that has an entry's name once, and yields.
Result<std::vector<std::string>> lackedEntries(App& app, const std::string& archive,
                                               const std::vector<std::string>& folders,
                                               const std::string& package);

}  // namespace skv
