// Files in memory, and the ways they reach a disk. All paths are UTF-8 with '/' between elements,
// relative to the folder they are written to. Failures throw std::runtime_error: a generator has no
// half result worth keeping.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace skv::sample {

struct SampleFile {
  std::string path;
  std::string bytes;
};
using Files = std::vector<SampleFile>;

// The same files with `folder` + "/" before each path.
Files below(std::string_view folder, Files files);
void append(Files& files, Files more);

// Replaces what stands there. Every file gets a time of last change of its own in the autumn of
// 2002, derived from its path, so that two runs make the same disk.
void writeFile(const std::filesystem::path& file, std::string_view bytes);
std::string readFile(const std::filesystem::path& file);
void writeFiles(const std::filesystem::path& folder, const Files& files);

// Text as files of the simulator hold it: Windows-1252 with CR LF. `text` is UTF-8 with LF.
std::string windowsText(std::string_view text);

// Numbers that look random and are the same on every machine.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  explicit Random(std::string_view seed);
  std::uint64_t next();
  std::uint32_t below(std::uint32_t limit) { return static_cast<std::uint32_t>(next() % limit); }

 private:
  std::uint64_t state_;
};

}  // namespace skv::sample
