#include "platform/desktop/file_settings_store.h"

#include "base/percent.h"
#include "base/text.h"
#include "platform/disk/file_writer.h"
#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

// Whether a character must be written as %XX: what ends a line, a name or the escape itself, and
// blanks at either end, which an editor may drop.
bool isEscaped(std::string_view text, std::size_t at) {
  const auto c = static_cast<unsigned char>(text[at]);
  if (c < 0x20 || c == 0x7F || c == '%') return true;
  if (c == ' ' || c == ';') return at == 0 || at + 1 == text.size();
  return false;
}

std::string escaped(std::string_view text, std::string_view also = {}) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!isEscaped(text, i) && also.find(text[i]) == std::string_view::npos) {
      result += text[i];
      continue;
    }
    const auto c = static_cast<unsigned char>(text[i]);
    result += '%';
    result += hexDigits[c >> 4U];
    result += hexDigits[c & 15U];
  }
  return result;
}

// The whole file; fileNotFound when there is none. A link that leads nowhere is not none: what it
// leads to may come back with its disk.
Result<std::string> contentOf(const std::string& file) {
  const Descriptor opened = openFile(file, O_RDONLY | O_NONBLOCK);
  if (!opened.valid()) {
    const int error = errno;
    struct stat link {};
    if (error == ENOENT && ::lstat(file.c_str(), &link) == 0)
      return Outcome::failure(err::deviceUnavailable, file);
    return systemFailure(error, file);
  }
  std::string bytes;
  const int error = readAll(opened.get(), bytes);
  if (error != 0) return systemFailure(error, file);
  return bytes;
}

}  // namespace

FileSettingsStore::FileSettingsStore(std::string file) : file_(std::move(file)) { readAnew(); }

void FileSettingsStore::readAnew() {
  auto loaded = load();
  state_ = loaded.outcome();
  if (loaded.ok()) sections_ = std::move(loaded).value();
}

Outcome FileSettingsStore::state() {
  if (!state_.ok()) readAnew();
  return state_;
}

std::string FileSettingsStore::defaultFile() { return configFolder() + "/settings.ini"; }

Result<FileSettingsStore::Sections> FileSettingsStore::load() const {
  const auto bytes = contentOf(file_);
  if (bytes.ok()) return parse(bytes.value());
  if (bytes.outcome().number() == err::fileNotFound) return Sections();
  return bytes.outcome();
}

FileSettingsStore::Sections FileSettingsStore::parse(const std::string& bytes) {
  Sections sections;
  Section* section = nullptr;
  for (std::string_view line : split(bytes, '\n')) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.starts_with('[') && line.ends_with(']')) {
      const std::string name = percentDecoded(line.substr(1, line.size() - 2));
      section = &sections[upper(name)];
      section->name = name;
      continue;
    }
    const auto equals = line.find('=');
    if (section == nullptr || equals == std::string_view::npos || line.starts_with(';')) continue;
    const std::string key = percentDecoded(line.substr(0, equals));
    section->entries[upper(key)] = {key, percentDecoded(line.substr(equals + 1))};
  }
  return sections;
}

std::string FileSettingsStore::read(std::string_view section, std::string_view key,
                                    std::string_view fallback) const {
  const auto inSection = sections_.find(upper(section));
  if (inSection == sections_.end()) return std::string(fallback);
  const auto& entries = inSection->second.entries;
  const auto entry = entries.find(upper(key));
  return entry == entries.end() ? std::string(fallback) : entry->second.value;
}

Outcome FileSettingsStore::writeTogether(std::span<const StoredValue> values) {
  auto loaded = load();
  if (!loaded.ok()) return loaded.outcome();
  Sections sections = std::move(loaded).value();
  bool same = true;
  for (const auto& [section, key, value] : values) {
    Section& inSection = sections[upper(section)];
    if (inSection.name.empty()) inSection.name = section;
    const auto [entry, isNew] =
        inSection.entries.try_emplace(upper(key), Entry{std::string(key), {}});
    same = same && !isNew && entry->second.value == value;
    entry->second.value = value;
  }
  Outcome saved = same ? Outcome() : save(sections);
  if (saved.ok()) sections_ = std::move(sections);
  return saved;
}

Outcome FileSettingsStore::save(const Sections& sections) const {
  std::string bytes;
  for (const auto& [upperName, section] : sections) {
    bytes += "[" + escaped(section.name, "[]") + "]\n";
    for (const auto& [upperKey, entry] : section.entries)
      bytes += escaped(entry.key, "=[") + "=" + escaped(entry.value) + "\n";
  }
  const std::string folder = file_.substr(0, file_.rfind('/'));
  if (!makePrivateFolder(folder)) return Outcome::failure(err::pathFileAccess, folder);
  PendingFile file(folder);
  int error = file.ok() ? writeAll(file.fd(), bytes) : errno;
  if (error == 0) error = errorOf([&] { return ::fchmod(file.fd(), S_IRUSR | S_IWUSR); });
  if (error == 0) error = file.flush();
  if (error == 0) error = file.publish(file_.substr(folder.size() + 1), true);
  if (error == 0) error = file.flushFolder();
  return error == 0 ? Outcome() : systemFailure(error, file_);
}

}  // namespace skv
