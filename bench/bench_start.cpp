// skyvault-bench-start: the time from starting a process to a window that has drawn itself.
//
//   skyvault-bench-start program <run folder>   FS Skyvault with the list in FS/SKV_AC.lst
//   skyvault-bench-start empty                  a window of Qt's with nothing in it
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QTimer>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "bench_run.h"
#include "ui/qt/qt_windowing.h"
#include "ui/qt/theme.h"
#include "ui/startup.h"

namespace skv::bench {
namespace {

constexpr const char* startVariable = "SKYVAULT_BENCH_START";

long long nanoseconds() {
  return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

// Ends the process when a main window has been painted, and prints the seconds since its start.
class FirstPaint : public QObject {
 public:
  explicit FirstPaint(long long start) : start_(start) { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched))
      QTimer::singleShot(0, this, [this] {
        std::cout << static_cast<double>(nanoseconds() - start_) / 1e9 << std::endl;
        _exit(0);
      });
    return false;
  }

 private:
  long long start_;
};

int showEmptyWindow() {
  QMainWindow window;
  window.resize(1000, 720);  // ours
  window.show();
  return QApplication::exec();
}

int showProgram(const char* folder) {
  ui::qt::dress(*qobject_cast<QApplication*>(qApp));
  BenchRun<ui::qt::QtWindowing> run(folder);
  const std::pair<const char*, std::string> settings[] = {
      {"FSRoot", run.app.FSRoot},
      {"HangarDir", run.app.HangarDir},
      {"PacksDir", run.app.PacksDir},
      {"AppVersion", versionText()},
      {"LastVersionCheck", decimal(run.clock.now())}};
  for (const auto& [key, value] : settings) run.settings.write("General", key, value).skipped();
  run.windows.run([&run] {
    run.windows.prepare(run.app.frmMain);
    Form_Load(run.app);
  });
  return 1;
}

// A process of its own, so that loading the libraries counts.
int startAgain(char** argv) {
  setenv(startVariable, std::to_string(nanoseconds()).c_str(), 1);
  pid_t child = 0;
  int status = 1;
  if (posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, argv, environ) != 0) return 1;
  waitpid(child, &status, 0);
  return status == 0 ? 0 : 1;
}

}  // namespace
}  // namespace skv::bench

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  if (!(what == "empty" && argc == 2) && !(what == "program" && argc == 3)) {
    std::cerr << "usage: skyvault-bench-start empty | program <run folder>\n";
    return 2;
  }
  const char* start = std::getenv(skv::bench::startVariable);
  if (start == nullptr) return skv::bench::startAgain(argv);
  skv::bench::useOffscreenWithoutScreen();
  QApplication application(argc, argv);
  const skv::bench::FirstPaint first(std::stoll(start));
  return what == "empty" ? skv::bench::showEmptyWindow() : skv::bench::showProgram(argv[2]);
}
