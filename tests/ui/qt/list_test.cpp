// The lists as a user meets them: rows, clicks, renaming, headers.
#include <QAbstractItemModel>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalSpy>

#include "ui/qt/window_fixture.h"

namespace skv::test {
namespace {

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

using Heard = std::vector<std::string>;

TEST_F(ListTest, AnotherRowRaisesItemClickOnceAndTheSameRowClick) {
  clickRow(3);
  EXPECT_EQ(heard, (Heard{"itemClick 3"}));
  clickRow(3);
  EXPECT_EQ(heard, (Heard{"itemClick 3", "click 3"}));
  heard.clear();
  QTest::keyClick(view, Qt::Key_Down);
  settle();
  EXPECT_EQ(heard, (Heard{"itemClick 4"}));
  // Below the rows nothing changes.
  heard.clear();
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->viewport()->rect().bottomLeft());
  settle();
  EXPECT_EQ(heard, Heard{});
  EXPECT_EQ(list.selected(), 4);
  QTest::keyClick(view, Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "C:\\FS\\aircraft\\a4\\");
  list.itemClick = nullptr;
  clickRow(2);
  EXPECT_EQ(heard, (Heard{"click 2"})) << "a list without itemClick";
}

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
  EXPECT_EQ(heard, Heard{});
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
  EXPECT_EQ(names, (Heard{"2 Spirit"}));
  EXPECT_EQ(view->model()->index(1, 0).data().toString(), "Spirit");

  doubleClickName(*view, 3);
  ASSERT_NE(editor(), nullptr);
  QTest::keyClicks(editor(), "Lost");
  QTest::keyClick(editor(), Qt::Key_Escape);
  settle();
  EXPECT_EQ(names.size(), 1U);
  EXPECT_EQ(list.text(3), "Aircraft 3");
}

TEST_F(ListTest, AHeaderClickSortsAndTheHeaderSaysSo) {
  EXPECT_FALSE(view->header()->isSortIndicatorShown());
  const auto clickHeader = [this](int section) {
    const QHeaderView& header = *view->header();
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                      {header.sectionViewportPosition(section) + 12, header.height() / 2});
    settle();
  };
  clickHeader(1);
  EXPECT_EQ(list.sortKey(), 1);
  EXPECT_TRUE(view->header()->isSortIndicatorShown());
  EXPECT_EQ(view->header()->sortIndicatorSection(), 1);
  EXPECT_EQ(view->header()->sortIndicatorOrder(), Qt::AscendingOrder);
  clickHeader(0);
  EXPECT_EQ(view->header()->sortIndicatorSection(), 0);
  EXPECT_EQ(view->header()->sortIndicatorOrder(), Qt::DescendingOrder);
  EXPECT_EQ(view->model()->index(0, 0).data().toString(), "Aircraft 5");
}

TEST_F(ListTest, PlacesAreTold) {
  list.setSmallIcon(1, 1 + 1 + 4);
  list.setSmallIcon(2, 1);
  settle();
  const QString told = view->model()->index(0, 0).data(Qt::AccessibleTextRole).toString();
  EXPECT_TRUE(told.contains("in FS2002") && told.contains("in Hangar")) << told.toStdString();
  EXPECT_FALSE(told.contains("Package")) << told.toStdString();
  EXPECT_EQ(view->model()->index(1, 0).data(Qt::AccessibleTextRole).toString(), "Aircraft 2");
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
  EXPECT_EQ(heard, (Heard{"through"}));
  // A row that is gone before the view knows shows nothing.
  const QModelIndex last = view->model()->index(0, 0);
  list.clear();
  EXPECT_EQ(last.data(), QVariant());
}

TEST_F(ListTest, ARowThatTheProgramSelectsIsInViewWhenTheListIsSeen) {
  const auto seen = [](QTreeView& tree, int row) {
    const QRect place = tree.visualRect(tree.model()->index(row - 1, 0));
    return tree.viewport()->rect().contains(place.center());
  };
  fillAircraft(200);
  list.select(150);
  settle();
  EXPECT_TRUE(seen(*view, 150));
  // In a tab that is not shown yet, and in a list that gets its room later.
  auto& panels = app.frmMain.lstPanel;
  for (int row = 1; row <= 200; ++row) panels.add("Panel " + std::to_string(row), {"C:\\"});
  panels.select(180);
  settle();
  click("tabAddon", 1);
  EXPECT_TRUE(seen(*find<QTreeView>("lstPanel"), 180));
  mainWindow()->resize(mainWindow()->width(), mainWindow()->height() - 60);
  settle();
  EXPECT_TRUE(seen(*find<QTreeView>("lstPanel"), 180));
  EXPECT_TRUE(seen(*view, 150));
}

TEST_F(ListTest, ADoubleClickOpensTheSelectedRowWhereTheListHasAnOperation) {
  int opened = 0;
  list.dblClick = [&] { opened = list.selected(); };
  list.afterLabelEdit = [](bool&, const std::string&) {};
  list.changed();
  settle();
  doubleClickName(*view, 2);
  EXPECT_EQ(opened, 2);
  EXPECT_EQ(editor(), nullptr);
  clickRow(3);
  QTest::keyClick(view, Qt::Key_Return);
  settle();
  EXPECT_EQ(opened, 3);
  list.startLabelEdit();
  settle();
  EXPECT_NE(editor(), nullptr);
}

TEST_F(ListTest, ColumnsHaveTheWidthsThatTheListKeeps) {
  list.setColumnWidth(0, 3000);
  list.setColumnWidth(1, 3000);
  settle();
  EXPECT_NEAR(view->columnWidth(0), view->columnWidth(1), 2);
  EXPECT_NEAR(view->columnWidth(0) + view->columnWidth(1), view->viewport()->width(), 1);
  int told = 0;
  list.columnsChanged = [&] { ++told; };
  const QHeaderView& header = *view->header();
  const QPoint border{view->columnWidth(0), header.height() / 2};
  const auto drag = [&](QEvent::Type type, int by, Qt::MouseButton button) {
    const QPointF place = border + QPoint(by, 0);
    QMouseEvent event(type, place, header.viewport()->mapToGlobal(place), button,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(header.viewport(), &event);
  };
  drag(QEvent::MouseButtonPress, 0, Qt::LeftButton);
  for (int by = -10; by >= -40; by -= 10) drag(QEvent::MouseMove, by, Qt::NoButton);
  EXPECT_EQ(told, 0);
  drag(QEvent::MouseButtonRelease, -40, Qt::LeftButton);
  settle();
  EXPECT_EQ(told, 1);
  EXPECT_EQ(list.columns()[0].width, view->columnWidth(0) * 15);
  EXPECT_LT(list.columns()[0].width, list.columns()[1].width);
}

TEST_F(ListTest, ThirtyThousandRowsComeInOneRefreshAndScroll) {
  list.clear();
  settle();
  QSignalSpy inserted(view->model(), &QAbstractItemModel::rowsInserted);
  QSignalSpy reset(view->model(), &QAbstractItemModel::modelReset);
  fillAircraft(30'000);
  list.ensureVisible(30'000);
  settle();
  EXPECT_EQ(inserted.count() + reset.count(), 1);
  EXPECT_EQ(view->model()->rowCount(), 30'000);
  const QModelIndex last = view->model()->index(29'999, 0);
  EXPECT_TRUE(view->viewport()->rect().intersects(view->visualRect(last)));
  EXPECT_EQ(last.data().toString(), "Aircraft 30000");
}

}  // namespace
}  // namespace skv::test
