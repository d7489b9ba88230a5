#include "aircraft/empty_lists.h"

#include "core/disk_queries.h"
#include "core/library_scan.h"

namespace skv {

namespace {

// A front-end with little room shows the first line alone.
const std::string settingsLine = "\nFile, Settings (F2) names another folder.";

bool inHangar(const App& app) { return app.listedView == View::hangar; }

// What is wrong with the folder of the list files, "" when it stands.
std::string storeTrouble(App& app) {
  const std::string store = inHangar(app) ? "The Hangar's folder" : "The simulator's folder";
  if (app.ListDir.empty()) return store + " is not set.\nFile, Settings (F2) is the place.";
  const auto found = app.files().attributes(app.ListDir);
  if (found.ok()) return {};
  if (presenceBy(found.outcome()) == Presence::unknown)
    return store + " cannot be read: " + app.ListDir + "\n" + found.outcome().description() +
           "\nF5 tries again." + settingsLine;
  return store + " is not there: " + app.ListDir +
         "\nIf its disk is not mounted, mount it and press F5." + settingsLine;
}

std::string importLine(const ui::MenuItem& entry) {
  return "\nFile, Import, " + entry.caption.get() + " lists what is there.";
}

std::string noAircraft(App& app) {
  const std::string place = inHangar(app) ? "the Hangar" : "the simulator";
  const auto listing = app.files().list(app.ACRoot);
  if (!listing.ok()) {
    if (presenceBy(listing.outcome()) == Presence::unknown)
      return "The aircraft folder cannot be read: " + listing.outcome().description() +
             "\nF5 tries again.";
    return "There is no aircraft folder in " + app.ListDir + settingsLine;
  }
  const AircraftCount count = countAircraft(app);
  if (count.aircraft > 0 || !count.all) {
    const std::string number = std::to_string(count.aircraft);
    return (!count.all
                ? "At least " + number + " aircraft stand in " + place + " and are not listed yet."
            : count.aircraft == 1
                ? number + " aircraft stands in " + place + " and is not listed yet."
                : number + " aircraft stand in " + place + " and are not listed yet.") +
           importLine(app.frmMain.mnuFileImportAC);
  }
  if (inHangar(app))
    return "The Hangar is empty.\n\"To Hangar...\" among the simulator's aircraft copies one "
           "into it.";
  return "There are no aircraft in the simulator.\nFile, Install Package/ZIP, Aircraft unpacks "
         "one.";
}

}  // namespace

void fillEmptyTexts(App& app) {
  auto& form = app.frmMain;
  const std::string trouble = storeTrouble(app);
  const auto fill = [&trouble](ui::ListView& list, const ListSource& source,
                               const std::string& plain) {
    if (!trouble.empty())
      list.emptyText = trouble;
    else if (!source.bytes)
      list.emptyText = "The list " + source.file + " could not be read.\nF5 tries again.";
    else
      list.emptyText = plain;
  };
  const bool lists = trouble.empty() && form.lstAircraft.count() == 0;
  fill(form.lstAircraft, app.aircraftSource,
       lists ? noAircraft(app) : std::string("No aircraft is listed."));
  fill(form.lstPanel, app.panelSource, "No panel is listed." + importLine(form.mnuFileImportPN));
  fill(form.lstSound, app.soundSource, "No sound is listed." + importLine(form.mnuFileImportSN));
}

}  // namespace skv
