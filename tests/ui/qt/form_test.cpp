// Every form against the window that shows it: each control that the model declares has a widget in
// its place, which is seen, named and enabled as the control says, and tells it what the user does.
#include <QAbstractButton>
#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QSplitter>
#include <QTreeWidget>
#include <fstream>
#include <map>
#include <regex>
#include <set>

#include "aircraft/aircraft_views.h"
#include "scenery/scenery_view.h"
#include "ui/qt/window_fixture.h"
#include "ui/views.h"

namespace skv::test {

namespace {

// The names of the controls that the model's headers declare in a form.
Lines declaredIn(const std::string& form) {
  Lines names;
  for (const char* header : {"/frm_main.h", "/dialogs.h"}) {
    std::ifstream file(std::string(MODEL) + header);
    EXPECT_TRUE(file.is_open()) << header;
    const std::regex control("^  \\w+ (\\w+)\\{\"(\\w+)\"");
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("struct ")) inside = line == "struct " + form + " : Form {";
      if (std::smatch parts; inside && std::regex_search(line, parts, control))
        names.push_back(parts[2]);
    }
  }
  EXPECT_FALSE(names.empty()) << form;
  return names;
}

// Every control below that the keyboard reaches has a name for a screen reader, and no part is a
// mere frame, which would be a window of its own to it.
void expectNames(const QAccessibleInterface& part, const std::string& place) {
  const QAccessible::State state = part.state();
  if (state.invisible) return;
  const std::string here = place + "/" + part.text(QAccessible::Name).toStdString();
  const bool labelled = !part.relations(QAccessible::Label).isEmpty();
  if (state.focusable) {
    EXPECT_TRUE(labelled || !here.ends_with('/'))
        << here << " " << part.object()->objectName().toStdString();
  }
  EXPECT_TRUE(labelled || part.role() != QAccessible::ComboBox) << here;
  EXPECT_NE(part.role(), QAccessible::Border) << here;
  for (int i = 0; i < part.childCount(); ++i)
    if (const QAccessibleInterface* child = part.child(i)) expectNames(*child, here);
}

}  // namespace

class FormTest : public WindowTest {
 protected:
  struct Part {
    ui::Control* control;
    QObject* object;  // a widget or an action
    QWidget* widget() const { return qobject_cast<QWidget*>(object); }
  };

  // Takes the form's window, which shows by now.
  void take(ui::Form& shown, const std::string& structName) {
    form = &shown;
    window = find<QWidget>(shown.name().c_str());
    ASSERT_NE(window, nullptr) << shown.name();
    parts.clear();
    heard.clear();
    done.clear();
    std::map<std::string, Part> bound;
    for (QObject* object : window->findChildren<QObject*>())
      if (const auto* binding = dynamic_cast<ui::qt::Binding*>(object);
          binding && binding->attached() && binding->control() != form)
        bound[binding->control()->name()] = {binding->control(), binding->parent()};
    for (const std::string& name : declaredIn(structName)) {
      const auto found = bound.find(name);
      if (found == bound.end()) {
        ADD_FAILURE() << structName << " shows no " << name;
        continue;
      }
      parts.push_back(found->second);
      const auto* button = dynamic_cast<const ui::Button*>(found->second.control);
      EXPECT_TRUE(!button || button->click) << name << " does nothing";
    }
    EXPECT_EQ(window->windowTitle().toStdString(), form->caption.get());
  }

  // What no part of the program hides or disables.
  static bool isAlways(const ui::Control& control) {
    return dynamic_cast<const ui::Divider*>(&control) ||
           dynamic_cast<const ui::StatusLine*>(&control) || control.name() == "lblIntro" ||
           control.name() == "Image1" || control.name() == "imgShowPic";
  }
  bool isDone(const Part& part) const { return done.contains(part.control->name()); }
  static bool isLeaf(const ui::Control& control) {
    return !dynamic_cast<const ui::Frame*>(&control);
  }

  // As the control says, and the frames that it lies in.
  bool visibleByModel(const Part& part) const {
    if (!part.control->visible) return false;
    for (const Part& frame : parts)
      if (frame.widget() && !isLeaf(*frame.control) && !frame.control->visible &&
          frame.widget()->isAncestorOf(part.widget()))
        return false;
    return true;
  }
  static bool enabledByModel(const ui::Control& control) {
    if (const auto* button = dynamic_cast<const ui::Button*>(&control))
      return button->enabled && button->click;
    if (const auto* item = dynamic_cast<const ui::MenuItem*>(&control))
      return item->enabled && (item->available() || item->separator);
    return control.enabled;
  }

  void expectAsTheModelSays(const std::string& when) {
    settle();
    for (const Part& part : parts) {
      const std::string who = part.control->name() + ", " + when;
      if (auto* action = qobject_cast<QAction*>(part.object)) {
        const auto& item = dynamic_cast<const ui::MenuItem&>(*part.control);
        EXPECT_EQ(action->isVisible(), item.visible) << who;
        // To Qt, what is not seen is not enabled.
        EXPECT_TRUE(item.separator || action->isEnabled() == (item.visible && enabledByModel(item)))
            << who;
        EXPECT_EQ(action->isChecked(), item.checked) << who;
      } else if (auto* menu = qobject_cast<QMenu*>(part.object)) {
        EXPECT_EQ(menu->menuAction()->isEnabled(),
                  part.control->visible && enabledByModel(*part.control))
            << who;
      } else {
        QWidget* widget = part.widget();
        EXPECT_EQ(widget->window(), window) << who;
        EXPECT_EQ(widget->isVisible(), visibleByModel(part)) << who;
        EXPECT_TRUE(widget->isEnabledTo(widget->parentWidget()) == enabledByModel(*part.control))
            << who;
      }
    }
  }

  // What is seen lies in the window with all of it, and nothing lies on it.
  void expectInPlace() const {
    for (const Part& part : parts) {
      QWidget* widget = part.widget();
      if (!widget || qobject_cast<QMenu*>(widget) || !widget->isVisible()) continue;
      const QRect place(widget->mapTo(window, QPoint()), widget->size());
      EXPECT_TRUE(window->rect().contains(place)) << part.control->name();
      const auto* label = dynamic_cast<const ui::Label*>(part.control);
      if (label && label->caption == "") continue;
      EXPECT_GT(place.width(), 5) << part.control->name();
      EXPECT_GT(place.height(), 2) << part.control->name();
      const QWidget* there = window->childAt(place.center());
      EXPECT_TRUE(there && (there == widget || widget->isAncestorOf(there)))
          << part.control->name() << " is covered";
    }
    expectNames(*QAccessible::queryAccessibleInterface(window), form->name());
  }

  // All that the user may do is only noted from now on, and there is something to do it to.
  void listen() {
    const auto hear = [this](const ui::Control& control, const char* event = "") {
      return [this, what = control.name() + event](auto&&...) { heard.insert(what); };
    };
    for (const Part& part : parts) {
      ui::Control* control = part.control;
      if (auto* button = dynamic_cast<ui::Button*>(control)) button->click = hear(*control);
      if (auto* option = dynamic_cast<ui::OptionButton*>(control)) option->click = hear(*control);
      if (auto* label = dynamic_cast<ui::Label*>(control); label && label->click)
        label->click = hear(*control);
      if (auto* strip = dynamic_cast<ui::TabStrip*>(control)) strip->click = hear(*control);
      if (auto* tree = dynamic_cast<ui::FolderTree*>(control)) tree->change = hear(*control);
      if (auto* frame = dynamic_cast<ui::Frame*>(control)) frame->dblClick = hear(*control);
      if (auto* bar = dynamic_cast<ui::SplitBar*>(control)) bar->mouseMove = hear(*control);
      if (auto* image = dynamic_cast<ui::Image*>(control)) {
        image->click = hear(*control);
        image->mouseDown = hear(*control, " mouseDown");
      }
      if (auto* box = dynamic_cast<ui::TextBox*>(control)) {
        box->gotFocus = hear(*control, " gotFocus");
        box->lostFocus = hear(*control, " lostFocus");
        box->change = hear(*control);
        box->text = "1";
      }
      if (auto* combo = dynamic_cast<ui::ComboBox*>(control)) {
        combo->items = std::vector<std::string>{"a", "b"};
        combo->listIndex = 0;
        combo->click = hear(*control);
      }
      if (auto* item = dynamic_cast<ui::MenuItem*>(control);
          item && item->entries.empty() && !item->separator)
        item->click = hear(*control);
      if (auto* list = dynamic_cast<ui::ListView*>(control)) {
        while (list->count() < 2) list->add("row");
        list->select(1);
        if (list->itemClick) list->itemClick = hear(*control, " itemClick");
        list->click = hear(*control);
        if (list->dblClick) list->dblClick = hear(*control, " dblClick");
        if (list->columnClick) list->columnClick = hear(*control, " columnClick");
        if (list->itemCheck) list->itemCheck = hear(*control, " itemCheck");
        if (list->moveSelected) list->moveSelected = hear(*control, " moveSelected");
        if (list->afterLabelEdit) list->afterLabelEdit = hear(*control, " afterLabelEdit");
      }
      control->changed();
    }
  }

  void expectHeard(const ui::Control& control, const char* event = "") {
    settle();
    EXPECT_TRUE(heard.contains(control.name() + event)) << control.name() << event;
  }

  // Does what a user can do with the control.
  void use(const Part& part) {
    ui::Control& control = *part.control;
    QWidget* widget = part.widget();
    if (auto* item = dynamic_cast<ui::MenuItem*>(&control)) return useMenu(*item, part.object);
    if (dynamic_cast<ui::Button*>(&control) || dynamic_cast<ui::OptionButton*>(&control)) {
      EXPECT_NE(widget->focusPolicy(), Qt::NoFocus) << control.name();
      QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, widget->height() / 2));
    } else if (auto* label = dynamic_cast<ui::Label*>(&control)) {
      if (!label->click) return;
      QTest::keyClick(widget, Qt::Key_Space);
    } else if (auto* box = dynamic_cast<ui::TextBox*>(&control)) {
      window->setFocus();
      widget->setFocus();
      QTest::keyClick(widget, Qt::Key_End);
      QTest::keyClick(widget, Qt::Key_7);
      QTest::keyClick(widget, Qt::Key_Return);
      const char* enter = box->lineBreaks ? "\n" : box->multiLine ? "\\n" : "";
      EXPECT_EQ(box->text.get(), std::string("17") + enter) << control.name();
      const auto* line = qobject_cast<QLineEdit*>(widget);
      EXPECT_EQ(line && line->echoMode() == QLineEdit::Password, box->password) << control.name();
      expectHeard(control, " gotFocus");
      widget->clearFocus();
      expectHeard(control, " lostFocus");
    } else if (auto* combo = dynamic_cast<ui::ComboBox*>(&control)) {
      QTest::keyClick(widget, Qt::Key_Down);
      EXPECT_EQ(combo->listIndex, 1) << control.name();
    } else if (dynamic_cast<ui::TabStrip*>(&control)) {
      auto* tabs = qobject_cast<QTabBar*>(widget);
      ASSERT_GT(tabs->count(), 1) << control.name();
      QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(1).center());
      tabs->setFocus();
      QTest::keyClick(tabs, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
      EXPECT_EQ(tabs->currentIndex(), 0) << control.name();
    } else if (dynamic_cast<ui::Image*>(&control)) {
      QTest::mouseClick(widget, Qt::LeftButton);
      if (form == &app.frmMain) expectHeard(control, " mouseDown");
      if (form != &app.frmShowPic && form != &app.frmMain) return;  // is looked at
    } else if (dynamic_cast<ui::Frame*>(&control)) {
      if (form == &app.frmMain) QTest::mouseDClick(widget, Qt::LeftButton, {}, QPoint(1, 1));
      if (form != &app.frmMain) return;
    } else if (dynamic_cast<ui::SplitBar*>(&control)) {
      QTest::keyClick(widget, Qt::Key_Down);
    } else if (auto* divider = dynamic_cast<ui::Divider*>(&control)) {
      const int share = divider->share;
      QTest::keyClick(qobject_cast<QSplitter*>(widget)->handle(1), Qt::Key_Left);
      EXPECT_LT(divider->share, share) << control.name();
      return;
    } else if (dynamic_cast<ui::FolderTree*>(&control)) {
      auto* tree = qobject_cast<QTreeWidget*>(widget);
      ASSERT_GT(tree->topLevelItemCount(), 0) << control.name();
      tree->setCurrentItem(nullptr);
      QTest::keyClick(tree, Qt::Key_Down);
      QTest::keyClick(tree, Qt::Key_Right);
      QTest::keyClick(tree, Qt::Key_Down);
    } else if (auto* line = dynamic_cast<ui::StatusLine*>(&control)) {
      line->caption = "At work";
      line->setProgress(40);
      settle();
      EXPECT_EQ(widget->accessibleDescription(), "At work 40 percent");
      return;
    } else if (auto* list = dynamic_cast<ui::ListView*>(&control)) {
      return useList(*list, *qobject_cast<QTreeView*>(widget));
    } else {
      ADD_FAILURE() << control.name() << " is of a kind that nothing is known of";
    }
    expectHeard(control);
  }

  void useMenu(ui::MenuItem& item, QObject* object) {
    auto* action = qobject_cast<QAction*>(object);
    if (item.separator || !action) return;  // to a menu its entries happen
    item.checked = true;
    settle();
    EXPECT_TRUE(action->isChecked()) << item.name();
    if (item.shortcut.empty()) {
      action->trigger();
    } else {
      const auto key = QKeySequence(QString::fromStdString(item.shortcut))[0];
      find<QTreeView>(app.frmMain.frameScenery.visible ? "lstScenery" : "lstAircraft")->setFocus();
      QTest::keyClick(QApplication::focusWidget(), key.key(), key.keyboardModifiers());
    }
    settle();
    EXPECT_TRUE(action->isChecked()) << item.name() << " keeps its mark";
    expectHeard(item);
  }

  void useList(ui::ListView& list, QTreeView& view) {
    const auto clickSecond = [&view] {
      const QAbstractItemModel& rows = *view.model();
      QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                        view.visualRect(rows.index(1, rows.columnCount() - 1)).center());
      settle();
    };
    EXPECT_EQ(view.model()->rowCount(), list.count()) << list.name();
    EXPECT_EQ(view.currentIndex().row(), 0) << list.name();
    clickSecond();
    EXPECT_EQ(list.selected(), 2) << list.name();
    expectHeard(list, list.itemClick ? " itemClick" : "");
    if (list.itemClick) clickSecond();
    expectHeard(list);
    if (list.columnClick) {
      QTest::mouseClick(view.header()->viewport(), Qt::LeftButton, {}, QPoint(20, 8));
      expectHeard(list, " columnClick");
    }
    list.sort(1 % static_cast<int>(list.columns().size()), ui::SortOrder::descending);
    settle();
    EXPECT_TRUE(view.header()->isSortIndicatorShown()) << list.name();
    EXPECT_EQ(view.header()->sortIndicatorSection(), view.header()->count() - 1) << list.name();
    EXPECT_EQ(view.header()->sortIndicatorOrder(), Qt::DescendingOrder) << list.name();
    view.setFocus();
    if (list.checkBoxes) {
      const bool was = list.checked(list.selected());
      QTest::keyClick(&view, Qt::Key_Space);
      expectHeard(list, " itemCheck");
      EXPECT_NE(list.checked(list.selected()), was) << list.name();
    }
    if (list.moveSelected) {
      QTest::keyClick(&view, Qt::Key_Up, Qt::ControlModifier);
      expectHeard(list, " moveSelected");
    }
    if (list.dblClick) {
      QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, cell(view, list.selected()));
      expectHeard(list, " dblClick");
      heard.erase(list.name() + " dblClick");
      QTest::keyClick(&view, Qt::Key_Return);
      expectHeard(list, " dblClick");
    }
    QTest::keySequence(&view, QKeySequence::Copy);
    const auto last = view.currentIndex().siblingAtColumn(view.model()->columnCount() - 1);
    EXPECT_EQ(QApplication::clipboard()->text(), last.data().toString()) << list.name();
    if (!list.afterLabelEdit) return;
    doubleClickName(view, list.selected());
    auto* editor = view.findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr) << list.name();
    QTest::keyClick(editor, Qt::Key_Return);
    expectHeard(list, " afterLabelEdit");
  }

  // Looks at all that shows now, and uses what has not been used before.
  void goThrough(const std::string& view) {
    expectAsTheModelSays(view);
    expectInPlace();
    std::map<ui::Control*, std::pair<bool, bool>> before;
    for (const Part& part : parts)
      before[part.control] = {part.control->visible, part.control->enabled};
    const auto set = [this](bool visible, bool enabled, const std::string& when) {
      for (const Part& part : parts) {
        if (isAlways(*part.control)) continue;
        if (isLeaf(*part.control)) part.control->visible = visible;
        part.control->enabled = enabled;
      }
      expectAsTheModelSays(when);
    };
    set(false, true, view + ", all hidden");
    set(true, false, view + ", all disabled");
    heard.clear();
    listen();
    settle();
    EXPECT_EQ(heard, std::set<std::string>{}) << "it was not the user who changed all that";
    set(true, true, view + ", all there");
    for (const Part& part : parts) {
      if (isDone(part) || (part.widget() && !part.widget()->isVisible() &&
                           !dynamic_cast<ui::MenuItem*>(part.control)))
        continue;
      done.insert(part.control->name());
      use(part);
    }
    for (const auto& [control, state] : before)
      std::tie(control->visible, control->enabled) = state;
    settle();
  }

  void expectAllUsed() const {
    for (const Part& part : parts)
      EXPECT_TRUE(isDone(part)) << "no view shows " << part.control->name();
  }

  ui::Form* form = nullptr;
  QWidget* window = nullptr;
  std::vector<Part> parts;
  std::set<std::string> heard, done;
};

TEST_F(FormTest, TheMainWindowShowsItsFormInEveryView) {
  showMain();
  auto& main = app.frmMain;
  take(main, "FrmMain");
  for (int tab = 0; tab < 3; ++tab) {
    main.tabAddon.value = tab;
    tabAddon_Click(app, tab);
    goThrough("simulator, tab " + std::to_string(tab));
  }
  mnuViewHangar_Click(app);
  main.tabAddon.value = 0;
  tabAddon_Click(app, 0);
  for (int tab = 1; tab < 4; ++tab) {
    main.tabACInfo.value = tab;
    tabACInfo_Click(app, tab);
    goThrough("Hangar, details " + std::to_string(tab));
  }
  mnuViewFSScenery_Click(app);
  goThrough("sceneries");
  expectAllUsed();
}

TEST_F(FormTest, EveryDialogShowsItsForm) {
  showMain();
  const auto otherPage = [this] {
    app.frmSettings.frameLocations.visible = false;
    app.frmSettings.frameEmail.visible = true;
  };
  const struct {
    ui::Form& dialog;
    const char* structName;
    const char* focus;  // has the keyboard when the window comes up
    const char* enter;  // what Enter presses there, "" for nothing
    std::function<void()> otherPage = {};
  } dialogs[] = {{app.frmSettings, "FrmSettings", "txtFSRoot", "btnOK", otherPage},
                 {app.frmIdentity, "FrmIdentity", "txtFirstName", "btnOK"},
                 {app.frmMailPack, "FrmMailPack", "txtEMail", ""},
                 {app.frmDirSelect, "FrmDirSelect", "Dir1", "btnOK"},
                 {app.frmSCOptions, "FrmSCOptions", "lstFlatten", ""},
                 {app.frmShowPic, "FrmShowPic", "imgShowPic", "imgShowPic"},
                 {app.frmSplash, "FrmSplash", "btnClose", "btnClose"}};
  app.frmSettings.tabSettings.tabs = std::vector<std::string>{"Locations", "Email"};
  app.frmSettings.lblIntro.visible = app.frmSplash.btnClose.visible = true;
  for (const auto& [dialog, structName, focus, enter, other] : dialogs) {
    inDialog(dialog, [&, &dialog = dialog, &name = structName, &focus = focus, &enter = enter,
                      &other = other] {
      take(dialog, name);
      auto* first = find<QWidget>(focus);
      EXPECT_TRUE(first && first == window->focusWidget()) << name;
      bool closed = false;
      dialog.closed = [&closed] { closed = true; };
      goThrough(name);
      heard.clear();
      first->setFocus();
      QTest::keyClick(first, Qt::Key_Return);
      if (auto* editor = first->findChild<QLineEdit*>(); editor && editor->isVisible())
        QTest::keyClick(editor, Qt::Key_Escape);  // of a row that is edited by Enter
      for (const char* press : {"btnOK", "btnSend", "btnCancel", "btnClose", "imgShowPic"})
        EXPECT_EQ(heard.contains(press), std::string(press) == enter) << name << ", " << press;
      if (other) {
        other();
        goThrough(name + std::string(", other page"));
      }
      expectAllUsed();
      // Escape is what leaves the form without its work, or else its close box.
      heard.clear();
      QTest::keyClick(window, Qt::Key_Escape);
      EXPECT_EQ(heard.contains("btnCancel") + (closed ? 1 : 0), 1) << name;
      EXPECT_FALSE(heard.contains("btnOK") || heard.contains("btnSend")) << name;
    });
    windows.showModal(dialog, &app.frmMain);
    EXPECT_EQ(find<QWidget>(dialog.name().c_str()), nullptr) << "has gone with its form";
  }
}

}  // namespace skv::test
