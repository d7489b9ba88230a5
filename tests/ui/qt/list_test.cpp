// The lists as a user meets them: rows, clicks, renaming.
#include <QAbstractItemModel>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QScopeGuard>
#include <utility>

#include "ui/qt/icons.h"
#include "ui/qt/place_pictures.h"
#include "ui/qt/theme.h"
#include "ui/qt/window_fixture.h"

namespace skv::test {

class ListTest : public WindowTest {
 protected:
  ListTest() {
    showMain();
    fillAircraft(5);
    view = find<QTreeView>("lstAircraft");
    // The test listens in the program's place.
    list.itemClick = [this] { heard.push_back("itemClick " + std::to_string(list.selected())); };
    list.click = [this] { heard.push_back("click " + std::to_string(list.selected())); };
  }

  void clickRow(int row) { WindowTest::clickRow(*view, row); }
  QLineEdit* editor() const { return view->findChild<QLineEdit*>(); }

  ui::ListView& list = app.frmMain.lstAircraft;
  QTreeView* view = nullptr;
  std::vector<std::string> heard;
};

TEST_F(ListTest, ARowIsRenamedByItsMenu) {
  list.contextMenu = nullptr;  // as in the lists that have no menu of their own
  list.afterLabelEdit = [&](bool&, const std::string& name) { heard.push_back(name); };
  clickRow(3);
  heard.clear();
  QContextMenuEvent asked(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(view->viewport(), &asked);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_TRUE(menu && menu->actions().size() == 1);
  QTest::keyClick(menu, Qt::Key_Down);
  QTest::keyClick(menu, Qt::Key_Return);
  settle();
  ASSERT_NE(editor(), nullptr);
  EXPECT_EQ(editor()->text(), "Aircraft 3");
  QTest::keyClicks(editor(), "Spirit");
  QTest::keyClick(editor(), Qt::Key_Return);
  settle();
  EXPECT_EQ(heard, (Lines{"Spirit"}));
}

TEST_F(ListTest, AHandlerMayTakeRowsAwayWhileItYields) {
  list.itemClick = [this] {
    windows.yield();
    while (list.count() > 1) list.remove(1);
    windows.yieldUntil([this] { return view->model()->rowCount() == 1; });
    heard.emplace_back("through");
  };
  clickRow(5);
  settle();
  EXPECT_EQ(heard, (Lines{"through"}));
  // A row that is gone before the view knows shows nothing.
  const QModelIndex last = view->model()->index(0, 0);
  list.clear();
  EXPECT_EQ(last.data(), QVariant());
}

TEST_F(ListTest, CtrlAndADigitSortLikeAClickOnThatHeading) {
  const auto press = [this](Qt::Key key, Qt::KeyboardModifiers more = {}) {
    QTest::keyClick(view, key, Qt::ControlModifier | more);
    settle();
  };
  const auto heading = [this] {
    return view->model()->headerData(0, Qt::Horizontal, Qt::AccessibleTextRole).toString();
  };
  QTest::mouseClick(view->header()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  settle();
  EXPECT_EQ(heading(), "Name, sorted ascending");
  press(Qt::Key_1);
  EXPECT_EQ(list.text(1), "Aircraft 5");
  EXPECT_EQ(heading(), "Name, sorted descending");
  press(Qt::Key_2, Qt::KeypadModifier | Qt::ShiftModifier);
  EXPECT_EQ(list.sortKey(), 1);
  EXPECT_EQ(list.text(1), "Aircraft 1");
  EXPECT_EQ(heading(), "Name");
  press(Qt::Key_9);
  QTest::keyClick(view, Qt::Key_1);
  EXPECT_EQ(list.sortKey(), 1) << "no heading is there";
}

TEST_F(ListTest, RowsAndPicturesFollowTheDesktopsColours) {
  const QPalette before = QApplication::palette();
  const auto back = qScopeGuard([&] { QApplication::setPalette(before); });
  list.setColour(1, 255);
  list.select(2);
  const auto has = [this](const std::function<bool(QColor)>& is) {
    settle();
    const QRect row = view->visualRect(view->model()->index(0, 1));
    const QImage drawn = view->viewport()->grab(row).toImage();
    for (int y = 0; y < drawn.height(); ++y)
      for (int x = 0; x < drawn.width(); ++x)
        if (is(drawn.pixelColor(x, y))) return true;
    return false;
  };
  const auto isRed = [](QColor c) { return c.red() > c.green() + 60 && c.red() > c.blue() + 60; };
  const auto isLightRed = [&](QColor c) { return isRed(c) && c.red() > 190 && c.green() > 15; };
  ui::qt::PlacePictures places(ui::qt::aircraftPlaces());
  const QIcon icon = ui::qt::drawnIcon("up", QPalette::ButtonText);
  QImage place, arrow;
  for (const bool dark : {true, false}) {
    const QPalette palette = ui::qt::paletteFor({.dark = dark}, before);
    EXPECT_EQ(ui::qt::isDark(palette), dark);
    EXPECT_EQ(palette.color(QPalette::Disabled, QPalette::HighlightedText),
              palette.color(QPalette::Disabled, QPalette::Text))
        << "the selected row of a disabled list is grey as well";
    QApplication::setPalette(palette);
    EXPECT_TRUE(dark ? has(isLightRed) : has(isRed));
    list.enabled = false;
    EXPECT_FALSE(has(isRed)) << "grey while disabled";
    list.enabled = true;
    EXPECT_EQ(view->header()->palette().color(QPalette::ButtonText),
              palette.color(QPalette::PlaceholderText));
    EXPECT_NE(std::exchange(place, places.picture(2, palette, 1).toImage()), place);
    EXPECT_NE(std::exchange(arrow, icon.pixmap(16).toImage()), arrow);
  }
}

}  // namespace skv::test
