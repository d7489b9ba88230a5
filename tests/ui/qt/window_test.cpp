// The main window: buttons, menus, fields, and what it does while it is disabled or closed.
#include <QAction>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QSplitter>
#include <QTabBar>
#include <QTranslator>

#include "core/long_operation.h"
#include "ui/qt/language.h"
#include "ui/qt/place_pictures.h"
#include "ui/qt/window_fixture.h"

namespace skv::test {

TEST_F(WindowTest, CtrlAndALetterBelongToTheTextThatIsTyped) {
  showMain();
  fillAircraft(2);
  auto& form = app.frmMain;
  Lines heard;
  form.btnSaveACInfo.enabled = true;
  form.btnSaveACInfo.click = [&] { heard.emplace_back("save"); };
  for (ui::MenuItem* item :
       {&form.mnuFileImportAC, &form.mnuFileImportPN, &form.mnuFileImportSN, &form.mnuFileQuit,
        &form.mnuViewFSAircraft, &form.mnuViewHangar, &form.mnuPicClip})
    item->click = [&heard, item] { heard.push_back(item->shortcut); };
  for (ui::TextBox* box : {&form.txtACTitle, &form.txtACDescription}) box->enabled = true;
  settle();
  const auto press = [&](QWidget* widget, const char* keys = "ANSFHVXCZQ") {
    heard.clear();
    for (; *keys; ++keys) QTest::keyClick(widget, static_cast<Qt::Key>(*keys), Qt::ControlModifier);
    settle();
    return heard;
  };
  auto* title = find<QLineEdit>("txtACTitle");
  title->setFocus();
  QTest::keyClicks(title, "Boeing");
  EXPECT_EQ(press(title), (Lines{"save", "Ctrl+Q"}));
  EXPECT_EQ(title->text(), "Boeing") << "cut, copied, and the cut taken back";
  form.btnSaveACInfo.enabled = false;
  EXPECT_EQ(press(title, "S"), Lines{});
  form.btnSaveACInfo.enabled = true;
  click("tabACInfo", 3);
  auto* description = find<QPlainTextEdit>("txtACDescription");
  description->setFocus();
  EXPECT_EQ(press(description), (Lines{"save", "Ctrl+Q"}));

  auto* list = find<QTreeView>("lstAircraft");
  list->setFocus();
  EXPECT_EQ(press(list, "ANSFHQ"),
            (Lines{"Ctrl+A", "Ctrl+N", "Ctrl+S", "Ctrl+F", "Ctrl+H", "Ctrl+Q"}));
  doubleClickName(*list, 2);
  auto* editor = list->findChild<QLineEdit*>();
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(press(editor), (Lines{"Ctrl+Q"}));
}

// Most of the pages are made after the window has been seen.
TEST_F(WindowTest, TheKeyboardGoesThroughTheDetailsInTheirOrder) {
  showMain();
  const QList<QString> places = {"txtACTitle",        "txtTexture",       "txtATCID",
                                 "txtUIManufacturer", "txtACDescription", "btnSaveACInfo",
                                 "lstPanel"};
  QList<QString> reached;
  const QWidget* const first = find<QWidget>("txtACTitle");
  const QWidget* widget = first;
  do {
    if (places.contains(widget->objectName())) reached << widget->objectName();
    widget = widget->nextInFocusChain();
  } while (widget != first);
  EXPECT_EQ(reached, places);
}

TEST_F(WindowTest, AWindowThatIsShownAgainComesToTheFront) {
  showMain();
  mainWindow()->showMinimized();
  QWidget other;
  other.show();
  other.activateWindow();
  settle();
  windows.show(app.frmMain, nullptr);
  settle();
  EXPECT_TRUE(mainWindow()->isActiveWindow() && !mainWindow()->isMinimized());
}

TEST_F(WindowTest, ALongOperationIgnoresTheUserAndHearsAWishToClose) {
  showMain();
  fillAircraft(3);
  QWidget* main = mainWindow();
  auto* hangar = find<QPushButton>("btnHangar");
  auto* list = find<QTreeView>("lstAircraft");
  list->setFocus();
  int clicks = 0, wishes = 0;
  app.frmMain.btnHangar.click = [&] { ++clicks; };
  app.frmMain.closeRequested = [&] { ++wishes; };
  {
    LongOperation busy(app);
    settle();
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_TRUE(hangar->isEnabled());  // one that is soon over does not flicker
    click("btnHangar");
    clickRow(*list, 3);
    QTest::keyClick(main, Qt::Key_H, Qt::ControlModifier);
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(app.frmMain.lstAircraft.selected(), 1);
    EXPECT_TRUE(app.frmMain.mnuViewFSAircraft.checked);
    const QDeadlineTimer end(5000);
    windows.yieldUntil([&] { return !hangar->isEnabled() || end.hasExpired(); });
    EXPECT_FALSE(hangar->isEnabled() || list->isEnabled());
    main->close();
    QTest::keyClick(main, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(wishes, 2);
    EXPECT_TRUE(main->isVisible() && !app.ending);
    app.frmMain.lblStatus.caption = "Moving";
    windows.yieldUntil(
        [&] { return !find<QWidget>("lblStatus")->accessibleDescription().isEmpty(); });
  }
  settle();
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(main->focusWidget(), list);
  click("btnHangar");
  EXPECT_EQ(clicks, 1);
}

TEST_F(WindowTest, RightToLeftTheHalvesAndWhatTheyHoldChangeSides) {
  QApplication::setLayoutDirection(Qt::RightToLeft);
  const auto back = qScopeGuard([] { QApplication::setLayoutDirection(Qt::LeftToRight); });
  showMain();
  fillAircraft(1);
  auto* list = find<QTreeView>("lstAircraft");
  const auto* picture = find<QWidget>("imgAircraft");
  const auto leftOf = [](const QWidget& widget) {
    return widget.mapTo(mainWindow(), QPoint()).x();
  };
  EXPECT_GT(leftOf(*list), leftOf(*picture));
  // The name stands at the right of its column.
  const QRect name = list->visualRect(list->model()->index(0, 0));
  const QImage drawn = list->viewport()->grab(name).toImage();
  const auto ink = [&drawn](int from, int to) {
    int count = 0;
    for (int x = from; x < to; ++x)
      for (int y = 2; y + 2 < drawn.height(); ++y)
        if (drawn.pixel(x, y) != drawn.pixel(drawn.width() / 2, 2)) ++count;
    return count;
  };
  EXPECT_EQ(ink(2, drawn.width() / 3), 0);
  EXPECT_GT(ink(drawn.width() / 2, drawn.width() - 2), 0);
  // The border goes where its key points.
  auto* border = find<QSplitter>("divAircraft")->handle(1);
  const int x = border->x();
  QTest::keyClick(border, Qt::Key_Left);
  EXPECT_EQ(border->x(), x - 16);
  QTest::keyClick(border, Qt::Key_Right);
  EXPECT_EQ(border->x(), x);
}

TEST(LanguageTest, CaptionsFollowTheDesktopAndTextsOfTheUserDoNot) {
  const QLocale before;
  const auto german = [](const char* caption) { return ui::qt::captioned(caption).toStdString(); };
  EXPECT_EQ(german("&File"), "&File");
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Austria));
  ui::qt::speakTheDesktopsLanguage(*qApp);
  EXPECT_EQ(german("&File"), "&Datei");
  EXPECT_EQ(QObject::tr("No picture").toStdString(), "Kein Bild");
  EXPECT_EQ(german("There is no drive Q:"), "Es gibt kein Laufwerk Q:");
  EXPECT_EQ(german("\"C:\\a\" leads out of \"C:\\b\"."),
            "\"C:\\a\" f\u00fchrt aus \"C:\\b\" hinaus.");
  EXPECT_EQ(german("Alias: FS98\\panel %1"), "Alias: FS98\\panel %1");
  EXPECT_EQ(german("2 aircraft stand in the Hangar and are not listed yet."),
            "2 Flugzeuge stehen im Hangar und sind noch nicht aufgenommen.");
  EXPECT_EQ(german("%1 is not there: %2"), "%1 ist nicht da: %2");
  EXPECT_EQ(ui::qt::aircraftPlaces().words(7).toStdString(), "als Package, im Hangar");
  EXPECT_EQ(german("Title:\n\nMy own words"), "Titel:\n\nMy own words");
  for (QTranslator* translator : qApp->findChildren<QTranslator*>()) delete translator;
  QLocale::setDefault(before);
}

}  // namespace skv::test
