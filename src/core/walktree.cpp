#include "core/walktree.h"

#include <algorithm>

#include "base/paths.h"
#include "base/text.h"
#include "core/profile.h"
#include "core/utilities.h"

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
  Walk(App& app, WalkCode code, const std::string& dst)
      : app_(app),
        code_(code),
        destination_(transfers(code) ? app.files().identity(dst) : std::string()) {}

  void top(const std::string& src, const std::string& dst, bool overwrite) {
    if (leadsAstray(src))
      showFolder(src);
    else
      folder(src, dst, overwrite);
  }

 private:
  // Works on the files directly in a folder and answers its subfolders, none after a hit.
  std::vector<std::string> visitFiles(const std::string& srcPath, const std::string& dstPath,
                                      bool overwrite) {
    const auto listing = app_.files().list(srcPath, wantedEntries());
    app_.error.clear();
    std::vector<std::string> subFolders;
    if (!listing.ok()) return subFolders;
    for (const FolderEntry& entry : listing.value()) {
      if (entry.folder) {
        subFolders.push_back(entry.name);
      } else if (file(srcPath, dstPath, entry, overwrite)) {
        app_.FoundDir = srcPath;
        return {};
      }
      app_.error.clear();
      app_.windows.yield();
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

  void folder(const std::string& src, const std::string& dst, bool overwrite) {
    showFolder(src);
    const std::string srcPath = withBackslash(src);
    const std::string dstPath = withBackslash(dst);
    const auto subFolders = visitFiles(srcPath, dstPath, overwrite);
    ancestors_.push_back(srcPath);
    for (const std::string& name : subFolders) {
      subFolder(srcPath + name, dstPath + name);
      if (found()) break;
    }
    ancestors_.pop_back();
  }

  void subFolder(const std::string& src, const std::string& dst) {
    const bool enters = !leadsAstray(src);
    if (enters) {
      if (transfers(code_)) app_.files().makeFolder(dst).skipped();
      folder(src, dst, true);
    }
    // Of a link this takes away the link itself.
    if ((code_ == WalkMove && enters) || code_ == WalkDelete)
      app_.step(app_.files().removeFolder(src));
  }

  // Whether the walk must not enter: a link behind which files would vanish, a circle, or the very
  // folder that is being filled.
  bool leadsAstray(const std::string& src) {
    const FileSystem& files = app_.files();
    if (!destination_.empty() && files.identity(src) == destination_) return true;
    if (!files.isLink(withoutBackslash(src))) return false;
    if (removesFromSource(code_)) return true;
    const std::string here = files.identity(src);
    return std::ranges::any_of(
        ancestors_, [&](const std::string& above) { return files.identity(above) == here; });
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
            bool overwrite) {
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
        if (mayReplace(path, dstPath + name, overwrite))
          app_.step(app_.files().copyFile(path, dstPath + name));
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

  bool mayReplace(const std::string& path, const std::string& target, bool overwrite) const {
    const FileSystem& files = app_.files();
    if (overwrite || !PathExists(files, target)) return true;
    const auto source = files.modified(path);
    const auto old = files.modified(target);
    return source.ok() && old.ok() && source.value() > old.value();
  }

  void move(const std::string& path, const std::string& target, bool overwrite) {
    app_.step(app_.files().setAttributes(path, {}));
    if (mayReplace(path, target, overwrite)) {
      app_.error.clear();
      app_.step(app_.files().moveFile(path, target));
    } else if (!app_.error.pending()) {
      app_.step(app_.files().deleteFile(path));
    }
  }

  void remove(const std::string& path) {
    app_.error.clear();
    app_.step(app_.files().setAttributes(path, {}));
    app_.step(app_.files().deleteFile(path));
  }

  static bool keptByPurge(const std::string& NAME) {
    const std::size_t start = NAME.size() < 4 ? 0 : NAME.size() - 4;
    return std::string_view(".CFG/.JPG/.TXT").find(std::string_view(NAME).substr(start)) !=
           std::string_view::npos;
  }

  App& app_;
  const WalkCode code_;
  const std::string destination_;       // identity of the folder that is filled, "" for none
  std::vector<std::string> ancestors_;  // the folders that the walk is in
};

}  // namespace

void WalkTree(App& app, const std::string& src, const std::string& dst, WalkCode code,
              bool overwrite) {
  Walk(app, code, dst).top(src, dst, overwrite);
}

}  // namespace skv
