// The Wine prefixes of a user: folders with "dosdevices", "drive_c" and "system.reg" in them, as
// Wine itself and the programs that manage it make them.
#pragma once

#include <string>
#include <vector>

namespace skv {

// Native paths without trailing slash, each prefix once, $WINEPREFIX and ~/.wine first:
//
//   Wine, winetricks   $WINEPREFIX, ~/.wine*, ~/.local/share/wineprefixes/*
//   Lutris             ~/Games/*, and what its files for games, runners and the system name
//   Heroic             ~/Games/Heroic/Prefixes/*, .../default/*, and what its files name
//   umu                ~/Games/umu/*
//   Bottles            ~/.local/share/bottles/bottles/*, or the folder that its data.yml names
//   PlayOnLinux        ~/.PlayOnLinux/wineprefix/*
//   Phoenicis          ~/.Phoenicis/containers/wineprefix/*
//   CrossOver          ~/.cxoffice/*
//   Steam's Proton     steamapps/compatdata/*/pfx in each of its libraries
//
// The same below ~/.var/app for those that come as a Flatpak, Wine among them, below ~/snap for
// Steam as a snap.
// Lists a folder or two for each place, and no prefix.
std::vector<std::string> winePrefixes();

}  // namespace skv
