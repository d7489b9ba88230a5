// The Scenery Manager's lists and the options of a scenery under a user's hands.
#include <QAccessible>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>

#include "ui/qt/window_fixture.h"

namespace skv::test {

class SceneryWindowTest : public WindowTest {
 protected:
  SceneryWindowTest() {
    showMain();
    click("mnuViewFSScenery");
    list.clear();
    for (int row = 1; row <= 60; ++row)
      list.add("Area " + std::to_string(row), {"Scenery\\a" + std::to_string(row)});
    list.moveSelected = [this](int steps) {
      heard.push_back("move " + std::to_string(steps));
      for (int left = steps; left != 0; left += left < 0 ? 1 : -1)
        list.swapRows(list.selected(), list.selected() + (left < 0 ? -1 : 1));
    };
    list.itemCheck = [this](int row) {
      heard.push_back((list.checked(row) ? "on " : "off ") + list.text(row));
    };
    settle();
    view = find<QTreeView>("lstScenery");
    view->setFocus();
  }

  QRect placeOf(int row) const { return view->visualRect(view->model()->index(row - 1, 0)); }
  bool seen(int row) const { return view->viewport()->rect().contains(placeOf(row).center()); }
  void mouse(QEvent::Type type, QPoint place) {
    QWidget* target = view->viewport();
    QMouseEvent event(type, place, target->mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(target, &event);
    settle();
  }
  QImage drawn() const { return view->viewport()->grab().toImage(); }

  ui::ListView& list = app.frmMain.lstScenery;
  QTreeView* view = nullptr;
  Lines heard;
};

TEST_F(SceneryWindowTest, ADraggedRowGoesWhereTheLineIs) {
  struct Case {
    int from, over;
    bool lowerHalf;  // of the row that the mouse is over
    Lines told;
  };
  for (const Case& c :
       {Case{2, 5, true, {"move 3"}}, Case{2, 5, false, {"move 2"}}, Case{5, 2, false, {"move -3"}},
        Case{5, 2, true, {"move -2"}}, Case{3, 3, true, {}}, Case{3, 2, true, {}},
        Case{3, 4, false, {}}, Case{4, 1, false, {"move -3"}}}) {
    heard.clear();
    list.clear();
    for (int row = 1; row <= 6; ++row) list.add("Area " + std::to_string(row));
    settle();
    const QPoint start = placeOf(c.from).center();
    const QRect over = placeOf(c.over);
    const QPoint end{start.x() + 15, c.lowerHalf ? over.bottom() - 2 : over.top() + 2};
    mouse(QEvent::MouseButtonPress, start);
    const QImage before = drawn();
    mouse(QEvent::MouseMove, end);
    EXPECT_EQ(drawn() != before, !c.told.empty()) << "the line, from " << c.from;
    EXPECT_EQ(heard, Lines{});
    mouse(QEvent::MouseButtonRelease, end);
    EXPECT_EQ(heard, c.told) << c.from << " over " << c.over;
    EXPECT_EQ(list.text(list.selected()), "Area " + std::to_string(c.from));
    EXPECT_EQ(view->currentIndex().row() + 1, list.selected());
  }
}

TEST_F(SceneryWindowTest, KeysMoveTheRowAndItStaysInView) {
  list.select(30);
  settle();
  QSignalSpy reset(view->model(), &QAbstractItemModel::modelReset);
  for (int times = 0; times < 20; ++times) QTest::keyClick(view, Qt::Key_Down, Qt::ControlModifier);
  settle();
  EXPECT_EQ(list.text(50), "Area 30");
  EXPECT_EQ(view->currentIndex().row(), 49);
  EXPECT_TRUE(seen(50));
  EXPECT_EQ(reset.count(), 0);
  heard.clear();
  view->verticalScrollBar()->setValue(0);
  QTest::keyClick(view, Qt::Key_Up, Qt::ControlModifier);
  settle();
  EXPECT_EQ(heard, (Lines{"move -1"}));
  EXPECT_TRUE(seen(49));
}

TEST_F(SceneryWindowTest, AHandThatIsNotStillSwitchesABoxAndADragFromThereMovesTheRow) {
  const QPoint box{placeOf(1).left() + 12, placeOf(1).center().y()};
  const QPoint below{box.x(), placeOf(3).bottom() - 2};
  for (const QPoint end : {box + QPoint(1, 1), below}) {
    mouse(QEvent::MouseButtonPress, box);
    mouse(QEvent::MouseMove, end);
    mouse(QEvent::MouseButtonRelease, end);
  }
  EXPECT_EQ(heard, (Lines{"on Area 1", "move 2"}));
}

TEST_F(SceneryWindowTest, RowsTellTheirPlacesAndMarks) {
  EXPECT_EQ(view->model()->columnCount(), 2);  // nobody is told of the others
  const auto cell = [](QTreeView& tree, int row) {
    return QAccessible::queryAccessibleInterface(&tree)->tableInterface()->cellAt(row - 1, 0);
  };
  const auto told = [&cell](QTreeView& tree, int row) {
    return cell(tree, row)->text(QAccessible::Name).toStdString();
  };
  auto& library = app.frmMain.lstInactScenery;
  for (int icon = 0; icon <= 4; ++icon) {
    library.add("Rome");
    library.setSmallIcon(library.count(), icon);
  }
  list.setChecked(2, true);
  list.setColour(2, 255);
  // The arrow of the sort is not drawn at a column that is not the key.
  list.sort(4, ui::SortOrder::descending);
  settle();
  EXPECT_FALSE(view->header()->isSortIndicatorShown());
  Lines words;
  for (int row = 1; row <= library.count(); ++row)
    words.push_back(told(*find<QTreeView>("lstInactScenery"), row));
  EXPECT_EQ(words, (Lines{"Rome", "Rome, only in the library", "Rome, in the library, in FS2002",
                          "Rome, in the library, as Package",
                          "Rome, in the library, in FS2002, as Package"}));
  EXPECT_EQ(told(*view, 1), "Area 1, Not active in FS2002");
  EXPECT_EQ(told(*view, 2), "Area 2, Active in FS2002, built in: cannot be deleted");
  for (const int row : {1, 2}) {
    const QAccessible::State state = cell(*view, row)->state();
    EXPECT_TRUE(state.checkable && state.checked == (row == 2)) << row;
  }
}

class SceneryOptionsTest : public WindowTest {
 protected:
  SceneryOptionsTest() {
    showMain();
    for (ui::ListView* list : {&form.lstFlatten, &form.lstExclude}) {
      for (int row = 1; row <= 9; ++row) list->add("");
      list->afterLabelEdit = [list](bool& cancel, const std::string& text) {
        cancel = false;
        list->setText(list->selected(), text);
      };
    }
    form.btnOK.click = form.btnCancel.click = [this] { windows.hide(form); };
  }
  // The open field; null when none is.
  static QLineEdit* editor(const char* list) {
    auto* field = find<QTreeView>(list)->findChild<QLineEdit*>();
    return field && field->isVisible() ? field : nullptr;
  }
  void key(Qt::Key key) {
    QTest::keyClick(QApplication::focusWidget(), key);
    settle();
  }
  void type(const char* text) {
    QTest::keyClicks(QApplication::focusWidget(), text);
    settle();
  }

  ui::FrmSCOptions& form = app.frmSCOptions;
};

TEST_F(SceneryOptionsTest, FieldsAreFilledByKeysAlone) {
  form.lstExclude.setText(1, "old");
  inDialog(form, [&] {
    EXPECT_EQ(QApplication::focusWidget(), find<QTreeView>("lstFlatten"));
    key(Qt::Key_Down);
    type("7");  // opens the field
    type("00");
    key(Qt::Key_Return);
    EXPECT_EQ(form.lstFlatten.text(2), "700");
    EXPECT_EQ(editor("lstFlatten"), nullptr);
    // Tab out of an open field keeps what was typed and goes to the other list.
    key(Qt::Key_Down);
    key(Qt::Key_F2);
    type("N48,W122");
    key(Qt::Key_Tab);
    EXPECT_EQ(form.lstFlatten.text(3), "N48,W122");
    EXPECT_EQ(QApplication::focusWidget(), find<QTreeView>("lstExclude"));
    // Escape leaves the field, then the dialog.
    key(Qt::Key_Return);
    ASSERT_NE(editor("lstExclude"), nullptr);
    type("lost");
    key(Qt::Key_Escape);
    EXPECT_EQ(editor("lstExclude"), nullptr);
    EXPECT_TRUE(form.visible);
    EXPECT_EQ(form.lstExclude.text(1), "old");
    key(Qt::Key_Delete);
    EXPECT_EQ(form.lstExclude.text(1), "");
    key(Qt::Key_Escape);
    EXPECT_FALSE(form.visible);
  });
  windows.showModal(form, &app.frmMain);
}

}  // namespace skv::test
