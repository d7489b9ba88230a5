// The tree walker: how its cost grows with the number of files and of rows.
#include <benchmark/benchmark.h>

#include "bench_run.h"
#include "core/walktree.h"

namespace skv::bench {
namespace {

// An add-on of state.range(0) files of 20 KB each.
class AddonTree : public benchmark::Fixture {
 public:
  void SetUp(const benchmark::State& state) override {
    scratch_ = std::make_unique<ScratchFolder>();
    run = std::make_unique<BenchRun<>>(scratch_->path());
    const auto files = static_cast<std::size_t>(state.range(0));
    sample::makeLargeTree(run->driveC() / "tree", files, files * 20'000);
  }
  void TearDown(const benchmark::State&) override {
    run.reset();
    scratch_.reset();
  }

  std::unique_ptr<BenchRun<>> run;

 private:
  std::unique_ptr<ScratchFolder> scratch_;
};

BENCHMARK_DEFINE_F(AddonTree, WalkSize)(benchmark::State& state) {
  while (state.KeepRunning()) {
    run->app.SizeTotal = 0;
    WalkTree(run->app, "C:\\tree", "", WalkSize, true).skipped();
  }
  if (run->app.SizeTotal < 20'000) state.SkipWithError("the walk has seen nothing");
  state.SetComplexityN(state.range(0));
}
BENCHMARK_REGISTER_F(AddonTree, WalkSize)
    ->RangeMultiplier(4)
    ->Range(256, 16'384)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

BENCHMARK_DEFINE_F(AddonTree, WalkFindBglThatIsNotThere)(benchmark::State& state) {
  while (state.KeepRunning()) {
    run->app.FoundDir.clear();
    WalkTree(run->app, "C:\\tree", "", WalkFindBgl, true).skipped();
  }
  if (!run->app.FoundDir.empty()) state.SkipWithError("found what is not there");
  state.SetComplexityN(state.range(0));
}
BENCHMARK_REGISTER_F(AddonTree, WalkFindBglThatIsNotThere)
    ->RangeMultiplier(4)
    ->Range(256, 16'384)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

BENCHMARK_DEFINE_F(AddonTree, WalkCopy)(benchmark::State& state) {
  while (state.KeepRunning()) {
    state.PauseTiming();
    std::filesystem::remove_all(run->driveC() / "copy");
    std::filesystem::create_directory(run->driveC() / "copy");
    state.ResumeTiming();
    WalkTree(run->app, "C:\\tree", "C:\\copy", WalkCopy, true).skipped();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK_REGISTER_F(AddonTree, WalkCopy)
    ->RangeMultiplier(4)
    ->Range(256, 4'096)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

void WalkScanACOverManyAircraft(benchmark::State& state) {
  const ScratchFolder scratch;
  BenchRun<> run(scratch.path());
  const auto count = static_cast<std::size_t>(state.range(0));
  sample::makeAircraftFolders(run.driveC() / "FS/aircraft", count);
  while (state.KeepRunning()) {
    run.app.frmMain.lstAircraft.clear();
    WalkTree(run.app, run.app.ACRoot, "", WalkScanAC, true).skipped();
  }
  if (run.app.frmMain.lstAircraft.count() != state.range(0))
    state.SkipWithError("rows are missing");
  state.SetComplexityN(state.range(0));
}
BENCHMARK(WalkScanACOverManyAircraft)
    ->Arg(1'250)
    ->Arg(5'000)
    ->Arg(20'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
}  // namespace skv::bench
