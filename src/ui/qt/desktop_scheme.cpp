#include "ui/qt/desktop_scheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {

// A desktop that has not answered by then is starting up itself.
constexpr int patienceMilliseconds = 60;
// org.freedesktop.appearance color-scheme: 0 no preference, 1 dark, 2 light.
constexpr unsigned darkScheme = 1;

// The settings portal, which GNOME, KDE and others have; Qt asks it from version 6.5 on only.
bool portalSaysDark() {
  if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")) return false;
  QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"),
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
  question << QStringLiteral("org.freedesktop.appearance") << QStringLiteral("color-scheme");
  const QDBusMessage answer =
      QDBusConnection::sessionBus().call(question, QDBus::Block, patienceMilliseconds);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return false;
  // The value comes wrapped, by some portals twice.
  QVariant value = answer.arguments().constFirst();
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value.toUInt() == darkScheme;
}

}  // namespace

bool desktopPrefersDark() { return isDark(QApplication::palette()) || portalSaysDark(); }

}  // namespace skv::ui::qt
