#include "ui/qt/language.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QStringList>
#include <QTranslator>

#include "ui/qt/text.h"

// Of a static library; outside of any namespace.
static void initTranslations() { Q_INIT_RESOURCE(translations); }

namespace skv::ui::qt {

namespace {

constexpr const char* context = "FSSkyvault";

// The program's texts are few, and each means one thing: all have one context, whatever class they
// are shown by.
class ProgramsTranslator : public QTranslator {
 public:
  using QTranslator::QTranslator;
  QString translate(const char*, const char* source, const char* disambiguation,
                    int n) const override {
    return QTranslator::translate(context, source, disambiguation, n);
  }
};

bool translating = false;

// Captions with values in them. The more special one stands first.
constexpr const char* withValues[] = {
    "Version %1",
    "Alias: %1",
    "There is no drive %1",
    "Through the SMTP Mailhost %1",
    "Aircraft: %1",
    "Scenery: %1",
    "%1 areas of Scenery.cfg are not listed",
    "%1 aircraft stands in %2 and is not listed yet.",
    "At least %1 aircraft stand in %2 and are not listed yet.",
    "%1 aircraft stand in %2 and are not listed yet.",
    "This cannot be stored. The simulator's files have no \"%1\".",
    "File, Import, %1 lists what is there.",
    "There is no aircraft folder in %1",
    "The aircraft folder cannot be read: %1",
    "The list %1 could not be read.",
    "\"%1\" describes no variation.",
    "\"%1\" is not there.",
    "\"%1\" does not lie in \"%2\".",
    "\"%1\" leads out of \"%2\".",
    "There is no folder \"%1\"",
    "\"%1\" could not be read.",
    "%1 could not be read.",
    "%1 could not be read: %2",
    "The scenery library is not there: %1",
    "%1 is not set.",
    "%1 is not there: %2",
    "%1 is not there.",
    "%1 cannot be read: %2",
};

QString translated(const QString& text) {
  return QCoreApplication::translate(context, text.toUtf8().constData());
}

// What stands in the places %1 and %2 of a pattern when it makes the text; nothing when it does
// not.
QStringList valuesIn(const QString& text, const QString& pattern) {
  const qsizetype first = pattern.indexOf(QLatin1String("%1"));
  const qsizetype second = pattern.indexOf(QLatin1String("%2"));
  const QString end = pattern.mid((second < 0 ? first : second) + 2);
  if (!text.startsWith(pattern.left(first)) || !text.endsWith(end)) return {};
  const qsizetype last = text.size() - end.size();
  if (second < 0) return last < first ? QStringList() : QStringList(text.mid(first, last - first));
  const QString between = pattern.mid(first + 2, second - first - 2);
  const qsizetype at = text.indexOf(between, first);
  const qsizetype next = at + between.size();
  if (at < 0 || next > last) return {};
  return {text.mid(first, at - first), text.mid(next, last - next)};
}

QString translatedLine(const QString& text) {
  if (QString whole = translated(text); whole != text) return whole;
  for (const char* pattern : withValues) {
    const QString whole = QString::fromUtf8(pattern);
    const QString said = translated(whole);
    const QStringList values = said == whole ? QStringList() : valuesIn(text, whole);
    // At once, since a value may look like a place for one; it may be one of the program's words.
    if (values.size() == 1) return said.arg(translated(values[0]));
    if (values.size() == 2) return said.arg(translated(values[0]), translated(values[1]));
  }
  return text;
}

}  // namespace

void speakTheDesktopsLanguage(QApplication& application) {
  initTranslations();
  auto* own = new ProgramsTranslator(&application);
  // In the user's order. English is what the texts are.
  QString spoken;
  for (const QString& language : QLocale().uiLanguages()) {
    if (language.startsWith(QLatin1String("en")) || language == QLatin1String("C")) return;
    const QString name = QStringLiteral("fsskyvault_") + language;
    if (!own->load(name, QStringLiteral(":/translations"), QStringLiteral("_-"))) continue;
    spoken = language;
    break;
  }
  if (spoken.isEmpty()) return;
  // Below it what Qt says itself: the file dialog, the menu of a text field.
  auto* qt = new QTranslator(&application);
  if (qt->load(QLocale(spoken), QStringLiteral("qtbase"), QStringLiteral("_"),
               QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(qt);
  translating = QCoreApplication::installTranslator(own);
}

QString tr(const char* text) { return QCoreApplication::translate(context, text); }

QString captioned(const std::string& caption) {
  if (!translating) return shown(caption);
  QStringList lines = shown(caption).remove(QLatin1Char('\r')).split(QLatin1Char('\n'));
  for (QString& line : lines)
    if (!line.isEmpty()) line = translatedLine(line);
  return lines.join(QLatin1Char('\n'));
}

}  // namespace skv::ui::qt
