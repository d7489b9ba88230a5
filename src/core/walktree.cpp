#include "core/walktree.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/profile.h"

namespace skv {

namespace {

bool isFinder(WalkCode code) {
  switch (code) {
    case WalkFindACCfg:
    case WalkFindGauge:
    case WalkFindLooseWav:
    case WalkFindZip:
    case WalkFindPanelCfg:
    case WalkFindTextureBmp:
    case WalkFindEffect:
    case WalkFindBgl:
      return true;
    default:
      return false;
  }
}

bool transfers(WalkCode code) { return code == WalkCopy || code == WalkMove; }

bool removesFromSource(WalkCode code) {
  return code == WalkMove || code == WalkDelete || code == WalkPurge;
}

// Which targets of a transfer give way to their source.
enum class Overwrite { always, older, never };

// What becomes of one file of a transfer.
enum class Transfer {
  send,
  drop,   // its target makes it superfluous
  leave,  // it stays where it is, and so does the target
};

// The import commands' detectors: a found configuration file becomes a row of a library list.
class LibraryScan {
 public:
  explicit LibraryScan(App& app) : app_(app) {}

  void aircraft(const std::string& folder) {
    auto& list = app_.frmMain.lstAircraft;
    if (list.findSubItem1(folder) != 0 || list.findSubItem1(app_.ACRoot) != 0) return;
    std::string title = read(folder + "Aircraft.cfg", "fltsim.0", "Title");
    if (title.empty()) title = "*Unknown*";
    list.add(std::move(title), {folder});
  }

  void panel(const std::string& folder) {
    add(app_.frmMain.lstPanel, folder, "panel.cfg", "PANEL");
  }
  void sound(const std::string& folder) {
    add(app_.frmMain.lstSound, folder, "sound.cfg", "SOUND");
  }

 private:
  std::string read(const std::string& file, const char* section, const char* key) const {
    return ReadProfile(app_.files(), app_.codePage, file, section, key);
  }

  // An alias is only a pointer to another add-on. A folder that is called after its kind
  // ("panel.vfr") tells nothing, so the aircraft's name stands for it.
  void add(ui::ListView& list, const std::string& folder, const char* file, const char* kind) {
    if (!read(folder + file, "fltsim", "alias").empty()) return;
    if (list.findSubItem1(folder) != 0) return;
    std::string name = FolderName(folder);
    if (upper(name).starts_with(kind))
      name = FolderName(folder.substr(0, folder.size() - name.size() - 1));
    list.add(std::move(name), {folder});
  }

  App& app_;
};

// One call of WalkTree: what stays the same on all levels of the recursion.
class Walk {
 public:
  Walk(App& app, WalkCode code, const std::string& src, const std::string& dst)
      : app_(app),
        code_(code),
        destination_(transfers(code) ? app.files().identity(dst) : std::string()) {
    // A link to a folder above `src` closes a circle, too.
    for (std::size_t end = src.find('\\'); end != std::string::npos; end = src.find('\\', end + 1))
      if (end + 1 < src.size()) ancestors_.push_back(app.files().identity(src.substr(0, end + 1)));
  }

  WalkReport top(const std::string& src, const std::string& dst, bool overwrite) {
    const std::string here = app_.files().identity(src);
    if (mayBeEntered(src, here)) {
      folder(src, dst, overwrite ? Overwrite::always : Overwrite::older, here);
    } else {
      showFolder(src);
      app_.error.clear();
    }
    return report_;
  }

 private:
  // Works on the files directly in a folder and answers its subfolders, none after a hit.
  std::vector<std::string> visitFiles(const std::string& srcPath, const std::string& dstPath,
                                      Overwrite overwrite) {
    const auto listing = app_.files().list(srcPath, wantedEntries());
    app_.error.clear();
    std::vector<std::string> subFolders;
    if (!listing.ok()) {
      // A walk of a folder that is not there has nothing to do.
      if (presenceBy(listing.outcome()) == Presence::unknown) failed(srcPath, listing.outcome());
      return subFolders;
    }
    if (code_ == WalkCopy && overwrite == Overwrite::always)
      return copyEntries(srcPath, dstPath, listing.value());
    const std::string* last = nullptr;
    for (const FolderEntry& entry : listing.value()) {
      if (entry.folder) {
        subFolders.push_back(entry.name);
      } else if (file(srcPath, dstPath, entry,
                      isTwin(entry.name, std::exchange(last, &entry.name)) ? Overwrite::never
                                                                           : overwrite)) {
        app_.FoundDir = srcPath;
        return {};
      }
      app_.error.clear();
      app_.windows.yield();
    }
    return subFolders;
  }

  // Hands the files that replace whatever stands at their targets over together, so that the disk
  // may copy several at a time.
  std::vector<std::string> copyEntries(const std::string& srcPath, const std::string& dstPath,
                                       const std::vector<FolderEntry>& entries) {
    std::vector<std::string> subFolders;
    std::vector<FileCopy> copies;
    std::vector<const FolderEntry*> twins;
    const auto next = [this] {
      app_.error.clear();
      app_.windows.yield();
    };
    const std::string* last = nullptr;
    for (const FolderEntry& entry : entries) {
      if (entry.folder) {
        subFolders.push_back(entry.name);
        next();
      } else if (isTwin(entry.name, std::exchange(last, &entry.name))) {
        twins.push_back(&entry);
      } else {
        copies.push_back({srcPath + entry.name, dstPath + entry.name});
      }
    }
    std::size_t told = 0;
    app_.files().copyFiles(copies, [&](const Outcome& copied) {
      note(copies[told].from, copied);
      ++told;
      next();
    });
    for (const FolderEntry* twin : twins) {
      file(srcPath, dstPath, *twin, Overwrite::never);
      next();
    }
    return subFolders;
  }

  // A listing costs by what it must tell of each file.
  FileSystem::Entries wantedEntries() const {
    if (code_ == WalkSize) return FileSystem::Entries::measured;
    return goesByName() ? FileSystem::Entries::named : FileSystem::Entries::plain;
  }
  bool goesByName() const {
    return isFinder(code_) || code_ == WalkScanAC || code_ == WalkScanPN || code_ == WalkScanSN;
  }

  // A finder that has been called with FoundDir set stops at the first subfolder, like one with a
  // hit.
  bool found() const { return isFinder(code_) && !app_.FoundDir.empty(); }

  void showFolder(const std::string& src) { app_.frmMain.lblStatus.caption = "Processing: " + src; }

  void folder(const std::string& src, const std::string& dst, Overwrite overwrite,
              const std::string& identity) {
    showFolder(src);
    const std::string srcPath = withBackslash(src);
    const std::string dstPath = withBackslash(dst);
    const auto subFolders = visitFiles(srcPath, dstPath, overwrite);
    const Overwrite below = overwrite == Overwrite::never ? overwrite : Overwrite::always;
    ancestors_.push_back(identity);
    const std::string* last = nullptr;
    for (const std::string& name : subFolders) {
      const bool twin = isTwin(name, std::exchange(last, &name));
      subFolder(srcPath + name, dstPath + name, twin ? Overwrite::never : below);
      if (found()) break;
    }
    ancestors_.pop_back();
  }

  // Whether an entry's name differs in case alone from the one listed before it. Both have one
  // target, where the second must not take the place of the first.
  bool isTwin(const std::string& name, const std::string* last) const {
    return transfers(code_) && last != nullptr && equalsIgnoringCase(name, *last);
  }

  void subFolder(const std::string& src, const std::string& dst, Overwrite overwrite) {
    const std::string here = app_.files().identity(src);
    const bool enters =
        mayBeEntered(src, here) && std::ranges::find(ancestors_, here) == ancestors_.end();
    if (enters) {
      if (transfers(code_)) app_.files().makeFolder(dst).skipped();
      folder(src, dst, overwrite, here);
    } else if (here.empty()) {
      failed(src, Outcome::failure(err::deviceIo, src));
    }
    // Of a link this takes away the link itself.
    if ((code_ == WalkMove && enters) || code_ == WalkDelete)
      app_.step(app_.files().removeFolder(src));
  }

  // Not a link behind which files would vanish, and not the very folder that is being filled. What
  // the disk does not tell counts as the worst.
  bool mayBeEntered(const std::string& src, const std::string& identity) const {
    if (identity.empty()) return false;
    if (transfers(code_) && (destination_.empty() || identity == destination_)) return false;
    return !removesFromSource(code_) || !app_.files().isLink(withoutBackslash(src));
  }

  // Whether a code that goes by names wants the file.
  bool matches(const std::string& srcPath, const std::string& NAME) const {
    switch (code_) {
      case WalkScanAC:
      case WalkFindACCfg:
        return NAME == "AIRCRAFT.CFG";
      case WalkScanPN:
      case WalkFindPanelCfg:
        return NAME == "PANEL.CFG";
      case WalkScanSN:
        return NAME == "SOUND.CFG";
      case WalkFindGauge:
        return NAME.ends_with(".GAU");
      case WalkFindLooseWav:
        return NAME.ends_with(".WAV") && !PathExists(app_.files(), srcPath + "sound.cfg");
      case WalkFindZip:
        return NAME.ends_with(".ZIP");
      case WalkFindTextureBmp:
        return NAME.ends_with(".BMP") && upper(srcPath).ends_with("TEXTURE\\");
      case WalkFindEffect:
        return NAME.ends_with(".FX");
      case WalkFindBgl:
        return NAME.ends_with(".BGL");
      default:
        return false;
    }
  }

  bool isPlain(const std::string& path) const {
    const auto found = app_.files().attributes(path);
    return found.ok() && !found.value().hidden && !found.value().system;
  }

  // The action of the code on one file; true is a hit.
  bool file(const std::string& srcPath, const std::string& dstPath, const FolderEntry& entry,
            Overwrite overwrite) {
    const std::string& name = entry.name;
    const std::string path = srcPath + name;
    if (goesByName() && !(matches(srcPath, upper(name)) && isPlain(path))) return false;
    switch (code_) {
      case WalkScanAC:
        LibraryScan(app_).aircraft(srcPath);
        return false;
      case WalkScanPN:
        LibraryScan(app_).panel(srcPath);
        return false;
      case WalkScanSN:
        LibraryScan(app_).sound(srcPath);
        return false;
      case WalkCopy:
        if (transferOf(path, dstPath + name, overwrite) == Transfer::send)
          note(path, app_.files().copyFile(path, dstPath + name));
        return false;
      case WalkMove:
        move(path, dstPath + name, overwrite);
        return false;
      case WalkDelete:
        remove(path);
        return false;
      case WalkCollect:
        // An empty dst has become a backslash, which is no part of a relative path.
        app_.PackFileList.push_back((dstPath.starts_with('\\') ? dstPath.substr(1) : dstPath) +
                                    name);
        return false;
      case WalkPurge:
        if (!keptByPurge(upper(name))) remove(path);
        return false;
      case WalkSize:
        app_.SizeTotal += static_cast<double>(entry.length);
        return false;
      default:
        return isFinder(code_);
    }
  }

  Transfer transferOf(const std::string& path, const std::string& target,
                      Overwrite overwrite) const {
    if (overwrite == Overwrite::always) return Transfer::send;
    const FileSystem& files = app_.files();
    const auto old = files.attributes(target);
    if (!old.ok())
      return old.outcome().number() == err::fileNotFound ? Transfer::send : Transfer::leave;
    if (overwrite == Overwrite::never || old.value().folder) return Transfer::leave;
    const auto time = files.modified(path);
    const auto oldTime = files.modified(target);
    if (!time.ok() || !oldTime.ok()) return Transfer::leave;
    if (time.value() > oldTime.value()) return Transfer::send;
    // What stands behind a link may be the source itself.
    return files.isLink(target) ? Transfer::leave : Transfer::drop;
  }

  void move(const std::string& path, const std::string& target, Overwrite overwrite) {
    app_.step(app_.files().setAttributes(path, {}));
    switch (transferOf(path, target, overwrite)) {
      case Transfer::send:
        app_.error.clear();
        note(path, app_.files().moveFile(path, target));
        break;
      case Transfer::drop:
        if (!app_.error.pending()) note(path, app_.files().deleteFile(path));
        break;
      case Transfer::leave:
        break;
    }
  }

  void remove(const std::string& path) {
    app_.error.clear();
    app_.step(app_.files().setAttributes(path, {}));
    note(path, app_.files().deleteFile(path));
  }

  void note(const std::string& path, const Outcome& worked) {
    if (app_.step(worked))
      ++report_.done;
    else
      failed(path, worked);
  }
  void failed(const std::string& path, const Outcome& failure) {
    if (report_.failed++ > 0) return;
    report_.first = failure;
    report_.where = path;
  }

  static bool keptByPurge(const std::string& NAME) {
    const std::size_t start = NAME.size() < 4 ? 0 : NAME.size() - 4;
    return std::string_view(".CFG/.JPG/.TXT").find(std::string_view(NAME).substr(start)) !=
           std::string_view::npos;
  }

  App& app_;
  const WalkCode code_;
  const std::string destination_;  // identity of the folder that is filled, "" for none
  WalkReport report_;
  std::vector<std::string> ancestors_;  // identities of the folders that the walk is in
};

}  // namespace

WalkReport& WalkReport::operator+=(const WalkReport& next) {
  if (failed == 0 && next.failed > 0) {
    first = next.first;
    where = next.where;
  }
  done += next.done;
  failed += next.failed;
  return *this;
}

bool tellWalk(App& app, const WalkReport& report, const char* what) {
  if (report.complete()) return true;
  app.windows.messageBox({std::to_string(report.failed) + " of " +
                              std::to_string(report.done + report.failed) + " files could not be " +
                              what + ", the first:\r\n" + report.where + "\r\n" +
                              report.first.description(),
                          ui::BoxIcon::exclamation});
  return false;
}

WalkReport WalkTree(App& app, const std::string& src, const std::string& dst, WalkCode code,
                    bool overwrite) {
  return Walk(app, code, src, dst).top(src, dst, overwrite);
}

}  // namespace skv
