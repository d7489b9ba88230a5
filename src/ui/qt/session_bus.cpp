#include "ui/qt/session_bus.h"

#include <QDBusConnection>
#include <QFileInfo>
#include <QStandardPaths>

namespace skv::ui::qt {

namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* noBus = "disabled:";  // the address that libdbus takes for none

// How libdbus finds a bus that nobody tells of.
bool canBeLaunched() {
  const QString command = QStringLiteral("dbus-launch");
  return QFileInfo::exists(QStringLiteral("/usr/bin/") + command) ||
         !QStandardPaths::findExecutable(command).isEmpty();
}

}  // namespace

bool isSessionBusKnown() {
  if (const QByteArray address = qgetenv(addressVariable); !address.isEmpty())
    return address != noBus;
  const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return !runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"));
}

void spareSearchForSessionBus() {
  if (!qEnvironmentVariableIsEmpty(addressVariable) || isSessionBusKnown() || canBeLaunched())
    return;
  // For the one look that Qt takes: what the program starts finds its environment as it was.
  qputenv(addressVariable, noBus);
  QDBusConnection::sessionBus();
  qunsetenv(addressVariable);
}

}  // namespace skv::ui::qt
