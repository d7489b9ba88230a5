#include "platform/zip/libzip_zipit.h"

#include <libdeflate.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "base/paths.h"
#include "platform/zip/archive_directory.h"
#include "platform/zip/entry_names.h"
#include "platform/zip/extraction.h"
#include "platform/zip/extraction_plan.h"
#include "platform/zip/packing.h"

namespace skv {

namespace {

constexpr int complete = 100;  // percent

struct Checksum {
  std::uint64_t length = 0;
  std::uint32_t crc = 0;
};

Result<Checksum> checksumOf(const FileSystem& files, std::string_view path) {
  const auto native = files.nativePath(path);
  if (!native.ok()) return native.outcome();
  constexpr std::size_t portion = std::size_t{1} << 20U;
  std::vector<char> bytes(portion);
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(
      std::fopen(native.value().c_str(), "rbe"), std::fclose);
  if (!file) return Outcome::failure(err::pathFileAccess, path);
  Checksum sum;
  while (const std::size_t read = std::fread(bytes.data(), 1, portion, file.get())) {
    sum.length += read;
    sum.crc = libdeflate_crc32(sum.crc, bytes.data(), read);
  }
  if (std::ferror(file.get()) != 0) return Outcome::failure(err::deviceIo, path);
  return sum;
}

class LibzipZipit : public Zipit {
 public:
  LibzipZipit(FileSystem& files, CodePage systemPage)
      : files_(files), systemPage_(std::move(systemPage)) {}

  Outcome setArchivefile(std::string_view path) override;
  const std::vector<ZipEntry>& entries() const override { return entries_; }
  const std::vector<RenamedEntry>& renamed() const override { return renamed_; }
  Outcome addfiles(const std::vector<std::string>& names) override;
  Outcome extractfiles(const std::vector<std::string>& names) override;
  Outcome holdsFile(std::string_view name, std::string_view path) override;

 private:
  using Event = std::function<void(int percent)>;

  Outcome readEntries();
  Outcome add(const std::vector<std::string>& names);
  Outcome extract(const std::vector<std::string>& names);
  Result<std::vector<ChosenEntry>> choose(const std::vector<std::string>& names) const;
  // Tells how far a job is, up to the percent before the last, and keeps the window alive. Answers
  // whether the job may go on.
  bool report(const Event& event, int percent);

  FileSystem& files_;
  const CodePage systemPage_;
  std::string path_;                         // full Windows path
  std::shared_ptr<const ArchiveFile> file_;  // nullptr for an archive that is to be made
  std::optional<ZipReader> reader_;          // of the file
  std::vector<ArchiveEntry> directory_;
  std::vector<ZipEntry> entries_;
  std::unordered_map<std::string, const ArchiveEntry*> byName_;  // made when asked for
  std::vector<RenamedEntry> renamed_;
  int reported_ = 0;
  std::chrono::steady_clock::time_point lastYield_;
};

Outcome LibzipZipit::setArchivefile(std::string_view path) {
  path_ = path;
  reader_.reset();
  file_.reset();
  directory_.clear();
  entries_.clear();
  byName_.clear();
  if (!files_.attributes(path_).ok()) return {};
  return guarded(path_, [this] { return readEntries(); });
}

Outcome LibzipZipit::readEntries() {
  const auto native = files_.nativePath(path_);
  if (!native.ok()) return native.outcome();
  auto file = ArchiveFile::open(native.value(), path_);
  if (!file.ok()) return file.outcome();
  auto reader = ZipReader::open(*file.value());
  if (!reader.ok()) return reader.outcome();
  auto directory = readDirectory(*file.value(), reader.value(), systemPage_);
  if (!directory.ok()) return directory.outcome();
  file_ = std::move(file).value();
  reader_ = std::move(reader).value();
  directory_ = std::move(directory).value();
  entries_.reserve(directory_.size());
  for (const ArchiveEntry& entry : directory_) entries_.push_back({entry.Filename, entry.size});
  return {};
}

bool LibzipZipit::report(const Event& event, int percent) {
  if (percent > reported_ && percent < complete) {
    reported_ = percent;
    if (event) event(percent);
  }
  constexpr auto pause = std::chrono::milliseconds(15);
  const auto now = std::chrono::steady_clock::now();
  if (!Yield || now - lastYield_ < pause) return true;
  const bool goesOn = Yield();
  lastYield_ = std::chrono::steady_clock::now();
  return goesOn;
}

Outcome LibzipZipit::addfiles(const std::vector<std::string>& names) {
  if (BarReset1) BarReset1();
  reported_ = 0;
  Outcome added = add(names);
  if (added.ok() && AddProgress) AddProgress(complete);
  if (BarReset2) BarReset2();
  return added;
}

Outcome LibzipZipit::add(const std::vector<std::string>& names) {
  const std::string folder = withBackslash(files_.currentFolder());
  Packing job{path_, {}, compressionlevel, file_ != nullptr};
  for (const std::string& name : names) {
    std::string path = folder + name;
    const auto state = files_.fileState(path);
    if (!state.ok()) return state.outcome();
    if (!includesystemfiles && state.value().attributes.system) continue;
    job.files.push_back({std::move(path), usedirectoryinfo ? name : fileName(name),
                         state.value().length, state.value().modified});
  }
  return packFiles(files_, job, [this](int percent) { return report(AddProgress, percent); });
}

Outcome LibzipZipit::extractfiles(const std::vector<std::string>& names) {
  if (BarReset1) BarReset1();
  reported_ = 0;
  Outcome extracted = guarded(path_, [&] { return extract(names); });
  if (ExtractProgress) ExtractProgress(complete);
  if (BarReset2) BarReset2();
  return extracted;
}

Outcome LibzipZipit::extract(const std::vector<std::string>& names) {
  renamed_.clear();
  if (!file_) return Outcome::failure(err::fileNotFound, path_);
  auto chosen = choose(names);
  if (!chosen.ok()) return chosen.outcome();
  if (Outcome sound = auditArchive(*file_, *reader_, chosen.value()); !sound.ok()) return sound;
  const auto plan = planExtraction(path_, chosen.value(), extractfolder, usedirectoryinfo);
  if (!plan.ok()) return plan.outcome();
  renamed_ = plan.value().renamed;
  return extractFiles(files_, *file_, plan.value(),
                      [this](int percent) { return report(ExtractProgress, percent); });
}

Outcome LibzipZipit::holdsFile(std::string_view name, std::string_view path) {
  const auto leaning = [](std::string text) {
    std::ranges::replace(text, '/', '\\');
    return text;
  };
  if (byName_.empty())
    for (const ArchiveEntry& entry : directory_) byName_.emplace(leaning(entry.Filename), &entry);
  const auto found = byName_.find(leaning(std::string(name)));
  if (found == byName_.end()) return entryFailure(path_, std::string(name), "is not there");
  const auto length = files_.fileLength(path);
  if (!length.ok()) return length.outcome();
  if (length.value() == found->second->size) {
    const auto sum = checksumOf(files_, path);
    if (!sum.ok()) return sum.outcome();
    if (sum.value().length == length.value() && sum.value().crc == found->second->crc) return {};
  }
  return entryFailure(path_, std::string(name),
                      "is another one than \"" + std::string(path) + "\"");
}

Result<std::vector<ChosenEntry>> LibzipZipit::choose(const std::vector<std::string>& names) const {
  std::unordered_set<std::string_view> wanted(names.begin(), names.end());
  std::unordered_set<std::string_view> found;
  std::vector<ChosenEntry> chosen;
  for (std::size_t i = 0; i < directory_.size(); ++i) {
    const std::string& name = directory_[i].Filename;
    if (!wanted.contains(name)) continue;
    found.insert(name);
    chosen.push_back({i, &directory_[i]});
  }
  for (const std::string_view name : wanted)
    if (!found.contains(name)) return entryFailure(path_, std::string(name), "is not there");
  return chosen;
}

}  // namespace

std::unique_ptr<Zipit> LibzipEngine::load(FileSystem& files) {
  return std::make_unique<LibzipZipit>(files, systemPage_);
}

}  // namespace skv
