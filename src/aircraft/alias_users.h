// The aliases of aircraft, and which aircraft use the panel or the sound of another one.
#pragma once

#include <string>
#include <vector>

#include "aircraft/addon_kind.h"

namespace skv {

// One configuration file that is a pointer: see alias_tabs.h.
struct Alias {
  std::string folder;  // in which the file lies
  std::string target;  // the value, from the aircraft root, without a backslash at its end
  const AddonKind* kind;
};

// Those in an aircraft's folder and its folders of panels and sounds. `folder` ends in a backslash.
// What cannot be read has none.
std::vector<Alias> aliasesOf(App& app, const std::string& folder);

// A paragraph that names whose aliases lead into `folder`, an aircraft's or one of its parts, from
// outside it: `who`, the names, or that it cannot be told; "" for nobody. All folders of the
// aircraft root count, listed or not. One pass over them; yields.
std::string aliasUsersNote(App& app, const std::string& folder, const std::string& who);

}  // namespace skv
