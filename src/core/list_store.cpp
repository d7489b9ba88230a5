#include "core/list_store.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "core/disk_queries.h"
#include "core/messages.h"

namespace skv {

namespace {

// Why the rows must not be written over the file, success when they may be.
Outcome mayBeWritten(const App& app, const ListSource& source, const std::string& file) {
  const auto refused = [](const char* why) {
    return Outcome::withText(err::pathFileAccess,
                             std::string(why) + " View, Refresh (F5) loads it anew.");
  };
  if (!source.file.empty() && !equalsIgnoringCase(source.file, file))
    return refused("The list on screen is that of another folder.");
  if (!source.file.empty() && !source.bytes) return refused("It could not be read before.");
  const auto now = readListFile(app.platform.files, file);
  if (!now.ok()) return now.outcome();
  if (now.value() != source.bytes.value_or("")) return refused("It has changed since.");
  return {};
}

}  // namespace

std::string inOneField(std::string text) {
  keepInOneField(text, 0);
  return text;
}

bool keepInOneField(std::string& line, std::size_t start) {
  bool kept = true;
  for (const char breaking : {fieldSeparator, '\r', '\n'})
    for (std::size_t at = start; (at = line.find(breaking, at)) != std::string::npos;) {
      line[at] = ' ';
      kept = false;
    }
  return kept;
}

std::vector<std::vector<std::string_view>> listLines(std::string_view bytes) {
  std::vector<std::vector<std::string_view>> lines;
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find('\n'), bytes.size());
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty()) continue;
    auto& fields = lines.emplace_back();
    for (std::size_t separator; (separator = line.find(fieldSeparator)) != std::string_view::npos;
         line.remove_prefix(separator + 1))
      fields.push_back(line.substr(0, separator));
    fields.push_back(line);
  }
  return lines;
}

Result<std::string> readListFile(const FileSystem& files, const std::string& file) {
  auto bytes = files.readFile(file);
  if (bytes.ok()) return bytes;
  const auto found = files.attributes(file);
  if (found.ok()) return bytes.outcome();
  if (presenceBy(found.outcome()) == Presence::unknown) return found.outcome();
  const auto folder = files.attributes(folderAbove(file));
  return folder.ok() ? Result<std::string>(std::string()) : folder.outcome();
}

Result<std::string> loadListFile(App& app, ListSource& source, const std::string& file) {
  source = {file, std::nullopt};
  auto bytes = readListFile(app.files(), file);
  if (bytes.ok()) source.bytes = bytes.value();
  return bytes;
}

Outcome saveListFile(App& app, ListSource& source, const std::string& file, std::string bytes) {
  if (Outcome may = mayBeWritten(app, source, file); !may.ok()) return may;
  Outcome saved = app.files().replaceFile(file, bytes);
  if (saved.ok()) source = {file, std::move(bytes)};
  return saved;
}

void tellListFailure(App& app, const std::string& what, const std::string& file,
                     const Outcome& failure) {
  tellFailure(app, "The list \"" + file + "\" could not be " + what + ".", failure);
}

}  // namespace skv
