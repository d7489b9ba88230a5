#include "ui/qt/desktop_scheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QPalette>
#include <QTimer>

#include "ui/qt/session_bus.h"
#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {

// A desktop that has not answered by then is starting up itself.
constexpr int patienceMilliseconds = 60;
// org.freedesktop.appearance: color-scheme 1 is dark, contrast 1 is high.
constexpr unsigned darkScheme = 1;
constexpr unsigned highContrast = 1;

constexpr QLatin1String appearance("org.freedesktop.appearance");
constexpr QLatin1String gnome("org.gnome.desktop.interface");
constexpr QLatin1String portal("org.freedesktop.portal.Desktop");
constexpr QLatin1String portalPath("/org/freedesktop/portal/desktop");
constexpr QLatin1String settings("org.freedesktop.portal.Settings");

// The settings portal, which GNOME, KDE and others have; Qt asks it from version 6.5 on only, and
// never for the contrast. An invalid value when there is none.
QVariant portalSays(const QString& space, const QString& key) {
  if (!isSessionBusKnown()) return {};
  QDBusMessage question =
      QDBusMessage::createMethodCall(portal, portalPath, settings, QStringLiteral("Read"));
  question << space << key;
  const QDBusMessage answer =
      QDBusConnection::sessionBus().call(question, QDBus::Block, patienceMilliseconds);
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

DesktopScheme desktopScheme(const QPalette& palette) {
  const QString theme = qEnvironmentVariable("GTK_THEME");
  DesktopScheme scheme{isDark(palette), namesHighContrast(theme)};
  const QVariant contrast = portalSays(appearance, QStringLiteral("contrast"));
  if (contrast.toUInt() == highContrast) scheme.highContrast = true;
  const QVariant colours = portalSays(appearance, QStringLiteral("color-scheme"));
  scheme.told = colours.toUInt();
  if (scheme.told == darkScheme) scheme.dark = true;
  // Desktops older than the key have only the theme's name.
  if (!contrast.isValid() && colours.isValid()) {
    const QString name = portalSays(gnome, QStringLiteral("gtk-theme")).toString();
    if (namesHighContrast(name)) scheme.highContrast = true;
  }
  if (namesHighContrast(theme) && theme.contains(QStringLiteral("Inverse"), Qt::CaseInsensitive))
    scheme.dark = true;
  if (isHighContrast(palette)) scheme.highContrast = true;
  return scheme;
}

DesktopScheme schemeAfter(const DesktopScheme& before, const QPalette& desktop) {
  DesktopScheme now = desktopScheme(desktop);
  now.dark = now.told == before.told ? before.dark : now.told == darkScheme;
  return now;
}

void startAtSchemeChanges(QTimer& timer) {
  if (!isSessionBusKnown()) return;
  for (const QLatin1String space : {appearance, gnome})
    QDBusConnection::sessionBus().connect(portal, portalPath, settings,
                                          QStringLiteral("SettingChanged"), {space}, QString(),
                                          &timer, SLOT(start()));
}

}  // namespace skv::ui::qt
