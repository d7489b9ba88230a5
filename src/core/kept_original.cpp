#include "core/kept_original.h"

#include "core/disk_queries.h"

namespace skv {

namespace {

// Takes read-only, as `attributes` tell it, off a file: it forbids to replace, move and delete it.
Outcome clearReadOnly(FileSystem& files, const std::string& path, Attributes attributes) {
  if (!attributes.readOnly) return {};
  attributes.readOnly = false;
  return files.setAttributes(path, attributes);
}

void putReadOnlyBack(FileSystem& files, const std::string& path, const Attributes& attributes) {
  if (attributes.readOnly) files.setAttributes(path, attributes).skipped();
}

Outcome replace(FileSystem& files, const std::string& path, std::string_view content) {
  const auto found = files.attributes(path);
  if (!found.ok()) return found.outcome();
  if (Outcome cleared = clearReadOnly(files, path, found.value()); !cleared.ok()) return cleared;
  Outcome replaced = files.replaceFile(path, content);
  putReadOnlyBack(files, path, found.value());
  return replaced;
}

// Takes away a backup that was made for a change that failed: it would tell of one. Only when the
// file in force still is what the backup holds.
void dropBackup(FileSystem& files, const std::string& current, const std::string& original) {
  const auto kept = files.readFile(original);
  const auto now = files.readFile(current);
  const auto found = files.attributes(original);
  if (!kept.ok() || !now.ok() || !found.ok() || kept.value() != now.value()) return;
  if (clearReadOnly(files, original, found.value()).ok()) files.deleteFile(original).skipped();
}

Outcome notKept(const Outcome& why) {
  return Outcome::withText(why.number(), "Its original cannot be kept first: " + why.description());
}

}  // namespace

Outcome changeKeepingOriginal(FileSystem& files, const std::string& current,
                              const std::string& original, std::string_view content) {
  const auto kept = files.attributes(original);
  if (kept.ok() && kept.value().folder)
    return notKept(Outcome::failure(err::pathFileAccess, original));
  const auto stands = files.attributes(current);
  if (!stands.ok())
    return presenceBy(stands.outcome()) == Presence::absent ? files.replaceFile(current, content)
                                                            : stands.outcome();
  if (!kept.ok()) {
    if (presenceBy(kept.outcome()) == Presence::unknown) return notKept(kept.outcome());
    if (const Outcome copied = files.copyFileDurably(current, original); !copied.ok())
      return notKept(copied);
  }
  Outcome changed = replace(files, current, content);
  if (!changed.ok() && !kept.ok()) dropBackup(files, current, original);
  return changed;
}

Outcome restoreOriginal(FileSystem& files, const std::string& current,
                        const std::string& original) {
  const auto kept = files.attributes(original);
  if (!kept.ok()) return kept.outcome();
  const auto now = files.attributes(current);
  if (!now.ok() && presenceBy(now.outcome()) == Presence::unknown) return now.outcome();
  const auto length = files.fileLength(original);
  if (!length.ok()) return length.outcome();
  // What a power cut has left of a copy is no original.
  if (length.value() == 0 && now.ok() && files.fileLength(current).valueOr(1) != 0)
    return Outcome::withText(err::pathFileAccess, "\"" + original + "\" is empty.");

  const Attributes replaced = now.valueOr({});
  Outcome moved = clearReadOnly(files, current, replaced);
  if (moved.ok()) moved = clearReadOnly(files, original, kept.value());
  if (moved.ok()) moved = files.moveFile(original, current);
  if (moved.ok()) {
    putReadOnlyBack(files, current, kept.value());
  } else {
    putReadOnlyBack(files, current, replaced);
    putReadOnlyBack(files, original, kept.value());
  }
  return moved;
}

}  // namespace skv
