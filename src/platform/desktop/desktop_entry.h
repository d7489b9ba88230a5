// Entries of the desktop's menu, as "/usr/share/applications/org.gnome.gedit.desktop":
//
//   [Desktop Entry]
//   Name=Text Editor
//   Exec=gedit %U
#pragma once

#include <istream>
#include <string>
#include <vector>

namespace skv {

struct DesktopEntry {
  std::string file = {};  // native path
  std::string Name = {}, Icon = {}, Exec = {};
  bool Terminal = false;
};

// The entry of that name ("gedit.desktop") in the user's or the machine's menu, the user's first.
// Without an Exec when there is none.
DesktopEntry findDesktopEntry(const std::string& name);
DesktopEntry readDesktopEntry(std::istream& text, std::string file);

// The words of the command line that opens a document with the entry's program. The document stands
// in the place of its code (%f, %F, %u, %U), or at the end when there is none. Empty when the Exec
// value cannot be read.
std::vector<std::string> commandFor(const DesktopEntry& entry, const std::string& document);

}  // namespace skv
