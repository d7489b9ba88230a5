// skyvault-bench-scenery <run folder> read|save|cache|library <count>: the files of the Scenery
// Manager, read into rows and written from them. Prints our seconds, the median of many turns, and
// for "read" and "save" those of what does the same work, measured in turn with ours:
//
//   read     Scenery.cfg of `count` areas into the rows / QSettings reads each of its values once
//   save     the rows into Scenery.cfg and the cache    / one plain write of the bytes
//   cache    SKV_SC.lst of `count` rows into the rows
//   library  SKV_SL.lst of `count` rows, half in the simulator, half with a Package
//
// No flush reaches the disk: what it costs is the disk's affair.
#include <fcntl.h>
#include <unistd.h>

#include <QSettings>
#include <QVariant>
#include <algorithm>
#include <chrono>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "bench_run.h"
#include "core/stores.h"
#include "sample/sample_files.h"
#include "scenery/scenery_cfg.h"
#include "scenery/scenery_database.h"
#include "scenery/scenery_list_files.h"
#include "scenery/scenery_lists.h"

// In the place of the system's.
extern "C" int fsync(int) { return 0; }
extern "C" int syncfs(int) noexcept { return 0; }

namespace skv::bench {
namespace {

constexpr int turns = 15;

// Both sides take turns in one process: what one of them has freed is put in order before the
// other's time begins, and not within it, which a large block does.
void tidyHeap() {
  constexpr std::size_t large = std::size_t{64} * 1024;
  void* volatile block = std::malloc(large);
  std::free(block);
}

template <class Work>
double seconds(Work&& work) {
  tidyHeap();
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void require(bool condition, const char* what) {
  if (!condition) throw std::runtime_error(std::string("the work was not done: ") + what);
}

double median(std::vector<double> all) {
  std::ranges::sort(all);
  return all[all.size() / 2];
}

std::string numbered(const char* name, int number) { return name + std::to_string(number); }

// Each area has every value that an area can have.
SceneryCfg cfgOf(int areas) {
  SceneryCfg cfg{.Cache_Size = "0", .Clean_On_Exit = "TRUE"};
  for (int i = 1; i <= areas; ++i) {
    SceneryArea area{.Title = numbered("Area of the Alps ", i),
                     .Local = numbered("ADDON SCENERY\\Alps", i),
                     .Active = i % 3 != 0,
                     .Remote = numbered("D:\\Sceneries\\Alps", i),
                     .Texture_ID = std::to_string(i)};
    for (int k = 0; k <= 10; ++k) {
      area.Flatten.push_back("20,N41 48.00,E12 13.00,N41 49.00,E12 15.00,N41 50.00,E12 17.00");
      area.Exclude.push_back("N47 30.00,W122 22.00,N47 24.00,W122 15.00,objects");
    }
    cfg.areas.push_back(std::move(area));
  }
  return cfg;
}

class Sceneries {
 public:
  Sceneries(const std::filesystem::path& folder, int count) : run_(folder), count_(count) {}

  void read() {
    const std::string bytes = write();
    std::vector<double> ours, theirs;
    for (int i = 0; i <= turns; ++i) {
      ours.push_back(seconds([&] { LoadSceneryCfgList(run_.app); }));
      require(rows().count() == count_, "areas are missing");
      // QSettings remembers a file that it has read.
      const auto copy = run_.driveC() / numbered("copy", i);
      sample::writeFile(copy, bytes);
      qsizetype length = 0;
      theirs.push_back(seconds([&] {
        const QSettings file(QString::fromStdString(copy.string()), QSettings::IniFormat);
        for (const QString& key : file.allKeys()) length += file.value(key).toStringList().size();
      }));
      require(length > count_, "values are missing");
      std::filesystem::remove(copy);
    }
    print(ours, theirs);
  }

  void save() {
    const std::string bytes = write();
    LoadSceneryCfgList(run_.app);
    const std::string copy = (run_.driveC() / "copy").string();
    std::vector<double> ours, theirs;
    for (int i = 0; i <= turns; ++i) {
      ours.push_back(seconds([&] { require(SaveSceneryCfg(run_.app), "not saved"); }));
      require(sample::readFile(cfgFile()) == bytes, "the file is another one");
      // Both files that a save writes.
      const std::string cached = sample::readFile(cfgFile().parent_path() / "SKV_SC.lst");
      theirs.push_back(seconds([&] {
        for (const std::string* content : {&bytes, &cached}) {
          const int file = ::open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
          require(::write(file, content->data(), content->size()) == std::ssize(*content),
                  "not written");
          ::close(file);
        }
      }));
    }
    print(ours, theirs);
  }

  void cache() {
    write();
    LoadSceneryCfgList(run_.app);
    SaveSceneryList(run_.app);
    std::vector<double> ours;
    for (int i = 0; i <= turns; ++i) {
      const unsigned loads = run_.app.sceneryDatabase.loads;
      ours.push_back(seconds([&] { LoadSceneryList(run_.app); }));
      require(rows().count() == count_, "rows are missing");
      require(run_.app.sceneryDatabase.loads == loads + 1, "the cache was stale");
    }
    print(ours);
  }

  void library() {
    std::vector<SceneryRow> sceneries;
    for (int i = 1; i <= count_; ++i) {
      const std::string name = numbered("Alps", i);
      sceneries.push_back({.Name = name, .Folder = addonScenery + name});
      if (i % 2 == 0)
        std::filesystem::create_directories(run_.driveC() / "FS/ADDON SCENERY" / name);
      else
        sample::writeFile(run_.driveC() / "Packs/Scenery" / (name + packageEnd), "PK");
    }
    sample::writeFile(run_.driveC() / "Library" / sceneryLibraryFile,
                      sceneryLibraryBytes(sceneries, run_.app.codePage));
    const auto& list = run_.app.frmMain.lstInactScenery;
    std::vector<double> ours;
    for (int i = 0; i <= turns; ++i) {
      ours.push_back(seconds([&] { LoadSceneryLibList(run_.app); }));
      require(list.count() == count_, "rows are missing");
      for (int row = 1; row <= count_; ++row)
        require(list.smallIcon(row) == (row % 2 == 0 ? 2 : 3), "a place is wrong");
    }
    print(ours);
  }

 private:
  ui::ListView& rows() { return run_.app.frmMain.lstScenery; }
  std::filesystem::path cfgFile() const { return run_.driveC() / "FS" / sceneryCfgFile; }

  std::string write() {
    std::string bytes = sceneryCfgBytes(cfgOf(count_), run_.app.codePage);
    sample::writeFile(cfgFile(), bytes);
    return bytes;
  }
  // The first turn only warms the caches.
  static void print(std::vector<double> ours, std::vector<double> theirs = {}) {
    ours.erase(ours.begin());
    std::cout << median(std::move(ours));
    if (!theirs.empty()) {
      theirs.erase(theirs.begin());
      std::cout << " " << median(std::move(theirs));
    }
    std::cout << "\n";
  }

  BenchRun<> run_;
  const int count_;
};

int perform(const std::string& folder, const std::string& work, int count) {
  Sceneries sceneries(folder, count);
  if (work == "read")
    sceneries.read();
  else if (work == "save")
    sceneries.save();
  else if (work == "cache")
    sceneries.cache();
  else if (work == "library")
    sceneries.library();
  else
    return 2;
  return 0;
}

}  // namespace
}  // namespace skv::bench

int main(int argc, char** argv) {
  int result = 2;
  try {
    if (argc == 4) result = skv::bench::perform(argv[1], argv[2], std::atoi(argv[3]));
  } catch (const std::exception& failure) {
    std::cerr << failure.what() << "\n";
    return 1;
  }
  if (result == 2)
    std::cerr << "usage: skyvault-bench-scenery <run folder> read|save|cache|library <count>\n";
  return result;
}
