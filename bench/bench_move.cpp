// skyvault-bench-move <run folder> <rows>: the time from a key that moves a row of the scenery list
// to the window that shows it moved, the median of many moves.
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QTreeView>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "bench_run.h"
#include "ui/qt/qt_windowing.h"
#include "ui/qt/theme.h"
#include "ui/startup.h"

namespace skv::bench {
namespace {

// Counts the pictures that a widget has drawn of itself.
class Paints : public QObject {
 public:
  explicit Paints(QWidget& widget) : widget_(widget) { widget.installEventFilter(this); }
  int count = 0;

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::Paint || inside_) return false;
    // The paint itself counts, so it is done within.
    inside_ = true;
    QCoreApplication::sendEvent(&widget_, event);
    inside_ = false;
    ++count;
    return true;
  }

 private:
  QWidget& widget_;
  bool inside_ = false;
};

// What one round brings about may wait for the next one.
void runEvents() {
  for (int rounds = 0; rounds < 5; ++rounds) QCoreApplication::processEvents();
}

QTreeView* sceneryList() {
  for (QWidget* window : QApplication::topLevelWidgets())
    if (auto* list = window->findChild<QTreeView*>(QStringLiteral("lstScenery"))) return list;
  return nullptr;
}

double medianMove(ui::ListView& rows, QTreeView& view) {
  constexpr int moves = 60;
  Paints paints(*view.viewport());
  std::vector<double> seconds;
  for (int i = 0; i < moves; ++i) {
    QCoreApplication::processEvents();
    const ui::ListView::RowId row = rows.id(rows.selected());
    const int before = rows.rowOf(row);
    const int painted = paints.count;
    const auto start = std::chrono::steady_clock::now();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Down, Qt::ControlModifier);
    QCoreApplication::sendEvent(&view, &key);
    while (rows.rowOf(row) == before || paints.count == painted)
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
    seconds.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::ranges::sort(seconds);
  return seconds[moves / 2];
}

int measure(const char* folder, int count) {
  ui::qt::dress(*qobject_cast<QApplication*>(qApp));
  BenchRun<ui::qt::QtWindowing> run(folder);
  for (const auto& [key, value] : {std::pair<const char*, std::string>{"FSRoot", run.app.FSRoot},
                                   {"HangarDir", run.app.HangarDir},
                                   {"PacksDir", run.app.PacksDir},
                                   {"AppVersion", versionText()},
                                   {"LastVersionCheck", decimal(run.clock.now())}})
    run.settings.write("General", key, value).skipped();
  run.windows.prepare(run.app.frmMain);
  Form_Load(run.app);
  runEvents();
  ui::raise(run.app.frmMain.mnuViewFSScenery.click);
  ui::ListView& rows = run.app.frmMain.lstScenery;
  rows.clear();
  for (int row = count; row >= 1; --row) {
    const std::string number = std::to_string(row);
    rows.add("Area " + number,
             {"Scenery\\Area" + number, number, number,
              std::string(3 - std::min<std::size_t>(number.size(), 3), '0') + number});
  }
  rows.select(count / 2);
  if (!rows.moveSelected)
    rows.moveSelected = [&rows](int steps) {
      rows.swapRows(rows.selected(), rows.selected() + steps);
    };
  runEvents();
  QTreeView* view = sceneryList();
  if (!view || !view->isVisible()) {
    std::cerr << "the list is not on screen\n";
    return 1;
  }
  std::cout << medianMove(rows, *view) << '\n';
  run.windows.unloadAll();
  return 0;
}

}  // namespace
}  // namespace skv::bench

int main(int argc, char** argv) {
  const int rows = argc == 3 ? std::atoi(argv[2]) : 0;
  if (rows < 200) {
    std::cerr << "usage: skyvault-bench-move <run folder> <rows, 200 or more>\n";
    return 2;
  }
  skv::bench::useOffscreenWithoutScreen();
  QApplication application(argc, argv);
  return skv::bench::measure(argv[1], rows);
}
