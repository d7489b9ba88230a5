#include "ui/qt/window_fixture.h"

#include <QCoreApplication>
#include <QTimer>

namespace skv::test {

WindowTest::WindowTest() {
  EXPECT_TRUE(disk.makeFolder("C:\\Hangar").ok());
  storeSettings();
  app.frmMain.closed = [this] {
    Form_Unload(app);
    windows.quit();
  };
}

WindowTest::~WindowTest() {
  windows.unloadAll();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void WindowTest::showMain() {
  windows.prepare(app.frmMain);
  Form_Load(app);
  settle();
}

void WindowTest::fillAircraft(int rows) {
  auto& list = app.frmMain.lstAircraft;
  for (int row = 1; row <= rows; ++row) {
    const std::string number = std::to_string(row);
    list.add("Aircraft " + number, {"C:\\FS\\aircraft\\a" + number + "\\"});
  }
  ui::raise(list.click);
  settle();
}

void WindowTest::settle() {
  // What one round brings about may wait for the next one.
  for (int rounds = 0; rounds < 4; ++rounds) QCoreApplication::processEvents();
}

QWidget* WindowTest::mainWindow() { return find<QTreeView>("lstAircraft")->window(); }

void WindowTest::click(const char* name, int tab) {
  if (auto* entry = find<QAction>(name)) {
    entry->trigger();
  } else if (auto* tabs = find<QTabBar>(name)) {
    QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(tab).center());
  } else {
    auto* widget = find<QWidget>(name);
    ASSERT_NE(widget, nullptr) << name;
    QTest::mouseClick(widget, Qt::LeftButton);
  }
  settle();
}

void WindowTest::once(std::function<bool()> there, std::function<void()> act, QDeadlineTimer end) {
  QTimer::singleShot(0, qApp, [=] {
    if (there())
      act();
    else if (end.hasExpired())
      ADD_FAILURE() << "what was waited for has not come up";
    else
      once(there, act, end);
  });
}

void WindowTest::inDialog(ui::Form& form, std::function<void()> act) {
  const auto there = [&form] { return form.visible.get(); };
  once(there, [this, &form, act = std::move(act)] {
    settle();
    act();
    if (form.visible) windows.hide(form);
  });
}

QPoint WindowTest::cell(const QTreeView& view, int row) {
  return view.visualRect(view.model()->index(row - 1, 1)).center();
}

void WindowTest::clickRow(QTreeView& view, int row) {
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, cell(view, row));
  settle();
}

void WindowTest::doubleClickName(QTreeView& view, int row) {
  const QPoint name = view.visualRect(view.model()->index(row - 1, 0)).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, name);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, name);
  settle();
}

}  // namespace skv::test
