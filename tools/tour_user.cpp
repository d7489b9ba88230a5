#include "tour_user.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <iostream>
#include <utility>

#include "ui/qt/picture_view.h"
#include "ui/qt/status_view.h"

namespace skv::tour {

namespace {

QTreeView& list(const std::string& name) { return User::find<QTreeView>(name); }

QModelIndex index(const std::string& name, int row, int column) {
  const QModelIndex result = list(name).model()->index(row - 1, column);
  if (!result.isValid())
    throw Wrong(name + " has no row " + std::to_string(row) + ", column " + std::to_string(column));
  return result;
}

bool showsItsPicture(const QWidget* widget) {
  const auto* view = dynamic_cast<const ui::qt::PictureView*>(widget);
  return !view || view->settled();
}

// Every window lies on the one that has opened it, and the one in use on its siblings.
std::pair<int, bool> heightOf(const QWidget* window) {
  int owners = 0;
  for (const QWidget* each = window->parentWidget(); each; each = each->parentWidget())
    owners += each->isWindow() ? 1 : 0;
  return {owners, window->isActiveWindow()};
}

std::string flat(QString text) {
  return text.replace(QLatin1Char('\n'), QLatin1Char(' ')).toStdString();
}

}  // namespace

void require(bool condition, const std::string& what) {
  if (!condition) throw Wrong(what);
}

User::User(std::filesystem::path pictures) : pictures_(std::move(pictures)) {
  std::filesystem::create_directories(pictures_);
  watch();
}

// Boxes run event loops of their own, and so does an answer that opens the next box: every look is
// a timer of its own, since one timer does not tick inside its own tick.
void User::watch() {
  QTimer::singleShot(5, &context_, [this] {
    watch();
    look();
  });
}

bool User::shows(const std::string& window) {
  for (QWidget* it : QApplication::topLevelWidgets())
    if (it->isVisible() && it->objectName() == window.c_str()) return true;
  return false;
}

void User::stage(const std::string& text) { std::cout << "* " << text << std::endl; }

void User::picture(const std::string& name) {
  settle();
  // Pictures are read beside the window's thread.
  require(QTest::qWaitFor(
              [] { return std::ranges::all_of(QApplication::allWidgets(), showsItsPicture); }),
          "a picture is still not shown");
  // The windows as they lie on each other; menus and boxes are windows of their own.
  QRect area;
  QList<QWidget*> windows;
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (!window->isVisible() || window->width() < 2) continue;
    area |= window->geometry();
    windows.append(window);
  }
  std::ranges::stable_sort(windows, {}, heightOf);
  require(!area.isEmpty(), "there is nothing to take a picture of");
  QPixmap sheet(area.size());
  sheet.fill(QColor(0x70, 0x78, 0x80));
  QPainter painter(&sheet);
  for (QWidget* window : windows) {
    const QRect place = window->geometry().translated(-area.topLeft());
    painter.drawPixmap(place.topLeft(), window->grab());
    // No window manager draws a border here.
    painter.setPen(QColor(0x70, 0x78, 0x80));
    if (window != windows.front()) painter.drawRect(place.adjusted(-1, -1, 0, 0));
  }
  painter.end();

  const std::string number = std::to_string(++pictureNumber_);
  const auto file = pictures_ / ((number.size() < 2 ? "0" : "") + number + "-" + name + ".png");
  require(sheet.save(QString::fromStdString(file.string())), "cannot write " + file.string());
  std::cout << "    " << file.filename().string() << std::endl;
}

void User::settle() {
  // What one round brings about may wait for the next one.
  for (int rounds = 0; rounds < 5; ++rounds) QCoreApplication::processEvents();
}

void User::click(const std::string& name) {
  auto& widget = find<QWidget>(name);
  require(widget.isEnabled(), name + " is disabled");
  QTest::mouseClick(&widget, Qt::LeftButton);
  settle();
}

void User::clickTab(const std::string& strip, const std::string& caption) {
  auto& tabs = find<QTabBar>(strip);
  for (int i = 0; i < tabs.count(); ++i) {
    if (User::caption(tabs.tabText(i)) != caption) continue;
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(i).center());
    return settle();
  }
  throw Wrong(strip + " has no tab " + caption);
}

std::string User::caption(const QString& text) {
  return QString(text).remove(QLatin1Char('&')).toStdString();
}

void User::chooseMenu(const std::vector<std::string>& captions, const std::string& pictureName) {
  const auto entry = [](QWidget& menu, const std::string& text) -> QAction& {
    for (QAction* action : menu.actions())
      if (caption(action->text()) == text && action->isVisible()) {
        require(action->isEnabled(), "the menu entry " + text + " is disabled");
        return *action;
      }
    throw Wrong("there is no menu entry " + text);
  };
  auto* bar = find<QWidget>("frmMain").findChild<QMenuBar*>();
  require(bar != nullptr, "there is no menu bar");
  QAction* action = &entry(*bar, captions.front());
  QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
  settle();
  for (std::size_t i = 1; i < captions.size(); ++i) {
    QMenu* menu = action->menu();
    require(menu != nullptr && menu->isVisible(), "the menu " + captions[i - 1] + " did not open");
    action = &entry(*menu, captions[i]);
    const QPoint place = menu->actionGeometry(action).center();
    QTest::mouseMove(menu, place);
    if (i + 1 == captions.size() && !pictureName.empty()) picture(pictureName);
    QTest::mouseClick(menu, Qt::LeftButton, {}, place);
    settle();
  }
}

void User::press(int key, Qt::KeyboardModifiers modifiers) {
  auto& window = find<QWidget>("frmMain");
  // What a window manager does when a box closes.
  window.activateWindow();
  settle();
  QTest::keyClick(&window, static_cast<Qt::Key>(key), modifiers);
  settle();
}

void User::type(const std::string& field, const std::string& text) {
  auto& widget = find<QWidget>(field);
  widget.setFocus();
  settle();
  QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&widget, Qt::Key_Delete);
  QTest::keyClicks(&widget, QString::fromStdString(text));
  settle();
}

std::string User::text(const std::string& field) {
  auto& widget = find<QWidget>(field);
  if (auto* line = qobject_cast<QLineEdit*>(&widget)) return line->text().toStdString();
  if (auto* area = qobject_cast<QPlainTextEdit*>(&widget)) return area->toPlainText().toStdString();
  if (auto* button = qobject_cast<QAbstractButton*>(&widget)) return button->text().toStdString();
  if (auto* status = dynamic_cast<ui::qt::StatusView*>(&widget))
    return status->text().toStdString();
  return widget.property("text").toString().toStdString();
}

int User::rows(const std::string& name) { return list(name).model()->rowCount(); }

std::string User::cell(const std::string& name, int row, int column) {
  return index(name, row, column).data().toString().toStdString();
}

int User::rowOf(const std::string& name, const std::string& text, int column) {
  for (int row = 1; row <= rows(name); ++row)
    if (cell(name, row, column) == text) return row;
  throw Wrong(name + " has no row " + text);
}

int User::selectedRow(const std::string& name) {
  const QModelIndexList selected = list(name).selectionModel()->selectedRows();
  return selected.isEmpty() ? 0 : selected.front().row() + 1;
}

bool User::sees(const std::string& name, int row) {
  auto& view = list(name);
  return view.viewport()->rect().contains(view.visualRect(index(name, row, 0)).center());
}

void User::clickRow(const std::string& name, int row) {
  auto& view = list(name);
  const QModelIndex place = index(name, row, 1);
  view.scrollTo(place);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.visualRect(place).center());
  settle();
}

std::string User::told(const std::string& name, int row) {
  return index(name, row, 0).data(Qt::AccessibleTextRole).toString().toStdString();
}

void User::tick(const std::string& name, int row) {
  auto& view = list(name);
  view.scrollTo(index(name, row, 0));
  const QRect place = view.visualRect(index(name, row, 0));
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, {place.left() + 12, place.center().y()});
  settle();
}

void User::dragRow(const std::string& name, int from, int to, const std::string& pictureName) {
  auto& view = list(name);
  const QPoint start = view.visualRect(index(name, from, 0)).center();
  const QPoint end(start.x() + 10, view.visualRect(index(name, to, 0)).bottom() - 2);
  const auto mouse = [&](QEvent::Type type, QPoint place) {
    QMouseEvent event(type, place, view.viewport()->mapToGlobal(place),
                      type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
    QApplication::sendEvent(view.viewport(), &event);
    settle();
  };
  mouse(QEvent::MouseButtonPress, start);
  mouse(QEvent::MouseMove, end);
  picture(pictureName);
  mouse(QEvent::MouseButtonRelease, end);
}

void User::openFolder(const std::string& name, const std::vector<std::string>& names) {
  auto& tree = find<QTreeView>(name);
  QModelIndex folder;
  for (const std::string& each : names) {
    if (folder.isValid()) {
      tree.expand(folder);
      settle();
    }
    QModelIndex found;
    for (int row = 0; row < tree.model()->rowCount(folder); ++row)
      if (const QModelIndex child = tree.model()->index(row, 0, folder);
          child.data().toString().toStdString() == each)
        found = child;
    require(found.isValid(), std::string(name).append(" has no folder ").append(each));
    folder = found;
  }
  tree.scrollTo(folder);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(folder).center());
  settle();
}

void User::pressIn(const std::string& name, int key, Qt::KeyboardModifiers modifiers) {
  auto& widget = find<QWidget>(name);
  widget.setFocus();
  QTest::keyClick(&widget, static_cast<Qt::Key>(key), modifiers);
  settle();
}

void User::pickFile(QWidget& window, const std::string& archive) {
  QAbstractItemView* list = nullptr;
  for (const char* name : {"treeView", "listView"})
    if (auto* view = window.findChild<QAbstractItemView*>(QLatin1String(name)))
      if (view->isVisible()) list = view;
  if (list == nullptr) throw Wrong("the file dialog has no list");
  // The dialog reads the folder in the background.
  QModelIndexList found;
  const auto listed = [&] {
    found = list->model()->match(list->model()->index(0, 0, list->rootIndex()), Qt::DisplayRole,
                                 QString::fromStdString(archive), 1, Qt::MatchExactly);
    return !found.isEmpty();
  };
  require(QTest::qWaitFor(listed), "the file dialog does not list " + archive);
  list->scrollTo(found.front());
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualRect(found.front()).center());
  auto* open = window.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open);
  require(open != nullptr && open->isEnabled(), "the file dialog does not open " + archive);
  QTest::mouseClick(open, Qt::LeftButton);
}

void User::rename(const std::string& name, int row, const std::string& text) {
  auto& view = list(name);
  clickRow(name, row);
  const QPoint place = view.visualRect(index(name, row, 0)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
  settle();
  auto* editor = view.viewport()->findChild<QLineEdit*>();
  require(editor != nullptr, "the name does not open for editing");
  editor->selectAll();
  QTest::keyClicks(editor, QString::fromStdString(text));
  QTest::keyClick(editor, Qt::Key_Return);
  settle();
}

void User::expect(const std::string& window, std::function<void(QWidget&)> answer) {
  answers_.push_back({window, std::move(answer)});
}

void User::expectBox(const std::string& text, const std::string& button) {
  expect("messageBox", [this, text, button](QWidget& window) {
    auto& box = dynamic_cast<QMessageBox&>(window);
    require(flat(box.text()).starts_with(text), "the box says: " + flat(box.text()));
    picture("box");
    pressButton(window, button);
  });
}

void User::expectAnyTime(const std::string& part, const std::string& button) {
  anyTime_.emplace_back(part, button);
}

bool User::comesAnyTime(QWidget& window) {
  const auto* box = qobject_cast<QMessageBox*>(&window);
  if (box == nullptr) return false;
  const std::string text = flat(box->text());
  for (const auto& [part, button] : anyTime_) {
    if (text.find(part) == std::string::npos) continue;
    answers_.push_front({"messageBox", [this, answer = button](QWidget& opened) {
                           picture("box");
                           pressButton(opened, answer);
                         }});
    return true;
  }
  return false;
}

void User::pressButton(QWidget& box, const std::string& button) {
  for (QAbstractButton* it : dynamic_cast<QMessageBox&>(box).buttons())
    if (caption(it->text()) == button) return QTest::mouseClick(it, Qt::LeftButton);
  throw Wrong("the box has no button " + button);
}

QWidget* User::waiting() const {
  if (QWidget* modal = QApplication::activeModalWidget()) return modal;
  if (answers_.empty()) return nullptr;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isVisible() && window->objectName() == answers_.front().window.c_str())
      return window;
  return nullptr;
}

// Runs inside whatever loop waits for an answer: what goes wrong here is kept for allAnswered,
// since it must not be thrown through Qt.
void User::look() {
  QWidget* window = waiting();
  if (window == nullptr || window == answering_ || !window->isVisible()) return;
  const std::string name = window->objectName().toStdString();
  if (!comesAnyTime(*window) && (answers_.empty() || answers_.front().window != name)) {
    // A window that is answered already may still be on its way out.
    if (answering_ != nullptr) return;
    if (wrong_.empty()) {
      wrong_ = "nobody expected " + name;
      if (auto* box = qobject_cast<QMessageBox*>(window)) wrong_ += ": " + flat(box->text());
    }
    window->close();
    return;
  }
  const Answer answer = std::move(answers_.front());
  answers_.pop_front();
  QWidget* before = std::exchange(answering_, window);
  try {
    answer.act(*window);
  } catch (const std::exception& failure) {
    if (wrong_.empty()) wrong_ = failure.what();
    window->close();
  }
  answering_ = before;
}

void User::allAnswered() {
  settle();
  if (!wrong_.empty()) throw Wrong(wrong_);
  if (!answers_.empty()) throw Wrong(answers_.front().window + " did not come");
}

}  // namespace skv::tour
