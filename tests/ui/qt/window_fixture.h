// The program with its real windows, offscreen, over a temporary drive C: that holds a simulator at
// C:\FS\.
#pragma once

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QDeadlineTimer>
#include <QMouseEvent>
#include <QTabBar>
#include <QTest>
#include <QTreeView>
#include <functional>

#include "support/program_fixture.h"
#include "ui/qt/qt_windowing.h"

namespace skv::test {

class WindowTest : public ProgramWith<ui::qt::QtWindowing> {
 protected:
  WindowTest();
  ~WindowTest() override;

  // Start-up with the settings stored; a window that is closed ends the program.
  void showMain();
  // Adds rows "Aircraft 1" and so on.
  void fillAircraft(int rows);
  // Runs the event loop until nothing is pending.
  static void settle();

  // The widget or action of a control; null when it is on no window that shows.
  template <class T>
  static T* find(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (!window->isVisible()) continue;
      if (auto* self = qobject_cast<T*>(window); self && self->objectName() == name) return self;
      for (T* child : window->findChildren<T*>(QLatin1String(name)))
        if (const auto* widget = qobject_cast<QWidget*>(child);
            !widget || widget->window() == window)  // not of a dialog that it owns
          return child;
    }
    return nullptr;
  }
  static QWidget* mainWindow();
  // Clicks a button, a menu entry, or the tab of a strip.
  static void click(const char* name, int tab = 0);
  // Does `act` as soon as `there` answers true; a test fails by what has not come in time.
  static void once(std::function<bool()> there, std::function<void()> act,
                   QDeadlineTimer end = QDeadlineTimer(10000));
  // Plays the user in a dialog that is about to come up and to be waited for. A dialog that is
  // still there afterwards is taken away, so that a failed check does not wait forever.
  void inDialog(ui::Form& form, std::function<void()> act);
  // Rows from 1.
  static QPoint cell(const QTreeView& view, int row);
  static void clickRow(QTreeView& view, int row);
  static void doubleClickName(QTreeView& view, int row);
};

}  // namespace skv::test
