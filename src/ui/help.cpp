#include "ui/help.h"

#include <algorithm>

#include "base/text.h"
#include "core/messages.h"
#include "core/program_folder.h"
#include "core/settings_keys.h"

namespace skv {

namespace {

constexpr std::string_view versionPath = "/home/tolmere/SKVVersion.txt";
constexpr std::string_view versionForm = "0.00.0000";  // each "0" is a digit
constexpr double daysBetweenChecks = 7;
constexpr std::size_t longestShown = 200;
constexpr const char* manual = "Skyvault.doc";
constexpr const char* manualForBrowsers = "Skyvault.html";
// Of the library that moves the mails.
constexpr const char* mailEngineSite = "https://curl.se/libcurl/";

// Text of a server, for a box: UTF-8 already, or in the page of the old servers. What answers in
// the server's place may send a whole page.
std::string shownText(const App& app, std::string_view bytes) {
  std::string text = isUtf8(bytes) ? std::string(bytes) : app.codePage.decode(bytes);
  if (text.size() <= longestShown) return text;
  std::string shown;
  for (const std::string& character : characters(text.substr(0, longestShown))) {
    if (!isUtf8(character)) break;  // the cut one
    shown += character;
  }
  return shown;
}

bool isVersion(std::string_view text) {
  return std::ranges::equal(text, versionForm, [](char c, char meant) {
    return meant == '0' ? c >= '0' && c <= '9' : c == meant;
  });
}

bool isWebAddress(std::string_view address) {
  const std::string lower = lowerAscii(address);
  return lower.starts_with("http://") || lower.starts_with("https://");
}

// What another operation has put on the status line meanwhile stays.
class StatusText {
 public:
  StatusText(App& app, std::string text) : app_(app), text_(std::move(text)) {
    app_.frmMain.lblStatus.caption = text_;
  }
  ~StatusText() {
    if (app_.frmMain.lblStatus.caption == text_) app_.frmMain.lblStatus.caption = "";
  }
  StatusText(const StatusText&) = delete;
  StatusText& operator=(const StatusText&) = delete;

 private:
  App& app_;
  const std::string text_;
};

// A second check beside the first would show its boxes twice.
class OneCheck {
 public:
  explicit OneCheck(App& app) : entry_(app.frmMain.mnuHelpDownload) { entry_.enabled = false; }
  ~OneCheck() { entry_.enabled = true; }
  OneCheck(const OneCheck&) = delete;
  OneCheck& operator=(const OneCheck&) = delete;

 private:
  ui::MenuItem& entry_;
};

void offerDownload(App& app, const VersionFile& newest) {
  const ui::Answer answer = app.windows.messageBox(
      {"A newer version of SKV is available:\r\rYour version: " + app.AppVersionText +
           "\rNew version: " + shownText(app, newest.version) +
           "\r\rDo you want to download the new version?",
       ui::BoxIcon::question, ui::BoxButtons::yesNo});
  if (answer != ui::Answer::yes) return;
  // The address was written by others: nothing but the browser is to open it.
  if (newest.download.empty() || isWebAddress(newest.download))
    ShellOpen(app, newest.download);
  else
    app.windows.messageBox(
        {"The server names no web address for the download:\r\n" + shownText(app, newest.download),
         ui::BoxIcon::exclamation});
}

}  // namespace

VersionFile parseVersionFile(std::string_view text) {
  VersionFile file;
  const auto colon = text.find(':');
  constexpr std::string_view blanks = " \t\r\n";
  std::string_view version = text.substr(colon == std::string_view::npos ? 0 : colon + 1);
  version.remove_prefix(std::min(version.find_first_not_of(blanks), version.size()));
  file.version = version.substr(0, versionForm.size());
  if (const auto begin = text.find('>'); begin != std::string_view::npos) {
    std::string_view rest = text.substr(begin + 1);
    // It may stand on a line of its own, and ends with it.
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    file.download = trim(rest.substr(0, rest.find_first_of(">\r\n")));
  }
  return file;
}

void checkForUpdate(App& app, std::string_view server) {
  if (server.empty()) {
    app.windows.messageBox(
        {"This copy of FS Skyvault is kept up to date by the system's package "
         "manager. Its version is " +
             app.AppVersionText + ".",
         ui::BoxIcon::information});
    return;
  }
  if (!app.frmMain.mnuHelpDownload.enabled) return;
  const OneCheck once(app);
  const StatusText status(app, "Version Check: Connecting server...");
  const auto fetched =
      app.platform.web.fetch(std::string(server) + std::string(versionPath), [&app] {
        app.windows.yield();
        return !app.ending;
      });
  if (app.ending || ReportError(app, fetched.outcome())) return;
  const VersionFile newest = parseVersionFile(fetched.value());
  if (!isVersion(newest.version)) {
    app.windows.messageBox(
        {"The server has answered without a version, so it cannot be told whether "
         "yours is the newest. Please try again later.",
         ui::BoxIcon::exclamation});
    return;
  }
  writeSetting(app, setting::LastVersionCheck, decimal(app.platform.clock.now())).skipped();
  // Versions have one width, so that text sorts as they do.
  if (newest.version > app.AppVersionText)
    offerDownload(app, newest);
  else
    app.windows.messageBox({"Your version is up to date!", ui::BoxIcon::information});
}

std::string_view updateServer() { return SKYVAULT_UPDATE_URL; }

bool updateCheckIsDue(const App& app, std::string_view server) {
  return !server.empty() &&
         val(readSetting(app, setting::LastVersionCheck, "0")) + daysBetweenChecks <
             app.platform.clock.now();
}

void mnuHelpDownload_Click(App& app) { checkForUpdate(app, updateServer()); }

// A word processor has it with pages and an index. Without one a browser has it, too: a desktop
// would hand the document to whatever it has, and the browser offers to download it.
void mnuHelpManual_Click(App& app) {
  const bool wordProcessor = app.platform.shell.hasProgramFor("application/msword") ||
                             app.platform.shell.hasProgramFor("application/rtf");
  ShellOpen(app, shippedWith(app, wordProcessor ? manual : manualForBrowsers));
}

void mnuHelpAbout_Click(App& app) {
  auto& form = app.frmSplash;
  form.btnClose.visible = true;
  form.lblVersion.caption = "Version " + app.AppVersionText;
  app.windows.showModal(form, &app.frmMain);
  app.windows.unload(form);
  form.btnClose.visible = false;
}

void frmSplash_btnClose_Click(App& app) { app.windows.hide(app.frmSplash); }

void Label5_Click(App& app) { ShellOpen(app, mailEngineSite); }

}  // namespace skv
