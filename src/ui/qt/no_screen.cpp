#include "ui/qt/no_screen.h"

#include <QString>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace skv::ui::qt {

namespace {

QString whatIsMissing() {
  for (const char* variable : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY", "DISPLAY"})
    if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
      return QStringLiteral("the one that %1 names (%2) cannot be reached")
          .arg(QLatin1String(variable), value);
  return QStringLiteral("neither DISPLAY nor WAYLAND_DISPLAY names one");
}

}  // namespace

void endWithoutScreen(QtMsgType type, const QMessageLogContext& context, const QString& message) {
  if (type == QtFatalMsg) {
    std::fprintf(stderr, "fsskyvault needs a screen, and %s.\n", qPrintable(whatIsMissing()));
    std::fflush(stderr);
    std::_Exit(noScreenStatus);
  }
  // What Qt tries on its way to a screen is of no interest when it finds one.
  if (context.category == nullptr || std::strncmp(context.category, "qt.qpa", 6) != 0)
    std::fprintf(stderr, "%s\n", qPrintable(message));
}

}  // namespace skv::ui::qt
