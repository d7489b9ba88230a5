// The Wine prefixes of a user: folders with "dosdevices", "drive_c" and "system.reg" in them, as
// Wine itself and the programs that manage it make them.
#pragma once

#include <string>
#include <vector>

namespace skv {

// Native paths without trailing slash, each prefix once, $WINEPREFIX and ~/.wine first:
//
//   Wine, winetricks   $WINEPREFIX, ~/.wine*, ~/.local/share/wineprefixes/*
//   Lutris             ~/Games/*, and what its files for the games name
//   Bottles            ~/.local/share/bottles/bottles/*
//   PlayOnLinux        ~/.PlayOnLinux/wineprefix/*
//   Phoenicis          ~/.Phoenicis/containers/wineprefix/*
//   CrossOver          ~/.cxoffice/*
//   Steam's Proton     steamapps/compatdata/*/pfx in each of its libraries
//
// The same below ~/.var/app for those that come as a Flatpak, below ~/snap for Steam as a snap.
// Lists a folder or two for each place, and no prefix.
std::vector<std::string> winePrefixes();

}  // namespace skv
