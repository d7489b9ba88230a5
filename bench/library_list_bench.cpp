// The list files: loading and saving, by number of rows.
#include <benchmark/benchmark.h>

#include "aircraft/list_files.h"
#include "bench_run.h"
#include "sample/sample_files.h"

namespace skv::bench {
namespace {

void LoadACListOfManyRows(benchmark::State& state) {
  const ScratchFolder scratch;
  BenchRun<> run(scratch.path());
  const auto rows = static_cast<std::size_t>(state.range(0));
  sample::makeAircraftFolders(run.driveC() / "FS/aircraft", rows / 10);
  sample::writeFile(run.driveC() / "FS/SKV_AC.lst", sample::aircraftList(run.app.ACRoot, rows));
  while (state.KeepRunning()) LoadACList(run.app);
  if (run.app.frmMain.lstAircraft.count() != state.range(0))
    state.SkipWithError("rows are missing");
  state.SetComplexityN(state.range(0));
}
BENCHMARK(LoadACListOfManyRows)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(32'767)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

void SaveACListOfManyRows(benchmark::State& state) {
  const ScratchFolder scratch;
  BenchRun<> run(scratch.path());
  const auto rows = static_cast<std::size_t>(state.range(0));
  sample::writeFile(run.driveC() / "FS/SKV_AC.lst", sample::aircraftList(run.app.ACRoot, rows));
  LoadACList(run.app);
  while (state.KeepRunning()) SaveACList(run.app);
  state.SetComplexityN(state.range(0));
}
BENCHMARK(SaveACListOfManyRows)
    ->Arg(1'000)
    ->Arg(10'000)
    ->Arg(32'767)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

}  // namespace
}  // namespace skv::bench
