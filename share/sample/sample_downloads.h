// Add-on archives, each in a layout that some author chose.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace skv::sample {

struct Download {
  std::string file;
  std::string layout;  // one line that tells what is special about it
  // Title of the aircraft that an installation finds first; "" when it finds none.
  std::string title;
};

// Writes the archives into the folder and answers what stands there.
std::vector<Download> writeDownloads(const std::filesystem::path& folder);

}  // namespace skv::sample
