// The commands of the Help menu: version check, manual, about box.
#pragma once

#include <string>
#include <string_view>

#include "core/app.h"

namespace skv {

// What a version file says of the newest version:
//
//   Version:1.03.0001 >http://www.example.org/skv.zip>
struct VersionFile {
  // The 9 characters after the first colon and the blanks behind it: a version in the form of
  // AppVersionText, or whatever a server sends that has none.
  std::string version;
  std::string download;  // from the first ">" to the next or the end; "" for none
};
VersionFile parseVersionFile(std::string_view text);

// Asks a server for the newest version, and offers its download when it is newer than this one.
// `server`: scheme and host, as in "https://www.example.org"; "" for a program that something else
// keeps up to date, of which a box then tells.
void checkForUpdate(App& app, std::string_view server);

// The server that this program was built for, "" for none.
std::string_view updateServer();

// Whether the last check that succeeded is more than a week ago, and there is a server to ask.
bool updateCheckIsDue(const App& app, std::string_view server = updateServer());

void mnuHelpDownload_Click(App& app);
void mnuHelpManual_Click(App& app);
void mnuHelpAbout_Click(App& app);
// frmSplash, as the about box.
void frmSplash_btnClose_Click(App& app);
void Label5_Click(App& app);

}  // namespace skv
