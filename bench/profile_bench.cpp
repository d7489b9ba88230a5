// Profile files: thirty keys of each section, by number of sections.
#include <benchmark/benchmark.h>

#include "core/profile.h"

namespace skv::bench {
namespace {

constexpr int keysOfSection = 30;

std::string sectionName(std::int64_t number) { return "Area." + std::to_string(number); }
std::string keyName(int number) { return "Flatten." + std::to_string(number); }

std::string fileOf(std::int64_t sections) {
  std::string file;
  for (std::int64_t section = 0; section < sections; ++section) {
    file += "[" + sectionName(section) + "]\r\n";
    for (int key = 0; key < keysOfSection; ++key)
      file += keyName(key) + "=20,N41 48.00,E12 13.00,N41 49.00,E12 15.00\r\n";
    file += "\r\n";
  }
  return file;
}

void ProfileReadsEveryKey(benchmark::State& state) {
  const CodePage codePage;
  const std::string file = fileOf(state.range(0));
  std::size_t length = 0;
  while (state.KeepRunning()) {
    const Profile profile(file, codePage);
    for (std::int64_t section = 0; section < state.range(0); ++section)
      for (int key = 0; key < keysOfSection; ++key)
        length += profile.read(sectionName(section), keyName(key)).size();
  }
  if (length == 0) state.SkipWithError("nothing was read");
  state.SetComplexityN(state.range(0));
}
BENCHMARK(ProfileReadsEveryKey)
    ->RangeMultiplier(4)
    ->Range(256, 16'384)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// Every second section is new to the file.
void ProfileWritesEveryKey(benchmark::State& state) {
  const CodePage codePage;
  const std::string file = fileOf(state.range(0) / 2);
  std::size_t length = 0;
  while (state.KeepRunning()) {
    Profile profile(file, codePage);
    for (std::int64_t section = 0; section < state.range(0); ++section)
      for (int key = 0; key < keysOfSection; ++key)
        profile.write(sectionName(section), keyName(key), "22,N42 48.00,E13 13.00");
    length = profile.bytes().size();
  }
  if (length < file.size() / 2) state.SkipWithError("lines are missing");
  state.SetComplexityN(state.range(0));
}
BENCHMARK(ProfileWritesEveryKey)
    ->RangeMultiplier(4)
    ->Range(256, 16'384)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

// As the tree walker does with each aircraft.cfg: one key of a file that is parsed for it.
void ProfileReadsOneKey(benchmark::State& state) {
  const CodePage codePage;
  const std::string file = fileOf(state.range(0));
  while (state.KeepRunning())
    benchmark::DoNotOptimize(Profile(file, codePage).read("Area.0", "Flatten.0"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(file.size()));
}
BENCHMARK(ProfileReadsOneKey)->Arg(10)->Arg(1'000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace skv::bench
