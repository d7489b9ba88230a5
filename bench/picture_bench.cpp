// Finding the picture of an aircraft, by number of files in its texture folder.
#include <benchmark/benchmark.h>

#include "bench_run.h"
#include "pictures/picture_lookup.h"
#include "sample/sample_files.h"

namespace skv::bench {
namespace {

void FindPictureAmongTextures(benchmark::State& state) {
  const ScratchFolder scratch;
  BenchRun<> run(scratch.path());
  const auto textures = run.driveC() / "FS/aircraft/plane/texture";
  std::filesystem::create_directories(textures);
  for (std::int64_t i = 1; i < state.range(0); ++i)
    sample::writeFile(textures / ("part" + std::to_string(i) + ".bmp"), "x");
  // The last place in the folder that is looked at.
  sample::writeFile(textures / "z.gif", "x");
  const AircraftPlaces places{.TexDir = "C:\\FS\\aircraft\\plane\\texture\\",
                              .Folder = "C:\\FS\\aircraft\\plane\\",
                              .specimens = {},
                              .type = {}};
  AircraftPicture found;
  while (state.KeepRunning()) found = findAircraftPicture(run.app.files(), places);
  if (found.file != places.TexDir + "z.gif") state.SkipWithError("the picture was not found");
  state.SetComplexityN(state.range(0));
}
BENCHMARK(FindPictureAmongTextures)
    ->Arg(50)
    ->Arg(500)
    ->Arg(5'000)
    ->Unit(benchmark::kMicrosecond)
    ->Complexity(benchmark::oN);

}  // namespace
}  // namespace skv::bench
