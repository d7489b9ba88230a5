// The mail in which a Package travels. What tells the two kinds of add-ons apart stands in one
// table.
//
//   Subject: /FSSkyvaultPack/AC/b737.zip          of an aircraft
//   Subject: Re: /FSSkyvaultPack/SC/Rome.zip      of a scenery; the marker may stand anywhere
//
// A receiver knows the mail by the marker and the add-on by the name of the attachment.
#pragma once

#include <string>
#include <string_view>

#include "core/app.h"
#include "core/standing_addon.h"

namespace skv {

struct MailKind {
  AddonType type;
  const char* marker;      // with a slash at its end
  const char* word;        // for the user
  const char *one, *view;  // likewise: "an aircraft", and where its mails are installed
  ui::ListView ui::FrmMain::*list;
  ui::Image ui::FrmMain::*image;
  std::string App::*packages;                        // the folder of the Packages
  std::string (*store)(const App&);                  // HangarDir or SceneryLib
  std::string (*addons)(const App&);                 // the folder in which each add-on has one
  std::string (*nameOf)(const std::string& Folder);  // the add-on of a row's "Folder:"
  bool (*install)(App&);                             // takes PendingZIP
  // Gives an add-on that stands the row that it may lack; false when it could not.
  bool (*listStanding)(App&, const std::string& name);
};

const MailKind& mailKind(bool scenery);
// The kind of the view that shows.
const MailKind& mailKindOfView(const App& app);

// The body of a mail: the user's own text, which has "\n" at its line ends, and below it where the
// program can be had. Lines end in CR LF.
std::string mailBody(std::string_view message);

}  // namespace skv
