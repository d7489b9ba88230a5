// The ZIP engine: megabytes per second both ways, and what is left of a kind of files at each
// level.
#include <benchmark/benchmark.h>

#include "bench_run.h"
#include "core/walktree.h"

namespace skv::bench {
namespace {

constexpr std::size_t sizeOfFile = 150'000;

// An add-on of state.range(0) files, as a folder and as an archive.
class ZipEngineBench : public benchmark::Fixture {
 public:
  void SetUp(const benchmark::State& state) override {
    scratch_ = std::make_unique<ScratchFolder>();
    run = std::make_unique<BenchRun<>>(scratch_->path());
    const auto files = static_cast<std::size_t>(state.range(0));
    bytes = files * sizeOfFile;
    sample::makeLargeTree(run->driveC() / "tree", files, bytes);
    sample::makeLargeZip(run->driveC() / "made.zip", files, bytes);
  }
  void TearDown(const benchmark::State&) override {
    run.reset();
    scratch_.reset();
  }

  std::unique_ptr<BenchRun<>> run;
  std::uint64_t bytes = 0;

 private:
  std::unique_ptr<ScratchFolder> scratch_;
};

BENCHMARK_DEFINE_F(ZipEngineBench, Extract)(benchmark::State& state) {
  while (state.KeepRunning()) {
    state.PauseTiming();
    std::filesystem::remove_all(run->driveC() / "out");
    std::filesystem::create_directory(run->driveC() / "out");
    state.ResumeTiming();
    const auto zip = run->zip.load(run->disk);
    zip->usedirectoryinfo = true;
    zip->extractfolder = "C:\\out\\";
    if (!zip->setArchivefile("C:\\made.zip").ok()) state.SkipWithError("cannot be opened");
    std::vector<std::string> names;
    for (const ZipEntry& entry : zip->entries()) names.push_back(entry.Filename);
    if (!zip->extractfiles(names).ok()) state.SkipWithError("cannot be unpacked");
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
BENCHMARK_REGISTER_F(ZipEngineBench, Extract)
    ->RangeMultiplier(4)
    ->Range(100, 1'600)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The second number is the level.
BENCHMARK_DEFINE_F(ZipEngineBench, Add)(benchmark::State& state) {
  if (!run->disk.setCurrentFolder("C:\\tree").ok()) state.SkipWithError("no tree");
  run->app.PackFileList.clear();
  WalkTree(run->app, "C:\\tree\\", "", WalkCollect, true).skipped();
  while (state.KeepRunning()) {
    const auto zip = run->zip.load(run->disk);
    zip->usedirectoryinfo = true;
    zip->compressionlevel = static_cast<int>(state.range(1));
    if (!zip->setArchivefile("C:\\packed.zip").ok()) state.SkipWithError("cannot be opened");
    if (!zip->addfiles(run->app.PackFileList).ok()) state.SkipWithError("cannot be packed");
    state.PauseTiming();
    state.counters["packed"] =
        static_cast<double>(std::filesystem::file_size(run->driveC() / "packed.zip")) /
        static_cast<double>(bytes);
    std::filesystem::remove(run->driveC() / "packed.zip");
    state.ResumeTiming();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
}
BENCHMARK_REGISTER_F(ZipEngineBench, Add)
    ->ArgsProduct({{100, 400}, {1, 6, 9}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace skv::bench
