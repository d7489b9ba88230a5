// skyvault-sample: makes the sample simulator, or loads for measuring, in a folder.
#include <algorithm>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "sample/sample_files.h"
#include "sample/sample_simulator.h"

namespace {

using namespace skv::sample;

constexpr const char* usage =
    "usage: skyvault-sample <folder>                            the sample simulator\n"
    "       skyvault-sample large-tree <folder> <files> <bytes> one large add-on, unpacked\n"
    "       skyvault-sample large-zip <file> <files> <bytes>    the same as an archive\n"
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

int run(const std::vector<std::string>& words) {
  if (words.size() == 1 && !words[0].starts_with("-"))
    tell(makeSample(words[0]));
  else if (words.size() == 4 && words[0] == "large-tree")
    makeLargeTree(words[1], std::stoul(words[2]), std::stoull(words[3]));
  else if (words.size() == 4 && words[0] == "large-zip")
    makeLargeZip(words[1], std::stoul(words[2]), std::stoull(words[3]));
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
