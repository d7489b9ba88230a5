#include "aircraft/original_cfg.h"

#include "core/disk_queries.h"
#include "core/kept_original.h"

namespace skv {

Outcome changeAircraftCfg(FileSystem& files, const std::string& folder, std::string_view content) {
  return changeKeepingOriginal(files, folder + aircraftCfg, folder + originalAircraftCfg, content);
}

Outcome restoreAircraftCfg(FileSystem& files, const std::string& folder) {
  const std::string current = folder + aircraftCfg;
  const std::string original = folder + originalAircraftCfg;
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
