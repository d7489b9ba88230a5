// Archives as other people's programs make them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "sample/sample_files.h"

namespace skv::sample {

struct ZipStyle {
  bool backslashes = false;    // separators as some packers of the time wrote them
  bool folderEntries = false;  // an entry for each folder; not together with backslashes
  int level = 6;               // 0: stored
  enum class Names { utf8, codePage437, windows1252 } names = Names::utf8;
};

// An entry whose bytes are made only when the archive takes them, and dropped afterwards: an
// archive of any size needs the memory of one file.
struct ZipEntrySource {
  std::string path;  // UTF-8, '/' between elements
  std::function<std::string()> bytes;
};

// Replaces the file. Every entry has the same time, 24 December 2002, 18:00.
void writeZip(const std::filesystem::path& file, const std::vector<ZipEntrySource>& entries,
              const ZipStyle& style = {});
void writeZip(const std::filesystem::path& file, const Files& files, const ZipStyle& style = {});
// The archive's bytes, to be put into another one.
std::string zipBytes(const Files& files, const ZipStyle& style = {});

}  // namespace skv::sample
