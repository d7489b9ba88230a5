// The main window: buttons, menus, fields, status line, tabs, split bar, and what it does while it
// is disabled or closed.
#include <QAccessible>
#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSplitter>
#include <QTabBar>

#include "core/long_operation.h"
#include "ui/qt/window_fixture.h"

namespace skv::test {
namespace {

TEST_F(WindowTest, TheBorderBetweenTheHalvesGoesBothWays) {
  showMain();
  auto* halves = find<QSplitter>("divAircraft");
  ASSERT_NE(halves, nullptr);
  QTest::keyClick(halves->handle(1), Qt::Key_Right);
  EXPECT_GT(app.frmMain.divAircraft.share, 500);
  app.frmMain.divAircraft.share = 600;
  settle();
  const auto share = [&] {
    return 100 * halves->sizes()[0] / (halves->sizes()[0] + halves->sizes()[1]);
  };
  EXPECT_NEAR(share(), 60, 1);
  mainWindow()->resize(mainWindow()->width() + 150, mainWindow()->height());
  settle();
  EXPECT_NEAR(share(), 60, 1) << "in a wider window";
}

TEST_F(WindowTest, EveryControlIsReachedByKeyboardAndNamed) {
  showMain();
  int named = 0;
  for (const QWidget* widget : mainWindow()->findChildren<QWidget*>()) {
    if (widget->focusPolicy() == Qt::NoFocus || widget->inherits("QMenu")) continue;
    if (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_")) continue;
    ++named;
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
  }
  EXPECT_GE(named, 40);
  for (const ui::ListView* list :
       {&app.frmMain.lstAircraft, &app.frmMain.lstPanel, &app.frmMain.lstSound,
        &app.frmMain.lstACVersions, &app.frmMain.lstScenery, &app.frmMain.lstInactScenery})
    EXPECT_NE(find<QTreeView>(list->name().c_str()), nullptr) << list->name();
}

TEST_F(WindowTest, AButtonFollowsItsControlAndClicks) {
  showMain();
  auto& button = app.frmMain.btnSaveACInfo;
  int clicks = 0;
  button.click = [&] { ++clicks; };
  button.enabled = true;
  settle();
  click("btnSaveACInfo");
  EXPECT_EQ(clicks, 1);
  button.enabled = false;  // not yet noted by the window, but in force
  button.caption = "Saved";
  click("btnSaveACInfo");
  click("btnSaveACInfo");
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(find<QPushButton>("btnSaveACInfo")->text(), "Saved");
}

TEST_F(WindowTest, TheMenuIsTheModels) {
  showMain();
  auto& form = app.frmMain;
  const auto action = [](const char* name) { return find<QAction>(name); };
  EXPECT_EQ(action("mnuFileSettings")->shortcut(), QKeySequence("F2"));
  EXPECT_EQ(action("mnuViewHangar")->shortcut(), QKeySequence("Ctrl+H"));
  EXPECT_FALSE(action("mnuViewPackages")->isVisible());
  EXPECT_TRUE(action("mnuDummy4")->isSeparator());
  EXPECT_FALSE(action("mnuFileInstallSC")->isEnabled());
  EXPECT_TRUE(action("mnuFileInstallAC")->isEnabled());
  EXPECT_TRUE(action("mnuViewFSAircraft")->isChecked());

  QTest::keyClick(mainWindow(), Qt::Key_H, Qt::ControlModifier);
  settle();
  EXPECT_TRUE(form.mnuViewHangar.checked);
  EXPECT_TRUE(action("mnuViewHangar")->isChecked());
  EXPECT_FALSE(action("mnuViewFSAircraft")->isChecked());
  // Choosing the checked entry again runs it and does not take its mark away.
  click("mnuViewHangar");
  EXPECT_TRUE(action("mnuViewHangar")->isChecked());
  form.mnuViewHangar.checked = false;
  settle();
  EXPECT_FALSE(action("mnuViewHangar")->isChecked());
}

TEST_F(WindowTest, WhatHasNoOperationIsDisabled) {
  app.frmMain.btnAddPN.click = nullptr;
  app.frmMain.lstPanel.afterLabelEdit = nullptr;
  app.frmMain.lstScenery.itemCheck = nullptr;
  app.frmMain.lblSepBar.mouseMove = nullptr;
  app.frmMain.mnuPicDel.click = nullptr;
  showMain();
  app.frmMain.lstPanel.add("Panel", {"C:\\"});
  app.frmMain.lstScenery.add("Scenery", {"C:\\"});
  click("tabAddon", 1);
  EXPECT_FALSE(find<QWidget>("btnAddPN")->isEnabled());
  const auto flags = [](const char* list) {
    const auto* model = find<QTreeView>(list)->model();
    return model->flags(model->index(0, 0));
  };
  EXPECT_FALSE(flags("lstPanel") & Qt::ItemIsEditable);
  EXPECT_FALSE(flags("lstScenery") & Qt::ItemIsUserCheckable);
  EXPECT_FALSE(find<QWidget>("lblSepBar")->isEnabled());
  EXPECT_FALSE(find<QAction>("mnuPicDel")->isEnabled());
}

TEST_F(WindowTest, TabsAndDoubleClicksOnFramesShowOthers) {
  showMain();
  click("tabAddon", 1);
  EXPECT_EQ(app.frmMain.tabAddon.value, 1);
  EXPECT_TRUE(find<QWidget>("framePanel")->isVisible());
  EXPECT_FALSE(find<QWidget>("frameInfo")->isVisible());
  for (const char* frame : {"frameAircraft", "frameAircraft", "frameScenery"}) {
    QTest::mouseDClick(find<QWidget>(frame), Qt::LeftButton, {}, {4, 4});
    settle();
  }
  EXPECT_TRUE(app.frmMain.mnuViewFSAircraft.checked);
}

TEST_F(WindowTest, AClickInALibraryShowsTheStateOfItsRow) {
  showMain();
  auto& form = app.frmMain;
  const struct {
    ui::ListView& list;
    ui::Label& status;
    int tab;
  } libraries[] = {{form.lstPanel, form.lblPNStatus, 1}, {form.lstSound, form.lblSNStatus, 2}};
  for (const auto& [list, status, tab] : libraries) {
    for (const std::string name : {"a", "b"}) list.add(name, {"C:\\FS\\" + name + "\\"});
    for (const char* cfg : {"panel.cfg", "sound.cfg"})
      drive.write(std::string("C:\\FS\\b\\") + cfg, "[fltsim]\r\nalias=far\r\n");
    click("tabAddon", tab);
    clickRow(*find<QTreeView>(list.name().c_str()), 2);
    EXPECT_EQ(list.selected(), 2);
    EXPECT_EQ(status.caption, "Alias: far");
  }
}

TEST_F(WindowTest, FieldsGoBothWaysAndEnterIsTypedAsBackslashN) {
  showMain();
  auto& form = app.frmMain;
  for (ui::TextBox* box : {&form.txtACTitle, &form.txtACDescription}) box->enabled = true;
  form.txtACTitle.text = "Boeing";
  settle();
  auto* title = find<QLineEdit>("txtACTitle");
  EXPECT_EQ(title->text(), "Boeing");
  QTest::keyClick(title, Qt::Key_End);
  QTest::keyClicks(title, " 737");
  EXPECT_EQ(form.txtACTitle.text.get(), "Boeing 737");

  click("tabACInfo", 3);
  auto* description = find<QPlainTextEdit>("txtACDescription");
  QTest::keyClicks(description, "one");
  QTest::keyClick(description, Qt::Key_Return);
  QTest::keyClicks(description, "two");
  EXPECT_EQ(form.txtACDescription.text.get(), "one\\ntwo");
}

TEST_F(WindowTest, TheStatusLineShowsTextAndFill) {
  showMain();
  auto& line = app.frmMain.lblStatus;
  const auto shown = [] {
    settle();
    return find<QWidget>("lblStatus")->grab().toImage();
  };
  const QImage empty = shown();
  line.caption = "Processing: C:\\FS\\";
  const QImage text = shown();
  EXPECT_NE(text, empty);
  line.setProgress(50);
  const QImage half = shown();
  // The fill ends in the middle.
  const int x = half.width() / 2, y = half.height() - 4;
  EXPECT_NE(half.pixel(x - 20, y), text.pixel(x - 20, y));
  EXPECT_EQ(half.pixel(x + 20, y), text.pixel(x + 20, y));
  line.clearProgress();
  line.caption = "";
  EXPECT_EQ(shown(), empty);
}

TEST_F(WindowTest, TheSplitBarTakesFromOneListAndGivesToTheOther) {
  showMain();
  click("mnuViewFSScenery");
  const auto height = [](const char* list) {
    settle();
    return find<QWidget>(list)->height();
  };
  const int upper = height("lstScenery"), lower = height("lstInactScenery");
  ASSERT_NEAR(app.frmMain.sceneryHeight, upper * 15, 15);
  ASSERT_NEAR(app.frmMain.libraryHeight, lower * 15, 15);
  auto* bar = find<QWidget>("lblSepBar");
  const QPoint start = bar->mapToGlobal(bar->rect().center());
  const auto drag = [&](QEvent::Type type, int by) {
    const QPoint global = start + QPoint(0, by);
    QMouseEvent event(type, bar->mapFromGlobal(global), global,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(bar, &event);
  };
  drag(QEvent::MouseButtonPress, 0);
  // Several moves before the window is drawn again add up to the pointer's way, no more.
  for (int by = 5; by <= 20; by += 5) drag(QEvent::MouseMove, by);
  EXPECT_NEAR(height("lstScenery"), upper + 20, 1);
  EXPECT_NEAR(height("lstInactScenery"), lower - 20, 1);
  drag(QEvent::MouseMove, 2000);
  EXPECT_NEAR(height("lstScenery"), upper + 20, 1);
  drag(QEvent::MouseButtonRelease, 0);
  drag(QEvent::MouseMove, 0);
  EXPECT_NEAR(height("lstScenery"), upper + 20, 1);
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

TEST_F(WindowTest, TheStatusLineTellsTheEndUntilTheNextEventAndIsReadOut) {
  showMain();
  auto& line = app.frmMain.lblStatus;
  auto* widget = find<QWidget>("lblStatus");
  QAccessibleInterface* read = QAccessible::queryAccessibleInterface(widget);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->role(), QAccessible::StatusBar);
  line.caption = "Copying";
  line.notice = "3 files copied";
  line.setProgress(40);
  settle();
  EXPECT_EQ(read->role(), QAccessible::ProgressBar);
  ASSERT_NE(read->valueInterface(), nullptr);
  EXPECT_EQ(read->valueInterface()->currentValue().toInt(), 40);
  EXPECT_EQ(read->text(QAccessible::Value), "Copying");
  line.clearProgress();
  line.caption = "";
  settle();
  EXPECT_EQ(read->text(QAccessible::Value), "3 files copied");
  click("tabAddon", 1);
  EXPECT_EQ(read->text(QAccessible::Value), "");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(find<QWidget>("imgAircraft"))->role(),
            QAccessible::Graphic);
}

TEST_F(WindowTest, KeysReachTabsMenusAndButtons) {
  showMain();
  auto& form = app.frmMain;
  const auto press = [](const char* name, Qt::Key key, Qt::KeyboardModifiers with) {
    settle();
    find<QWidget>(name)->setFocus();
    QTest::keyClick(find<QWidget>(name), key, with);
    settle();
  };
  press("lstAircraft", Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(form.tabAddon.value, 1);
  press("lstAircraft", Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(form.tabAddon.value, 0);
  form.txtSim.enabled = true;
  press("txtSim", Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(form.tabACInfo.value, 1);
  int clicks = 0;
  form.btnHangar.enabled = true;
  form.btnHangar.click = [&] { ++clicks; };
  form.btnHangar.changed();
  press("btnHangar", Qt::Key_Return, {});
  EXPECT_EQ(clicks, 1);

  for (const ui::MenuItem* menu : {&form.mnuFile, &form.mnuView, &form.mnuFileInstall}) {
    QString letters;
    for (const ui::MenuItem* entry : menu->entries) {
      if (entry->separator) continue;
      auto* action = find<QAction>(entry->name().c_str());
      if (!action)
        action =
            mainWindow()->findChild<QMenu*>(QString::fromStdString(entry->name()))->menuAction();
      const qsizetype mark = action->text().indexOf('&');
      ASSERT_GE(mark, 0) << entry->name();
      const QChar letter = action->text().at(mark + 1).toLower();
      EXPECT_FALSE(letters.contains(letter)) << entry->name();
      letters += letter;
    }
  }
}

TEST_F(WindowTest, AWindowIsNoLargerThanItsScreen) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  settings.values["Window/MainWidth"] = "90000";
  settings.values["Window/MainHeight"] = "64800";
  showMain();
  QTest::qWait(200);
  EXPECT_TRUE(screen.contains(mainWindow()->geometry()))
      << mainWindow()->width() << " x " << mainWindow()->height();
}

TEST_F(WindowTest, APictureIsShownAsItIsNow) {
  showMain();
  auto& image = app.frmMain.imgAircraft;
  const auto middle = [] {
    settle();
    const QImage shown = find<QWidget>("imgAircraft")->grab().toImage();
    return shown.pixelColor(shown.rect().center());
  };
  const auto write = [&](QColor colour, int side) {
    QImage file(side, side, QImage::Format_RGB32);
    file.fill(colour);
    ASSERT_TRUE(file.save(QString::fromStdString(drive.native("C:\\FS\\picture.bmp"))));
  };
  write(Qt::red, 40);
  image.picture = "C:\\FS\\picture.bmp";
  EXPECT_EQ(middle(), QColor(Qt::red));
  write(Qt::green, 44);
  EXPECT_EQ(middle(), QColor(Qt::green));
  const std::string blue("\xff\0\0\xff\0\0\xff\0\0\0\0\0", 12);  // a row, filled up
  const std::string rows = blue + blue;
  ui::Pixels pixels;
  pixels.width = 3;
  pixels.height = 2;
  pixels.rows.assign(rows.begin(), rows.end());
  image.setPixels(pixels);
  EXPECT_EQ(middle(), QColor(Qt::blue));
  image.setPixels({});
  EXPECT_EQ(middle(), QColor(Qt::green));
}

TEST_F(WindowTest, AUsersWidthGivesTheHeightAndIsKept) {
  showMain();
  auto& form = app.frmMain;
  QWidget* main = mainWindow();
  const double aspect = app.LayoutAspect;
  main->resize(1000, 400);
  QTest::qWait(400);
  EXPECT_EQ(form.width, 1000 * 15);
  EXPECT_NEAR(form.height, form.width / aspect, 15);
  EXPECT_EQ(main->width(), 1000);
  EXPECT_NEAR(main->height(), 1000 / aspect, 1.5);
  form.width = 9000;
  form.resized();
  QTest::qWait(200);
  EXPECT_EQ(main->width(), 10335 / 15);
}

}  // namespace
}  // namespace skv::test
