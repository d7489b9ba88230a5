// skyvault-bench-op: one operation of the program, once, on given folders, and the seconds it took.
// compare.sh runs it in turn with the tools that do the same work. The real main window is on
// screen and draws what it shows while the operation runs. Paths are the machine's.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QApplication>
#include <chrono>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "aircraft/aircraft_views.h"
#include "aircraft/hangar_transfer.h"
#include "aircraft/list_commands.h"
#include "aircraft/list_files.h"
#include "base/paths.h"
#include "bench_run.h"
#include "core/stores.h"
#include "core/walktree.h"
#include "core/zip_service.h"
#include "packaging/aircraft_installer.h"
#include "packaging/package_commands.h"
#include "packaging/scenery_installer.h"
#include "sample/sample_files.h"
#include "scenery/scenery_transfer.h"
#include "scenery/scenery_view.h"
#include "ui/qt/qt_windowing.h"
#include "ui/qt/theme.h"

namespace skv::bench {
namespace {

constexpr const char* usage =
    "usage: skyvault-bench-op time <program> <arguments>...       another tool, for comparison\n"
    "       skyvault-bench-op <run folder> copy <folder> <target>  WalkCopy and a flush\n"
    "       skyvault-bench-op <run folder> size <folder>           WalkSize\n"
    "       skyvault-bench-op <run folder> find <folder>           a finder that finds nothing\n"
    "       skyvault-bench-op <run folder> scan                    WalkScanAC over FS/aircraft\n"
    "       skyvault-bench-op <run folder> load                    LoadACList of FS/SKV_AC.lst\n"
    "       skyvault-bench-op <run folder> install <archive>       a whole installation\n"
    "       skyvault-bench-op <run folder> to-fs <name>            \"To FS2002...\" of "
    "Hangar/Aircraft/<name>\n"
    "       skyvault-bench-op <run folder> install-scenery <archive>\n"
    "       skyvault-bench-op <run folder> add-scenery <name>      \"Add to FS2002\" of "
    "Library/Scenery/<name>\n"
    "       skyvault-bench-op <run folder> compress <name>         \"Compress\" of "
    "Hangar/Aircraft/<name>\n"
    "       skyvault-bench-op <run folder> uncompress <name>\n"
    "       skyvault-bench-op <run folder> import aircraft|panels|sounds  of FS/aircraft, and "
    "again\n"
    "       skyvault-bench-op <run folder> delete <name>           FS/aircraft/<name>, with its "
    "row\n"
    "       skyvault-bench-op <run folder> find-simulators         in the prefixes of $HOME\n"
    "       skyvault-bench-op <run folder> package <folder> <archive>\n"
    "       skyvault-bench-op <run folder> unpack <archive> <target>\n"
    "prints seconds; import those of the second import as well, unpack the megabytes by which the\n"
    "peak of memory rose\n";

using Clock = std::chrono::steady_clock;

template <class Work>
double seconds(Work&& work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

void require(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error("the operation did not do its work: " + what);
}

// The child's output goes nowhere, so that a terminal's speed does not count.
double timeTool(std::vector<char*> words) {
  words.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  int status = -1;
  const double result = seconds([&] {
    require(posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ) == 0,
            words[0]);
    waitpid(child, &status, 0);
  });
  posix_spawn_file_actions_destroy(&actions);
  require(status == 0, words[0]);
  return result;
}

// Kilobytes, from the kernel's account of this process.
long memory(const std::string& field) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(field + ":")) return std::stol(line.substr(field.size() + 1));
  throw std::runtime_error("no " + field);
}

// The real window, which draws while an operation runs; its questions are answered beforehand.
class AnsweredWindows : public ui::qt::QtWindowing {
 public:
  using QtWindowing::QtWindowing;
  std::string archive, name;
  ui::Answer answer = ui::Answer::no;
  std::vector<std::string> boxes;

  ui::Answer messageBox(const ui::Box& box) override {
    boxes.push_back(box.text);
    return box.buttons == ui::BoxButtons::ok ? ui::Answer::ok : answer;
  }
  std::optional<std::string> inputBox(const std::string&, const std::string&,
                                      const std::string&) override {
    return name;
  }
  Result<ui::PickedFile> openFile(const ui::FileDialog&) override {
    return ui::PickedFile{archive, archive.substr(0, archive.rfind('\\') + 1)};
  }
};

class Operation {
 public:
  explicit Operation(const std::filesystem::path& folder) : run_(folder) {
    run_.windows.prepare(app().frmMain);
    mnuViewFSAircraft_Click(app());
    app().frmMain.lstAircraft.clear();
    app().frmMain.visible = true;
    for (int rounds = 0; rounds < 5; ++rounds) QCoreApplication::processEvents();
  }
  ~Operation() { run_.windows.unloadAll(); }
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

  double copy(const std::string& from, const std::string& to) {
    std::filesystem::create_directories(to);
    const std::string source = windowsPath(from), target = windowsPath(to);
    return seconds([&] {
      require(WalkTree(app(), source, target, WalkCopy, true).complete(), "not all copied");
      require(app().files().flushDisk(target).ok(), "not flushed");
    });
  }
  double size(const std::string& folder) {
    const double result = walk(folder, WalkSize);
    require(app().SizeTotal > 0, "no bytes seen");
    return result;
  }
  double find(const std::string& folder) {
    const double result = walk(folder, WalkFindBgl);
    require(app().FoundDir.empty(), "something found");
    return result;
  }
  double scan() {
    const double result = seconds([&] {
      require(WalkTree(app(), app().ACRoot, "", WalkScanAC, true).complete(), "not all scanned");
    });
    require(app().frmMain.lstAircraft.count() > 0, "no aircraft found");
    return result;
  }
  double load() {
    const double result = seconds([&] { LoadACList(app()); });
    require(app().frmMain.lstAircraft.count() > 0, "no rows loaded");
    return result;
  }
  double install(const std::string& archive) {
    run_.windows.archive = windowsPath(archive);
    run_.windows.name = "installed";
    const double result = seconds([&] { mnuFileInstallAC_Click(app()); });
    require(run_.windows.boxes.empty(), shown());
    require(app().frmMain.lstAircraft.selected() != 0, "no row selected");
    return result;
  }
  double toSimulator(const std::string& name) {
    selectAlone(name, "Hangar", mnuViewHangar_Click);
    const double result = seconds([&] { btnHangar_Click(app()); });
    require(run_.windows.boxes.empty(), shown());
    return result;
  }
  double installScenery(const std::string& archive) {
    run_.windows.archive = windowsPath(archive);
    run_.windows.name = "installed";
    mnuViewFSScenery_Click(app());
    const double result = seconds([&] { mnuFileInstallSC_Click(app()); });
    require(run_.windows.boxes.empty(), shown());
    require(app().frmMain.lstInactScenery.selected() != 0, "no row selected");
    return result;
  }
  double addScenery(const std::string& name) {
    sample::writeFile(run_.driveC() / "FS/Scenery.cfg", "[General]\r\nCache_Size=0\r\n");
    sample::writeFile(run_.driveC() / "Library/SKV_SL.lst",
                      name + "\1" + addonScenery + name + "\r\n");
    mnuViewFSScenery_Click(app());
    app().frmMain.lstInactScenery.select(1);
    const double result = seconds([&] { btnAddSLtoFS_Click(app()); });
    require(run_.windows.boxes.empty(), shown());
    require(app().frmMain.lstInactScenery.smallIcon(1) == 2, "not in the simulator");
    return result;
  }
  double compress(const std::string& name, void (*command)(App&) = mnuFilePackage_Click) {
    selectAlone(name, "Hangar", mnuViewHangar_Click);
    const bool packed = command == mnuFilePackage_Click;
    const double result = seconds([&] { command(app()); });
    require(run_.windows.boxes.empty(), shown());
    require(exists(run_.driveC() / "Packs" / (name + packageEnd)) == packed, "no Package, or one");
    require(exists(run_.driveC() / "Hangar/Main" / name / "Gauges/gauge00107.gau") != packed,
            "the folders are not as they should be");
    return result;
  }
  double uncompress(const std::string& name) { return compress(name, mnuFileUnpackage_Click); }
  // Into an empty list, and once more.
  std::pair<double, double> import(const std::string& what) {
    const auto& form = app().frmMain;
    const bool aircraft = what == "aircraft", panels = what == "panels";
    const auto& list = aircraft ? form.lstAircraft : panels ? form.lstPanel : form.lstSound;
    const auto command = aircraft ? mnuFileImportAC_Click
                         : panels ? mnuFileImportPN_Click
                                  : mnuFileImportSN_Click;
    for (const char* file : {aircraftListFile, panelListFile, soundListFile})
      std::filesystem::remove(run_.driveC() / "FS" / file);
    mnuViewFSAircraft_Click(app());
    require(list.count() == 0, "the list is not empty");
    const double first = seconds([&] { command(app()); });
    const int found = list.count();
    require(found > 0, "nothing found");
    const double second = seconds([&] { command(app()); });
    require(list.count() == found, "found twice");
    require(run_.windows.boxes.empty(), shown());
    return {first, second};
  }
  double remove(const std::string& name) {
    selectAlone(name, "FS", mnuViewFSAircraft_Click);
    run_.windows.answer = ui::Answer::yes;
    const double result = seconds([&] { btnDelAC_Click(app()); });
    require(run_.windows.boxes.size() == 2, shown());
    require(app().frmMain.lstAircraft.count() == 0, "the row is there");
    require(!exists(run_.driveC() / "FS/aircraft" / name), "the folder is there");
    return result;
  }
  double findSimulators() {
    std::vector<std::string> found;
    const double result = seconds([&] { found = app().platform.simulators.find(); });
    require(found.size() == 2, std::to_string(found.size()) + " simulators found");
    return result;
  }
  double package(const std::string& folder, const std::string& archive) {
    require(app().files().setCurrentFolder(windowsPath(folder)).ok(), "current folder");
    const double result = seconds([&] {
      app().PackFileList.clear();
      WalkTree(app(), windowsPath(folder), "", WalkCollect, true).skipped();
      require(AddToArchive(app(), windowsPath(archive), false), shown());
    });
    return result;
  }
  // Seconds, and the rise of the peak of memory in megabytes.
  std::pair<double, double> unpack(const std::string& archive, const std::string& target) {
    std::filesystem::create_directories(target);
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak counts from here
    const long idle = memory("VmHWM");
    const double result = seconds([&] {
      ReadAndExtract job(app());
      require(job.open(windowsPath(archive)) && job.fits(app().HangarDir) &&
                  job.extract(withBackslash(windowsPath(target)), 0),
              shown());
    });
    return {result, static_cast<double>(memory("VmHWM") - idle) / 1024};
  }

 private:
  App& app() { return run_.app; }
  std::string windowsPath(const std::string& path) const {
    return run_.disk.windowsPath(std::filesystem::absolute(path).string());
  }
  double walk(const std::string& folder, WalkCode code) {
    const std::string source = windowsPath(folder);
    return seconds(
        [&] { require(WalkTree(app(), source, "", code, true).complete(), "not all walked"); });
  }
  // The only row of a view.
  void selectAlone(const std::string& name, const std::string& root, void (*view)(App&)) {
    sample::writeFile(run_.driveC() / root / aircraftListFile,
                      name + "\1C:\\" + root + "\\aircraft\\" + name + "\\\r\n");
    view(app());
    require(app().frmMain.lstAircraft.selected() == 1, "no row selected");
  }
  std::string shown() const {
    return run_.windows.boxes.empty() ? "no box" : run_.windows.boxes.back();
  }

  BenchRun<AnsweredWindows> run_;
};

int perform(const std::vector<std::string>& words) {
  const std::string name = words.size() > 1 ? words[1] : "";
  const std::size_t count = words.size();
  if (count < 2) return 2;
  Operation operation(words[0]);
  if (name == "copy" && count == 4)
    std::cout << operation.copy(words[2], words[3]);
  else if (name == "size" && count == 3)
    std::cout << operation.size(words[2]);
  else if (name == "find" && count == 3)
    std::cout << operation.find(words[2]);
  else if (name == "scan" && count == 2)
    std::cout << operation.scan();
  else if (name == "load" && count == 2)
    std::cout << operation.load();
  else if (name == "install" && count == 3)
    std::cout << operation.install(words[2]);
  else if (name == "to-fs" && count == 3)
    std::cout << operation.toSimulator(words[2]);
  else if (name == "install-scenery" && count == 3)
    std::cout << operation.installScenery(words[2]);
  else if (name == "add-scenery" && count == 3)
    std::cout << operation.addScenery(words[2]);
  else if (name == "compress" && count == 3)
    std::cout << operation.compress(words[2]);
  else if (name == "uncompress" && count == 3)
    std::cout << operation.uncompress(words[2]);
  else if (name == "delete" && count == 3)
    std::cout << operation.remove(words[2]);
  else if (name == "find-simulators" && count == 2)
    std::cout << operation.findSimulators();
  else if (name == "import" && count == 3) {
    const auto [first, again] = operation.import(words[2]);
    std::cout << first << " " << again;
  } else if (name == "package" && count == 4)
    std::cout << operation.package(words[2], words[3]);
  else if (name == "unpack" && count == 4) {
    const auto [time, rise] = operation.unpack(words[2], words[3]);
    std::cout << time << " " << rise;
  } else {
    return 2;
  }
  std::cout << "\n";
  return 0;
}

}  // namespace
}  // namespace skv::bench

int main(int argc, char** argv) {
  try {
    int result = 2;
    if (argc > 2 && std::string(argv[1]) == "time") {
      std::cout << skv::bench::timeTool({argv + 2, argv + argc}) << "\n";
      result = 0;
    } else {
      skv::bench::useOffscreenWithoutScreen();
      QApplication application(argc, argv);
      skv::ui::qt::dress(application);
      result = skv::bench::perform({argv + 1, argv + argc});
    }
    if (result == 2) std::cerr << skv::bench::usage;
    return result;
  } catch (const std::exception& failure) {
    std::cerr << "skyvault-bench-op: " << failure.what() << "\n";
    return 1;
  }
}
