// The composition root: the only place that names what the interfaces are made of.
#include <QApplication>

#include "aircraft/aircraft_cfg.h"
#include "core/app.h"
#include "platform/desktop/desktop_shell.h"
#include "platform/desktop/file_settings_store.h"
#include "platform/desktop/process_environment.h"
#include "platform/desktop/single_instance.h"
#include "platform/desktop/system_clock.h"
#include "platform/disk/drive_file_system.h"
#include "platform/disk/drives.h"
#include "platform/zip/libzip_zipit.h"
#include "ui/events.h"
#include "ui/qt/qt_windowing.h"
#include "ui/qt/theme.h"
#include "ui/startup.h"

int main(int argc, char** argv) {
  QApplication::setApplicationName(QStringLiteral("fsskyvault"));
  QApplication::setDesktopFileName(QStringLiteral("fsskyvault"));
  QApplication qtApplication(argc, argv);
  skv::ui::qt::dress(qtApplication);

  skv::DriveFileSystem files(skv::findDrivesFolder());
  skv::ui::qt::QtWindowing windows(files);
  const auto onlyRun = skv::SingleInstance::acquire();
  if (!onlyRun.ok()) {
    windows.messageBox({onlyRun.outcome().description(), skv::ui::BoxIcon::exclamation});
    return 0;
  }

  skv::FileSettingsStore settings(skv::FileSettingsStore::defaultFile());
  skv::SystemClock clock;
  skv::DesktopShell shell(files);
  const skv::CodePage codePage(
      static_cast<int>(skv::val(settings.read("General", "CodePage", "1252"))));
  skv::LibzipEngine zip(codePage);
  skv::App app({files, settings, clock, shell, zip, skv::processEnvironment(files)}, windows);
  skv::connectEvents(app);
  app.frmMain.closed = [&] {
    if (!skv::mayLeaveInfo(app)) return;
    skv::Form_Unload(app);
    windows.quit();
  };
  windows.prepare(app.frmMain);
  windows.run([&app] { skv::Form_Load(app); });
  return 0;
}
