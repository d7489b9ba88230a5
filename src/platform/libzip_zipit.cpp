#include "platform/libzip_zipit.h"

#include <set>

#include "base/paths.h"
#include "platform/libzip_add.h"
#include "platform/libzip_archive.h"
#include "platform/libzip_extract.h"

namespace skv {

namespace {

constexpr int complete = 100; // percent

class LibzipZipit : public Zipit {
public:
  LibzipZipit(FileSystem &files, CodePage systemPage)
      : files_(files), systemPage_(std::move(systemPage)) {}

  Outcome setArchivefile(std::string_view path) override;
  const std::vector<ZipEntry> &entries() const override { return entries_; }
  Outcome addfiles(const std::vector<std::string> &names) override;
  Outcome extractfiles(const std::vector<std::string> &names) override;

private:
  Outcome readEntries();
  Outcome extract(const std::vector<std::string> &names);
  void report(const std::function<void(int)> &event, int percent);

  FileSystem &files_;
  const CodePage systemPage_;
  std::string path_; // Windows path, full
  std::vector<ArchiveEntry> directory_;
  std::vector<ZipEntry> entries_;
  int reported_ = 0;
};

Outcome LibzipZipit::setArchivefile(std::string_view path) {
  path_ = path;
  directory_.clear();
  entries_.clear();
  const auto found = files_.attributes(path_);
  if (!found.ok())
    return {};
  return readEntries();
}

Outcome LibzipZipit::readEntries() {
  const auto native = files_.nativePath(path_);
  if (!native.ok())
    return native.outcome();
  auto archive = openZip(native.value(), path_);
  if (!archive.ok())
    return archive.outcome();
  auto directory =
      readDirectory(archive.value().get(), native.value(), path_, systemPage_);
  if (!directory.ok())
    return directory.outcome();
  directory_ = std::move(directory).value();
  for (const ArchiveEntry &entry : directory_)
    entries_.push_back({entry.Filename, entry.size});
  return {};
}

void LibzipZipit::report(const std::function<void(int)> &event, int percent) {
  if (percent > reported_) {
    reported_ = percent;
    if (event)
      event(percent);
  }
  if (Yield)
    Yield();
}

Outcome LibzipZipit::addfiles(const std::vector<std::string> &names) {
  if (BarReset1)
    BarReset1();
  reported_ = 0;
  Packing job{
      path_, withBackslash(files_.currentFolder()), {}, compressionlevel};
  for (const std::string &name : names) {
    if (!includesystemfiles) {
      const auto attributes = files_.attributes(job.folder + name);
      if (attributes.ok() && attributes.value().system)
        continue;
    }
    job.names.push_back(name);
  }
  Outcome packed = packFiles(files_, systemPage_, job, [this](int percent) {
    report(AddProgress, percent);
  });
  if (BarReset2)
    BarReset2();
  return packed;
}

Outcome LibzipZipit::extractfiles(const std::vector<std::string> &names) {
  if (BarReset1)
    BarReset1();
  reported_ = 0;
  Outcome extracted = extract(names);
  if (ExtractProgress)
    ExtractProgress(complete);
  if (BarReset2)
    BarReset2();
  return extracted;
}

Outcome LibzipZipit::extract(const std::vector<std::string> &names) {
  const auto native = files_.nativePath(path_);
  if (!native.ok())
    return native.outcome();
  Extraction job{native.value(), path_, extractfolder, {}, &directory_};
  const std::set<std::string_view> wanted(names.begin(), names.end());
  std::vector<const ArchiveEntry *> chosen;
  for (std::size_t i = 0; i < directory_.size(); ++i) {
    if (!wanted.contains(directory_[i].Filename))
      continue;
    job.chosen.push_back(i);
    chosen.push_back(&directory_[i]);
  }
  Outcome sound = auditArchive(path_, chosen);
  if (!sound.ok())
    return sound;
  return extractEntries(
      files_, job, [this](int percent) { report(ExtractProgress, percent); });
}

} // namespace

std::unique_ptr<Zipit> LibzipEngine::load(FileSystem &files) {
  return std::make_unique<LibzipZipit>(files, systemPage_);
}

} // namespace skv
