#include "ui/qt/language.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>
#include <QTranslator>

namespace skv::test {
namespace {

TEST(LanguageTest, CaptionsFollowTheDesktopAndTextsOfTheUserDoNot) {
  const QLocale before;
  const auto german = [](const char* caption) { return ui::qt::captioned(caption).toStdString(); };
  EXPECT_EQ(german("&File"), "&File");
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Austria));
  ui::qt::speakTheDesktopsLanguage(*qApp);
  EXPECT_EQ(german("&File"), "&Datei");
  EXPECT_EQ(QObject::tr("No picture").toStdString(), "Kein Bild");
  EXPECT_EQ(german("There is no drive Q:"), "Es gibt kein Laufwerk Q:");
  EXPECT_EQ(german("Alias: FS98\\panel %1"), "Alias: FS98\\panel %1");
  EXPECT_EQ(german("Title:\n\nMy own words"), "Titel:\n\nMy own words");
  for (QTranslator* translator : qApp->findChildren<QTranslator*>()) delete translator;
  QLocale::setDefault(before);
}

}  // namespace
}  // namespace skv::test
