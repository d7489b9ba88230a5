#include "platform/desktop/file_settings_store.h"

#include "platform/disk/file_writer.h"
#include "platform/disk/native_calls.h"
#include "platform/disk/user_folders.h"

namespace skv {

namespace {

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
  if (loaded.ok()) text_ = std::move(loaded).value();
}

Outcome FileSettingsStore::state() {
  if (!state_.ok()) readAnew();
  return state_;
}

std::string FileSettingsStore::defaultFile() { return configFolder() + "/settings.ini"; }

Result<SettingsText> FileSettingsStore::load() const {
  auto bytes = contentOf(file_);
  if (!bytes.ok() && bytes.outcome().number() == err::fileNotFound) return SettingsText();
  if (!bytes.ok()) return bytes.outcome();
  auto text = SettingsText::parse(std::move(bytes).value());
  if (text.ok()) return text;
  return Outcome::withText(text.outcome().number(),
                           "\"" + file_ + "\": " + text.outcome().description() +
                               " Save it as UTF-8 text, or move it away to begin anew.");
}

std::string FileSettingsStore::read(std::string_view section, std::string_view key,
                                    std::string_view fallback) const {
  const std::string* value = text_.find(section, key);
  return value != nullptr ? *value : std::string(fallback);
}

Outcome FileSettingsStore::writeTogether(std::span<const StoredValue> values) {
  auto loaded = load();
  if (!loaded.ok()) return loaded.outcome();
  SettingsText text = std::move(loaded).value();
  const std::string before = text.bytes();
  for (const auto& [section, key, value] : values)
    if (const std::string* known = text.find(section, key); known == nullptr || *known != value)
      text.set(section, key, value);
  Outcome saved = text.bytes() == before ? Outcome() : save(text.bytes());
  if (saved.ok()) text_ = std::move(text);
  return saved;
}

Outcome FileSettingsStore::save(const std::string& bytes) const {
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
