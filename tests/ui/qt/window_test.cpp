// The main window: buttons, menus, fields, status line, tabs, split bar, and what it does while it
// is disabled or closed.
#include <QAction>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>

#include "core/long_operation.h"
#include "ui/qt/window_fixture.h"

namespace skv::test {
namespace {

TEST_F(WindowTest, EveryControlIsOnTheWindowWithAnAccessibleName) {
  showMain();
  const auto& form = app.frmMain;
  for (const ui::Control* control :
       std::initializer_list<const ui::Control*>{&form.btnAddAC,
                                                 &form.btnDelAC,
                                                 &form.btnACRestoreOriginal,
                                                 &form.btnHangar,
                                                 &form.lstAircraft,
                                                 &form.imgAircraft,
                                                 &form.tabAddon,
                                                 &form.lstACVersions,
                                                 &form.btnSaveACInfo,
                                                 &form.tabACInfo,
                                                 &form.txtACTitle,
                                                 &form.txtSim,
                                                 &form.txtModel,
                                                 &form.txtPanel,
                                                 &form.txtSound,
                                                 &form.txtTexture,
                                                 &form.txtATCID,
                                                 &form.txtATCAirline,
                                                 &form.txtATCFlight,
                                                 &form.txtUIManufacturer,
                                                 &form.txtUIType,
                                                 &form.txtUIVariation,
                                                 &form.txtACDescription,
                                                 &form.btnAddPN,
                                                 &form.btnDelPN,
                                                 &form.btnPNRestoreOriginal,
                                                 &form.btnAssignPN,
                                                 &form.lstPanel,
                                                 &form.imgPanel,
                                                 &form.btnAddSN,
                                                 &form.btnDelSN,
                                                 &form.btnSNRestoreOriginal,
                                                 &form.btnAssignSN,
                                                 &form.lstSound,
                                                 &form.lstScenery,
                                                 &form.btnSCup,
                                                 &form.btnSCdn,
                                                 &form.btnFSScenerySave,
                                                 &form.btnFSScenDel,
                                                 &form.lstInactScenery,
                                                 &form.btnSLDel,
                                                 &form.btnAddSLtoFS,
                                                 &form.btnAddToSL,
                                                 &form.ftreeScenery,
                                                 &form.optMove,
                                                 &form.optCopy,
                                                 &form.optScenery,
                                                 &form.optTextures,
                                                 &form.imgScenery,
                                                 &form.lblStatus}) {
    auto* widget = find<QWidget>(control->name().c_str());
    ASSERT_NE(widget, nullptr) << control->name();
    EXPECT_FALSE(widget->accessibleName().isEmpty()) << control->name();
  }
}

TEST_F(WindowTest, AButtonFollowsItsControlAndClicks) {
  showMain();
  auto& button = app.frmMain.btnSaveACInfo;
  button.enabled = true;
  settle();
  int clicks = 0;
  button.click = [&] { ++clicks; };
  click("btnSaveACInfo");
  EXPECT_EQ(clicks, 1);
  button.enabled = false;
  button.caption = "Saved";
  click("btnSaveACInfo");
  EXPECT_EQ(clicks, 1);
  EXPECT_EQ(find<QPushButton>("btnSaveACInfo")->text(), "Saved");
  // Not yet noted by the window, but in force.
  button.enabled = true;
  settle();
  button.enabled = false;
  QTest::mouseClick(find<QPushButton>("btnSaveACInfo"), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
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

TEST_F(WindowTest, TheFrameWalksThroughTheViewsByDoubleClicks) {
  showMain();
  auto& form = app.frmMain;
  const auto doubleClick = [](const char* name) {
    QTest::mouseDClick(find<QWidget>(name), Qt::LeftButton, {}, {4, 4});
    settle();
  };
  doubleClick("frameAircraft");
  EXPECT_TRUE(form.mnuViewHangar.checked);
  doubleClick("frameAircraft");
  EXPECT_TRUE(find<QWidget>("frameScenery")->isVisible());
  EXPECT_FALSE(find<QWidget>("frameAddon")->isVisible());
  doubleClick("frameScenery");
  EXPECT_TRUE(form.mnuViewFSAircraft.checked);
}

TEST_F(WindowTest, ATabShowsItsFrame) {
  showMain();
  auto* tabs = find<QTabBar>("tabAddon");
  ASSERT_EQ(tabs->count(), 3);
  QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
  settle();
  EXPECT_EQ(app.frmMain.tabAddon.value, 1);
  EXPECT_TRUE(find<QWidget>("framePanel")->isVisible());
  EXPECT_FALSE(find<QWidget>("frameInfo")->isVisible());
}

TEST_F(WindowTest, FieldsGoBothWaysAndEnterIsTypedAsBackslashN) {
  showMain();
  auto& form = app.frmMain;
  for (ui::TextBox* box : {&form.txtACTitle, &form.txtACDescription}) box->enabled = true;
  form.txtACTitle.text = "Boeing";
  settle();
  auto* title = find<QLineEdit>("txtACTitle");
  EXPECT_EQ(title->text(), "Boeing");
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
  auto* line = find<QWidget>("lblStatus");
  const QImage empty = line->grab().toImage();
  app.frmMain.lblStatus.caption = "Processing: C:\\FS\\";
  settle();
  const QImage text = line->grab().toImage();
  EXPECT_NE(text, empty);
  app.frmMain.lblStatus.setProgress(50);
  settle();
  const QImage half = line->grab().toImage();
  // The fill ends in the middle.
  const int y = half.height() - 4;
  EXPECT_NE(half.pixel(half.width() / 2 - 20, y), text.pixel(half.width() / 2 - 20, y));
  EXPECT_EQ(half.pixel(half.width() / 2 + 20, y), text.pixel(half.width() / 2 + 20, y));
  app.frmMain.lblStatus.clearProgress();
  app.frmMain.lblStatus.caption = "";
  settle();
  EXPECT_EQ(line->grab().toImage(), empty);
}

TEST_F(WindowTest, TheSplitBarTakesFromOneListAndGivesToTheOther) {
  showMain();
  click("mnuViewFSScenery");
  auto& form = app.frmMain;
  auto* bar = find<QWidget>("lblSepBar");
  const int upper = find<QWidget>("lstScenery")->height();
  const int lower = find<QWidget>("lstInactScenery")->height();
  ASSERT_NEAR(form.sceneryHeight, upper * 15, 15);
  ASSERT_NEAR(form.libraryHeight, lower * 15, 15);
  const auto dragTo = [&](QPoint global, QEvent::Type type) {
    const bool released = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, bar->mapFromGlobal(global), global,
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      released ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(bar, &event);
  };
  const QPoint start = bar->mapToGlobal(bar->rect().center());
  dragTo(start, QEvent::MouseButtonPress);
  // Several moves before the window is drawn again add up to the pointer's way, no more.
  for (int y = 5; y <= 20; y += 5) dragTo(start + QPoint(0, y), QEvent::MouseMove);
  settle();
  EXPECT_NEAR(find<QWidget>("lstScenery")->height(), upper + 20, 1);
  EXPECT_NEAR(find<QWidget>("lstInactScenery")->height(), lower - 20, 1);
  dragTo(start + QPoint(0, 2000), QEvent::MouseMove);
  settle();
  EXPECT_NEAR(find<QWidget>("lstScenery")->height(), upper + 20, 1);
  dragTo(start, QEvent::MouseButtonRelease);
  dragTo(start, QEvent::MouseMove);
  settle();
  EXPECT_NEAR(find<QWidget>("lstScenery")->height(), upper + 20, 1);
}

TEST_F(WindowTest, ADisabledWindowIgnoresTheUserAndIsPainted) {
  showMain();
  fillAircraft(3);
  QWidget* main = mainWindow();
  int clicks = 0;
  app.frmMain.btnHangar.click = [&] { ++clicks; };
  {
    LongOperation busy(app);
    settle();
    EXPECT_NE(QGuiApplication::overrideCursor(), nullptr);
    click("btnHangar");
    clickRow(*find<QTreeView>("lstAircraft"), 3);
    QTest::keyClick(main, Qt::Key_H, Qt::ControlModifier);
    main->close();
    settle();
    EXPECT_EQ(clicks, 0);
    EXPECT_EQ(app.frmMain.lstAircraft.selected(), 1);
    EXPECT_TRUE(app.frmMain.mnuViewFSAircraft.checked);
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(app.ending);
    app.frmMain.lblStatus.caption = "Moving";
    windows.yieldUntil(
        [&] { return !find<QWidget>("lblStatus")->accessibleDescription().isEmpty(); });
  }
  settle();
  EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
  click("btnHangar");
  EXPECT_EQ(clicks, 1);
}

TEST_F(WindowTest, AUsersWidthGivesTheHeightAndIsKept) {
  showMain();
  auto& form = app.frmMain;
  QWidget* main = mainWindow();
  const double aspect = app.LayoutAspect;
  main->resize(1200, 400);
  QTest::qWait(400);
  EXPECT_EQ(form.width, 1200 * 15);
  EXPECT_NEAR(form.height, form.width / aspect, 15);
  EXPECT_EQ(main->width(), 1200);
  EXPECT_NEAR(main->height(), 1200 / aspect, 1.5);
  form.width = 9000;
  form.resized();
  QTest::qWait(200);
  EXPECT_EQ(main->width(), 10335 / 15);
}

}  // namespace
}  // namespace skv::test
