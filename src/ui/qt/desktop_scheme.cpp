#include "ui/qt/desktop_scheme.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include "ui/qt/session_bus.h"
#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {

// A desktop that has not answered by then is starting up itself.
constexpr int answerMilliseconds = 60;
// org.freedesktop.appearance: color-scheme 1 is dark, contrast 1 is high.
constexpr unsigned darkScheme = 1;
constexpr unsigned highContrast = 1;

// The settings portal, which GNOME, KDE and others have; Qt asks it from version 6.5 on only, and
// never for the contrast. An invalid value when there is none.
QVariant portalSays(const QString& space, const QString& key) {
  if (!isSessionBusKnown()) return {};
  QDBusMessage question = QDBusMessage::createMethodCall(
      QStringLiteral("org.freedesktop.portal.Desktop"),
      QStringLiteral("/org/freedesktop/portal/desktop"),
      QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
  question << space << key;
  const QDBusMessage answer =
      QDBusConnection::sessionBus().call(question, QDBus::Block, answerMilliseconds);
  if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty()) return {};
  // The value comes wrapped, by some portals twice.
  QVariant value = answer.arguments().constFirst();
  while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
  return value;
}

bool namesHighContrast(const QString& theme) {
  return theme.startsWith(QStringLiteral("HighContrast"), Qt::CaseInsensitive);
}

}  // namespace

DesktopScheme desktopScheme() {
  const QPalette palette = QApplication::palette();
  const QString theme = qEnvironmentVariable("GTK_THEME");
  DesktopScheme scheme{isDark(palette), namesHighContrast(theme)};
  const QString appearance = QStringLiteral("org.freedesktop.appearance");
  const QVariant contrast = portalSays(appearance, QStringLiteral("contrast"));
  if (contrast.toUInt() == highContrast) scheme.highContrast = true;
  const QVariant colours = portalSays(appearance, QStringLiteral("color-scheme"));
  if (colours.toUInt() == darkScheme) scheme.dark = true;
  // Desktops older than the key have only the theme's name.
  if (!contrast.isValid() && colours.isValid()) {
    const QString name =
        portalSays(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("gtk-theme"))
            .toString();
    if (namesHighContrast(name)) scheme.highContrast = true;
  }
  if (namesHighContrast(theme) && theme.contains(QStringLiteral("Inverse"), Qt::CaseInsensitive))
    scheme.dark = true;
  if (isHighContrast(palette)) scheme.highContrast = true;
  return scheme;
}

}  // namespace skv::ui::qt
