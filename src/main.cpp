// The composition root: the only place that names what the interfaces are made of.
#include <QApplication>
#include <QScopeGuard>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QThreadPool>
#include <QTimer>

#include "core/app.h"
#include "core/long_operation.h"
#include "core/settings_keys.h"
#include "platform/desktop/desktop_shell.h"
#include "platform/desktop/end_signals.h"
#include "platform/desktop/file_settings_store.h"
#include "platform/desktop/keychain_secrets.h"
#include "platform/desktop/lazy_net.h"
#include "platform/desktop/process_environment.h"
#include "platform/desktop/qt_clipboard.h"
#include "platform/desktop/qt_pictures.h"
#include "platform/desktop/single_instance.h"
#include "platform/desktop/system_clock.h"
#include "platform/desktop/wine_simulator_finder.h"
#include "platform/disk/drive_file_system.h"
#include "platform/disk/drives.h"
#include "platform/disk/hidden_files.h"
#include "platform/x11/x11_screen.h"
#include "platform/zip/libzip_zipit.h"
#include "ui/events.h"
#include "ui/qt/call_to_front.h"
#include "ui/qt/language.h"
#include "ui/qt/no_screen.h"
#include "ui/qt/qt_windowing.h"
#include "ui/qt/theme.h"
#include "ui/startup.h"

// The status of a start that ends because the user has to see to something first. It has been told.
constexpr int cannotRun = 1;

int main(int argc, char** argv) {
  QApplication::setApplicationName(QStringLiteral("fsskyvault"));
  QApplication::setDesktopFileName(QStringLiteral("fsskyvault"));
  qInstallMessageHandler(skv::ui::qt::endWithoutScreen);
  QApplication qtApplication(argc, argv);
  qInstallMessageHandler(nullptr);
  skv::ui::qt::speakTheDesktopsLanguage(qtApplication);
  skv::ui::qt::dress(qtApplication);
  // It looks through the fonts on the side, for which the application has to be there: a start that
  // ends at once waits for that.
  const auto fontsSeen = qScopeGuard([] { QThreadPool::globalInstance()->waitForDone(); });

  const std::string drives = skv::findDrivesFolder();
  skv::DriveFileSystem files(drives);
  skv::QtPictureReader pictures(files);
  skv::ui::qt::QtWindowing windows(files, pictures);
  const auto onlyRun = skv::SingleInstance::acquire();
  if (!onlyRun.ok()) {
    const bool other = onlyRun.outcome().number() == skv::SingleInstance::alreadyRunning;
    if (!other || !skv::SingleInstance::call())
      windows.messageBox({onlyRun.outcome().description(), skv::ui::BoxIcon::exclamation});
    return other ? 0 : cannotRun;
  }
  QSocketNotifier secondStart(onlyRun.value().calls(), QSocketNotifier::Read);
  QObject::connect(&secondStart, &QSocketNotifier::activated, [&onlyRun] {
    if (const auto token = onlyRun.value().answerCall()) skv::ui::qt::callToFront(*token);
  });

  const skv::HiddenFiles hiddenFiles(skv::HiddenFiles::defaultNotes());
  skv::FileSettingsStore settings(skv::FileSettingsStore::defaultFile());
  if (!skv::settingsCanBeRead(windows, settings)) return cannotRun;
  skv::SystemClock clock;
  skv::DesktopShell shell(files);
  const skv::CodePage codePage(static_cast<int>(
      skv::val(settings.read(skv::setting::CodePage.section, skv::setting::CodePage.key, "1252"))));
  skv::LibzipEngine zip(codePage);
  skv::QtClipboard clipboard;
  skv::X11Screen screen([&windows] { windows.yield(); });
  skv::LazyNet net;
  skv::KeychainSecrets secrets;
  skv::WineSimulatorFinder simulators(drives);
  skv::App app({files, settings, clock, shell, zip, pictures, clipboard, screen, net, secrets, net,
                simulators, skv::processEnvironment(files)},
               windows);
  skv::connectEvents(app);

  QTimer closesWhenIdle;
  closesWhenIdle.setInterval(50);
  const auto close = [&] {
    skv::Form_Unload(app);
    windows.quit();
  };
  QObject::connect(&closesWhenIdle, &QTimer::timeout, [&] {
    if (skv::operationRuns(app)) return;
    closesWhenIdle.stop();
    if (skv::frmMain_QueryUnload(app)) close();
  });
  const auto closed = [&] {
    const bool may = skv::frmMain_QueryUnload(app);
    if (may)
      close();
    else if (app.stopRequested)
      closesWhenIdle.start();
    return may;
  };
  app.frmMain.closed = app.frmMain.closeRequested = [&] { closed(); };
  // The end of the desktop's session is held up by what would hold up a closed window.
  QObject::connect(
      &qtApplication, &QGuiApplication::commitDataRequest, &qtApplication,
      [&](QSessionManager& session) {
        if (!app.frmMain.visible || !session.allowsInteraction()) return;
        if (!closed()) session.cancel();
        session.release();
      },
      Qt::DirectConnection);
  // So is a system that ends its programs one by one, as far as it waits.
  skv::EndSignals endSignals;
  QSocketNotifier endWished(endSignals.descriptor(), QSocketNotifier::Read);
  QObject::connect(&endWished, &QSocketNotifier::activated, [&] {
    if (!app.frmMain.visible) skv::EndSignals::obey();
    endWished.setEnabled(false);
    if (closed()) return;  // a second signal ends what its end would take too long for
    endSignals.answer();
    endWished.setEnabled(true);
  });
  windows.prepare(app.frmMain);
  int status = 0;
  windows.run([&] {
    if (!skv::Form_Load(app)) status = cannotRun;
    if (app.ending) windows.quit();
  });
  return status;
}
