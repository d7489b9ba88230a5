#include "sample/sample_files.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

#include "base/text.h"

namespace skv::sample {

Files below(std::string_view folder, Files files) {
  for (SampleFile& file : files) file.path = std::string(folder) + "/" + file.path;
  return files;
}

void append(Files& files, Files more) {
  for (SampleFile& file : more) files.push_back(std::move(file));
}

void writeFile(const std::filesystem::path& file, std::string_view bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
}

std::string readFile(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), {});
  if (!in) throw std::runtime_error("cannot read " + file.string());
  return bytes;
}

void writeFiles(const std::filesystem::path& folder, const Files& files) {
  constexpr std::int64_t september2002 = 1030874400;
  for (const SampleFile& file : files) {
    const std::filesystem::path target = folder / file.path;
    std::filesystem::create_directories(target.parent_path());
    writeFile(target, file.bytes);
    // Even seconds: an archive keeps no odd ones.
    const timespec time{.tv_sec = september2002 + 2L * Random(file.path).below(3'900'000),
                        .tv_nsec = 0};
    const timespec times[2] = {time, time};
    if (utimensat(AT_FDCWD, target.c_str(), times, 0) != 0)
      throw std::runtime_error("cannot set the time of " + target.string());
  }
}

std::string windowsText(std::string_view text) {
  std::string lines;
  lines.reserve(text.size() + text.size() / 32);
  for (const char c : text) {
    if (c == '\n') lines += '\r';
    lines += c;
  }
  return CodePage(1252).encode(lines);
}

Random::Random(std::string_view seed) : state_(0xcbf29ce484222325) {
  for (const char c : seed)
    state_ = (state_ ^ static_cast<unsigned char>(c)) * std::uint64_t{0x100000001b3};
}

std::uint64_t Random::next() {
  std::uint64_t z = (state_ += 0x9e3779b97f4a7c15);
  z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
  z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
  return z ^ (z >> 31);
}

}  // namespace skv::sample
