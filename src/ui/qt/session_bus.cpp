#include "ui/qt/session_bus.h"

#include <QDBusConnection>
#include <QFileInfo>
#include <QStandardPaths>

namespace skv::ui::qt {

namespace {

constexpr const char* addressVariable = "DBUS_SESSION_BUS_ADDRESS";

// The places where libdbus looks.
bool canBeFound() {
  const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  return isSessionBusKnown() ||
         (!runtime.isEmpty() && QFileInfo::exists(runtime + QStringLiteral("/bus"))) ||
         !QStandardPaths::findExecutable(QStringLiteral("dbus-launch")).isEmpty();
}

}  // namespace

bool isSessionBusKnown() { return !qEnvironmentVariableIsEmpty(addressVariable); }

void lookForSessionBus() {
  if (canBeFound()) return;
  // For this one look: what the program starts finds its environment as it was.
  qputenv(addressVariable, "disabled:");
  QDBusConnection::sessionBus();
  qunsetenv(addressVariable);
}

}  // namespace skv::ui::qt
