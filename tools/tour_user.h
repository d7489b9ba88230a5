// Somebody at the window: finds controls by their names, clicks and types through Qt's own events,
// answers the boxes that come up, and takes pictures.
#pragma once

#include <QApplication>
#include <QObject>
#include <QTreeView>
#include <deque>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

class QAction;
class QMenu;

namespace skv::tour {

// Something is not as it should be; what() says what.
struct Wrong : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class User {
 public:
  // `pictures`: the folder for the pictures, made when it is missing.
  explicit User(std::filesystem::path pictures);

  // The visible widget of that name.
  template <class T = QWidget>
  static T& find(const std::string& name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      if (auto* self = qobject_cast<T*>(window); self && self->objectName() == name.c_str())
        return *self;
      for (T* child : window->findChildren<T*>(QLatin1String(name.c_str())))
        if (child->isVisible()) return *child;
    }
    throw Wrong("nothing on screen is called " + name);
  }
  static bool shows(const std::string& window);

  // Tells the stage, and what comes true with it.
  void stage(const std::string& text);
  // A picture of what is on screen, numbered.
  void picture(const std::string& name);

  // A button, or a tab by its caption.
  void click(const std::string& name);
  void clickTab(const std::string& strip, const std::string& caption);
  // The entries from the menu bar down, by their captions without mnemonics. `pictureName`: a
  // picture is taken while the menus are open.
  void chooseMenu(const std::vector<std::string>& captions, const std::string& pictureName = {});
  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  // Puts the text in place of what the field holds.
  void type(const std::string& field, const std::string& text);
  static std::string text(const std::string& field);

  // Rows count from 1, columns from 0.
  static int rows(const std::string& list);
  static std::string cell(const std::string& list, int row, int column);
  // The first row with that text; throws when there is none.
  static int rowOf(const std::string& list, const std::string& text, int column = 0);
  // 0 when none is selected.
  static int selectedRow(const std::string& list);
  static bool sees(const std::string& list, int row);
  void clickRow(const std::string& list, int row);
  // What a screen reader says of the row.
  static std::string told(const std::string& list, int row);
  // The box before the row.
  void tick(const std::string& list, int row);
  // To the place below that of row `to`. `pictureName`: of the drag.
  void dragRow(const std::string& list, int from, int to, const std::string& pictureName);
  // The folder at the end of the way from the root down, in a tree of folders.
  void openFolder(const std::string& tree, const std::vector<std::string>& names);
  // In the file dialog: the file in the list, then Open.
  static void pickFile(QWidget& window, const std::string& file);
  // A key for a control that has the keyboard.
  void pressIn(const std::string& widget, int key,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier);
  // Renames in place by a double click.
  void rename(const std::string& list, int row, const std::string& name);

  // The next window of that name ("messageBox", "inputBox", "openFile", "frmSettings", ...) is
  // answered by `answer`, while the operation that opened it waits. A box that nobody expects makes
  // the tour go wrong. In the order in which they are expected.
  void expect(const std::string& window, std::function<void(QWidget& window)> answer);
  // A message box: how its text begins, and the button that is pressed ("OK", "Yes", "No").
  void expectBox(const std::string& text, const std::string& button);
  // A message box that may come at any time, since an archive may hold what has no place: a part of
  // its text, and the button.
  void expectAnyTime(const std::string& part, const std::string& button);
  static void pressButton(QWidget& box, const std::string& button);
  // Throws when an expected window did not come, or an answer went wrong.
  void allAnswered();

  // Lets the window come to rest.
  static void settle();

 private:
  struct Answer {
    std::string window;
    std::function<void(QWidget&)> act;
  };
  void watch();
  void look();
  bool comesAnyTime(QWidget& window);
  QWidget* waiting() const;
  static std::string caption(const QString& text);

  std::filesystem::path pictures_;
  int pictureNumber_ = 0;
  std::deque<Answer> answers_;
  std::vector<std::pair<std::string, std::string>> anyTime_;  // part of a text, button
  QWidget* answering_ = nullptr;
  std::string wrong_;
  QObject context_;
};

void require(bool condition, const std::string& what);

}  // namespace skv::tour
