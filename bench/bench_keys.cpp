// skyvault-bench-keys <run folder> move|select <rows>: the time from a key to the window that shows
// what it did, the median of many.
//
//   move    a row of the scenery list to the next place
//   select  the next aircraft, with `rows` panels and `rows` sounds in the lists; the Panel tab
//   shows
#include <QApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QTreeView>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "base/text.h"
#include "bench_run.h"
#include "core/stores.h"
#include "sample/sample_files.h"
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

QTreeView& listOnScreen(const char* name) {
  for (int tries = 0; tries < 100; ++tries, runEvents())
    for (QWidget* window : QApplication::topLevelWidgets())
      if (auto* list = window->findChild<QTreeView*>(QLatin1String(name));
          list != nullptr && list->isVisible())
        return *list;
  throw std::runtime_error(std::string(name) + " is not on screen");
}

constexpr int keys = 60;

// `state` changes by the key's work, and the list `shown` is painted anew.
template <class State>
double medianTime(QTreeView& typedInto, Qt::KeyboardModifiers modifiers, QTreeView& shown,
                  State state) {
  Paints paints(*shown.viewport());
  std::vector<double> seconds;
  for (int i = 0; i < keys; ++i) {
    QCoreApplication::processEvents();
    const auto before = state();
    const int painted = paints.count;
    const auto start = std::chrono::steady_clock::now();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Down, modifiers);
    QCoreApplication::sendEvent(&typedInto, &key);
    while (state() == before || paints.count == painted) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 1000);
      if (std::chrono::steady_clock::now() - start > std::chrono::minutes(1))
        throw std::runtime_error("the key has no effect");
    }
    seconds.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }
  std::ranges::sort(seconds);
  return seconds[keys / 2];
}

using Run = BenchRun<ui::qt::QtWindowing>;

double move(Run& run, int count) {
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
  QTreeView& view = listOnScreen("lstScenery");
  const ui::ListView::RowId row = rows.id(rows.selected());
  return medianTime(view, Qt::ControlModifier, view, [&] { return rows.rowOf(row); });
}

double select(Run& run, int count) {
  const auto root = run.driveC() / "FS";
  const std::string folder = "C:\\FS\\aircraft\\";
  sample::makeAircraftFolders(root / "aircraft", keys + 1);
  sample::writeFile(root / aircraftListFile, sample::aircraftList(folder, keys + 1));
  const std::string rows = sample::aircraftList(folder, static_cast<std::size_t>(count));
  for (const auto& [file, part] :
       {std::pair{panelListFile, "panel\\\r\n"}, std::pair{soundListFile, "sound\\\r\n"}}) {
    std::string bytes;
    for (const std::string& line : split(rows, '\n'))
      if (!line.empty()) bytes += line.substr(0, line.size() - 1) + part;
    sample::writeFile(root / file, bytes);
  }
  ui::FrmMain& form = run.app.frmMain;
  ui::raise(form.mnuViewFSAircraft.click);
  form.lstAircraft.select(1);
  form.tabAddon.value = 1;
  form.tabAddon.click(1);
  runEvents();
  const auto selected = [&] {
    return std::pair(form.lstPanel.selected(), form.lstSound.selected());
  };
  const double median =
      medianTime(listOnScreen("lstAircraft"), Qt::NoModifier, listOnScreen("lstPanel"), selected);
  if (form.lstPanel.count() != count || selected() != std::pair(keys + 1, keys + 1))
    throw std::runtime_error("the tabs do not show the aircraft's panel and sound");
  return median;
}

int measure(const char* folder, const std::string& what, int count) {
  ui::qt::dress(*qobject_cast<QApplication*>(qApp));
  Run run(folder);
  for (const auto& [key, value] : {std::pair<const char*, std::string>{"FSRoot", run.app.FSRoot},
                                   {"HangarDir", run.app.HangarDir},
                                   {"PacksDir", run.app.PacksDir},
                                   {"AppVersion", versionText()},
                                   {"LastVersionCheck", decimal(run.clock.now())}})
    run.settings.write("General", key, value).skipped();
  run.windows.prepare(run.app.frmMain);
  Form_Load(run.app);
  runEvents();
  std::cout << (what == "move" ? move(run, count) : select(run, count)) << '\n';
  run.windows.unloadAll();
  return 0;
}

}  // namespace
}  // namespace skv::bench

int main(int argc, char** argv) {
  const std::string what = argc == 4 ? argv[2] : "";
  const int rows = argc == 4 ? std::atoi(argv[3]) : 0;
  if (rows < 200 || (what != "move" && what != "select")) {
    std::cerr << "usage: skyvault-bench-keys <run folder> move|select <rows, 200 or more>\n";
    return 2;
  }
  skv::bench::useOffscreenWithoutScreen();
  QApplication application(argc, argv);
  try {
    return skv::bench::measure(argv[1], what, rows);
  } catch (const std::exception& failure) {
    std::cerr << "skyvault-bench-keys: " << failure.what() << "\n";
    return 1;
  }
}
