// skyvault-sample: makes the sample simulator with settings that open on it, or loads for
// measuring.
//
//   SKYVAULT_DRIVES=<folder>/dosdevices XDG_CONFIG_HOME=<folder>/config fsskyvault
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/desktop/file_settings_store.h"
#include "platform/desktop/system_clock.h"
#include "sample/sample_files.h"
#include "sample/sample_settings.h"
#include "sample/sample_simulator.h"
#include "ui/startup.h"

namespace {

using namespace skv::sample;

constexpr const char* usage =
    "usage: skyvault-sample <folder>                            the sample simulator\n"
    "       skyvault-sample large-tree <folder> <files> <bytes> one large add-on, unpacked\n"
    "       skyvault-sample large-zip <file> <files> <bytes>    the same as an archive\n"
    "       skyvault-sample large-scenery-zip <file> <files> <bytes>  a large scenery\n"
    "       skyvault-sample aircraft <folder> <count>           small aircraft folders\n"
    "       skyvault-sample list <file> <windows folder> <count> a list of their rows\n";

void tell(const SampleSimulator& sample) {
  std::cout << "Simulator  " << sample.FSRoot << "  (" << sample.simulator.string() << ")\n"
            << "Hangar     " << sample.HangarDir << "\n"
            << "Packages   " << sample.PacksDir << "\n"
            << "Archives   " << sample.Downloads << "\n";
  for (const Download& archive : sample.archives) {
    std::cout << "  " << archive.file
              << std::string(25 - std::min<std::size_t>(24, archive.file.size()), ' ')
              << archive.layout << "\n";
  }
}

// In the place where a run with that XDG_CONFIG_HOME looks for them.
void writeSettings(const std::filesystem::path& config, const SampleSimulator& sample) {
  std::filesystem::create_directories(config);
  if (setenv("XDG_CONFIG_HOME", config.c_str(), 1) != 0) throw std::runtime_error("no environment");
  skv::FileSettingsStore store(skv::FileSettingsStore::defaultFile());
  const skv::Outcome outcome =
      writeSettings(store, sample, skv::versionText(), skv::SystemClock().now());
  if (!outcome.ok()) throw std::runtime_error("settings: " + outcome.description());
}

void makeAll(const std::filesystem::path& folder) {
  const SampleSimulator sample = makeSample(folder);
  writeSettings(folder / "config", sample);
  tell(sample);
}

int run(const std::vector<std::string>& words) {
  if (words.size() == 1 && !words[0].starts_with("-"))
    makeAll(std::filesystem::absolute(words[0]));
  else if (words.size() == 4 && words[0] == "large-tree")
    makeLargeTree(words[1], std::stoul(words[2]), std::stoull(words[3]));
  else if (words.size() == 4 && words[0] == "large-zip")
    makeLargeZip(words[1], std::stoul(words[2]), std::stoull(words[3]));
  else if (words.size() == 4 && words[0] == "large-scenery-zip")
    makeLargeSceneryZip(words[1], std::stoul(words[2]), std::stoull(words[3]));
  else if (words.size() == 3 && words[0] == "aircraft")
    makeAircraftFolders(words[1], std::stoul(words[2]));
  else if (words.size() == 4 && words[0] == "list")
    writeFile(words[1], aircraftList(words[2], std::stoul(words[3])));
  else {
    std::cerr << usage;
    return 2;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "skyvault-sample: " << failure.what() << "\n";
    return 1;
  }
}
