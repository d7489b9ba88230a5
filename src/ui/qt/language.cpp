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

// Captions that end in a value.
constexpr const char* withValue[] = {"Version %1",           "Alias: %1",
                                     "There is no drive %1", "Through the SMTP Mailhost %1",
                                     "Aircraft: %1",         "Scenery: %1"};

QString translated(const QString& text) {
  return QCoreApplication::translate(context, text.toUtf8().constData());
}

QString translatedLine(const QString& text) {
  if (QString whole = translated(text); whole != text) return whole;
  for (const char* pattern : withValue) {
    const QString whole = QString::fromUtf8(pattern);
    const QString words = whole.chopped(2);
    if (text.startsWith(words)) return translated(whole).arg(text.mid(words.size()));
  }
  return text;
}

}  // namespace

void speakTheDesktopsLanguage(QApplication& application) {
  initTranslations();
  auto* own = new ProgramsTranslator(&application);
  if (!own->load(QLocale(), QStringLiteral("fsskyvault"), QStringLiteral("_"),
                 QStringLiteral(":/translations")))
    return;
  // Below it what Qt says itself: the file dialog, the menu of a text field.
  auto* qt = new QTranslator(&application);
  if (qt->load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
               QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
    QCoreApplication::installTranslator(qt);
  translating = QCoreApplication::installTranslator(own);
}

QString captioned(const std::string& caption) {
  if (!translating) return shown(caption);
  QStringList lines = shown(caption).split(QLatin1Char('\n'));
  for (QString& line : lines)
    if (!line.isEmpty()) line = translatedLine(line);
  return lines.join(QLatin1Char('\n'));
}

}  // namespace skv::ui::qt
