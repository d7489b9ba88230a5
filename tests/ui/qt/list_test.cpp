// The lists as a user meets them: rows, clicks, renaming.
#include <QAbstractItemModel>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QScopeGuard>

#include "ui/qt/icons.h"
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

TEST_F(ListTest, WhatTheProgramDoesIsShownAndRaisesNothing) {
  list.select(4);
  list.add("Late arrival", {"C:\\FS\\aircraft\\late\\"});
  list.remove(1);
  settle();
  EXPECT_EQ(view->model()->rowCount(), 5);
  EXPECT_EQ(view->currentIndex().row(), 2);
  EXPECT_EQ(view->model()->index(4, 0).data().toString(), "Late arrival");
  list.clear();
  settle();
  EXPECT_FALSE(view->currentIndex().isValid());
  EXPECT_EQ(heard, Lines{});
}

TEST_F(ListTest, ARowIsRenamedInPlaceByEnterAndLeftByEscape) {
  std::vector<std::string> names;
  list.afterLabelEdit = [&](bool& cancel, const std::string& name) {
    names.push_back(std::to_string(list.selected()) + " " + name);
    cancel = false;
    list.setText(list.selected(), name);
  };
  doubleClickName(*view, 2);
  ASSERT_NE(editor(), nullptr);
  EXPECT_EQ(editor()->text(), "Aircraft 2");
  editor()->selectAll();
  QTest::keyClicks(editor(), "Spirit");
  QTest::keyClick(editor(), Qt::Key_Return);
  settle();
  EXPECT_EQ(names, (Lines{"2 Spirit"}));
  EXPECT_EQ(view->model()->index(1, 0).data().toString(), "Spirit");

  doubleClickName(*view, 3);
  ASSERT_NE(editor(), nullptr);
  QTest::keyClicks(editor(), "Lost");
  QTest::keyClick(editor(), Qt::Key_Escape);
  settle();
  EXPECT_EQ(names.size(), 1U);
  EXPECT_EQ(list.text(3), "Aircraft 3");
}

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

TEST_F(ListTest, RowsFollowTheDesktopsColoursAndAreGreyWhileDisabled) {
  list.setColour(1, 255);
  const auto count = [this](const std::function<bool(QColor)>& is) {
    settle();
    const QRect row = view->visualRect(view->model()->index(0, 1));
    const QImage drawn = view->viewport()->grab(row).toImage();
    int found = 0;
    for (int y = 0; y < drawn.height(); ++y)
      for (int x = 0; x < drawn.width(); ++x) found += is(drawn.pixelColor(x, y)) ? 1 : 0;
    return found;
  };
  const auto isRed = [](QColor c) { return c.red() > c.green() + 60 && c.red() > c.blue() + 60; };
  const auto isLightRed = [&](QColor c) { return isRed(c) && c.red() > 190 && c.green() > 15; };
  list.select(2);
  EXPECT_GT(count(isRed), 0);
  list.enabled = false;
  EXPECT_EQ(count(isRed), 0);
  list.enabled = true;

  const QPalette light = QApplication::palette();
  const auto back = qScopeGuard([&] { QApplication::setPalette(light); });
  const QIcon arrow = ui::qt::drawnIcon("up", QPalette::ButtonText);
  const QImage before = arrow.pixmap(16, 16).toImage();
  QPalette dark(QColor(32, 32, 32));
  dark.setColor(QPalette::Highlight, QColor(32, 32, 64));
  QApplication::setPalette(dark);
  EXPECT_GT(count(isLightRed), 0);
  EXPECT_NE(arrow.pixmap(16, 16).toImage(), before);
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
  const auto press = [](QTreeView* tree, int key, Qt::KeyboardModifiers more = {}) {
    QTest::keyClick(tree, static_cast<Qt::Key>(key), Qt::ControlModifier | more);
    settle();
  };
  const auto heading = [](const QTreeView* tree, int column) {
    return tree->model()
        ->headerData(column, Qt::Horizontal, Qt::AccessibleTextRole)
        .toString()
        .toStdString();
  };
  QTest::mouseClick(view->header()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
  settle();
  EXPECT_EQ(heading(view, 0), "Name, sorted ascending");
  press(view, Qt::Key_1);
  EXPECT_EQ(list.text(1), "Aircraft 5");
  EXPECT_EQ(heading(view, 0), "Name, sorted descending");
  press(view, Qt::Key_2, Qt::KeypadModifier);
  EXPECT_EQ(list.sortKey(), 1);
  EXPECT_EQ(list.text(1), "Aircraft 1");
  EXPECT_EQ(heading(view, 0), "Name");
  press(view, Qt::Key_2, Qt::ShiftModifier);
  EXPECT_EQ(list.text(1), "Aircraft 5");
  press(view, Qt::Key_9);
  QTest::keyClick(view, Qt::Key_1);
  EXPECT_EQ(list.sortKey(), 1) << "no heading is there";

  auto& panels = app.frmMain.lstPanel;
  for (const char* name : {"b", "a"}) panels.add(name);
  click("tabAddon", 1);
  press(find<QTreeView>("lstPanel"), Qt::Key_1);
  EXPECT_FALSE(panels.sorted()) << "its headings take no clicks";
}

}  // namespace skv::test
