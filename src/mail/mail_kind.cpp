#include "mail/mail_kind.h"

#include "base/paths.h"
#include "core/stores.h"
#include "packaging/aircraft_installer.h"
#include "packaging/scenery_installer.h"
#include "scenery/scenery_row.h"

namespace skv {

namespace {

constexpr const char* lineEnd = "\r\n";
constexpr const char* downloadPage = SKYVAULT_DOWNLOAD_URL;

constexpr MailKind aircraft{
    AddonType::aircraft,
    "/FSSkyvaultPack/AC/",
    "Aircraft",
    "an aircraft",
    "View, Hangar",
    &ui::FrmMain::lstAircraft,
    &ui::FrmMain::imgAircraft,
    &App::PacksDir,
    [](const App& app) { return app.HangarDir; },
    [](const App& app) { return aircraftRootOf(app.HangarDir); },
    [](const std::string& folder) { return FolderName(withBackslash(folder)); },
    mnuFileInstallAC_Click,
    listInstalledAC};

constexpr MailKind scenery{AddonType::scenery,
                           "/FSSkyvaultPack/SC/",
                           "Scenery",
                           "a scenery",
                           "View, Scenery Manager",
                           &ui::FrmMain::lstInactScenery,
                           &ui::FrmMain::imgScenery,
                           &App::SceneryPacksPath,
                           [](const App& app) { return app.SceneryLib; },
                           [](const App& app) { return sceneryRootOf(app.SceneryLib); },
                           leafOf,
                           mnuFileInstallSC_Click,
                           listInstalledSC};

}  // namespace

const MailKind& mailKind(bool isScenery) { return isScenery ? scenery : aircraft; }

const MailKind& mailKindOfView(const App& app) {
  return mailKind(app.frmMain.frameScenery.visible);
}

std::string mailBody(std::string_view message) {
  std::string body;
  for (const char c : message)
    if (c == '\n')
      body += lineEnd;
    else
      body += c;
  body += lineEnd;
  for (const std::string& line :
       {std::string(), std::string(40, '='),
        std::string("This Flight Simulator Addon has been packaged"),
        std::string("and sent to you from within FS Skyvault."),
        std::string("If you do not have this great software yet,"),
        std::string("you  may download it here:"), std::string(downloadPage)})
    body += line + lineEnd;
  return body;
}

}  // namespace skv
