#include "core/walktree.h"

#include <algorithm>
#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/disk_queries.h"
#include "core/library_scan.h"
#include "core/long_operation.h"
#include "core/same_content.h"
#include "core/staged_folder.h"

namespace skv {

namespace {

// Which targets of a transfer give way to their source.
enum class Overwrite { always, older, never };

// What becomes of one file of a transfer.
enum class Transfer {
  send,
  drop,   // its target stands for it
  leave,  // it stays where it is, and so does the target
  fail,   // it may be any of these: noted as a failure
};

// One call of WalkTree: what stays the same on all levels of the recursion.
class Walk {
 public:
  Walk(App& app, WalkCode code, const std::string& src, const std::string& dst, OnStop onStop)
      : app_(app),
        files_(app.files()),
        rules_(rulesOf(code)),
        onStop_(onStop),
        destination_(rules_.transfers ? files_.identity(dst) : std::string()) {
    // A link to a folder above `src` closes a circle, too.
    for (std::size_t end = src.find('\\'); end != std::string::npos; end = src.find('\\', end + 1))
      if (end + 1 < src.size()) ancestors_.push_back(files_.identity(src.substr(0, end + 1)));
  }

  WalkReport top(const std::string& src, const std::string& dst, bool overwrite) {
    showFolder(src);
    const std::string here = files_.identity(src);
    if (here.empty())
      noteMissing(src);
    else if (rules_.transfers && destination_.empty())
      failed(dst, whyThereIsNone(dst));
    else if (rules_.transfers && here == destination_)
      failed(src, Outcome::withText(err::pathFileAccess, "This is the very folder to be filled."));
    else if (!mayBeEntered(src, here))
      ++report_.left;
    else
      folder(src, dst, overwrite ? Overwrite::always : Overwrite::older, here);
    return report_;
  }

 private:
  // A file under the hand of a code's action.
  struct File {
    const std::string& folder;   // with trailing backslash
    const std::string& dstPath;  // the folder of its target, with trailing backslash
    const FolderEntry& entry;
    Overwrite overwrite;

    std::string path() const { return folder + entry.name; }
    std::string target() const { return dstPath + entry.name; }
  };

  // All that tells the codes from one another.
  struct Rules {
    WalkCode code;
    // A listing costs by what it must tell of each file. `named` is for codes that go by names.
    FileSystem::Entries listing = FileSystem::Entries::plain;
    bool transfers = false;      // to `dst`, where it makes the folders
    bool removes = false;        // takes files away, so that it must not go through links
    std::string_view name = {};  // of the files that it wants, in upper case; "" for any
    std::string_view end = {};   // likewise, what their names end in
    void (Walk::*work)(const File&) = nullptr;
  };

  static const Rules& rulesOf(WalkCode code);

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
      if (ends()) break;
      const bool twin = isTwin(name, std::exchange(last, &name));
      subFolder(srcPath + name, dstPath + name, twin ? Overwrite::never : below);
      // A finder that was called with FoundDir set ends here, like one with a hit.
      if (isFinder() && !app_.FoundDir.empty()) break;
    }
    ancestors_.pop_back();
  }

  // Works on the files directly in a folder and answers its subfolders.
  std::vector<std::string> visitFiles(const std::string& srcPath, const std::string& dstPath,
                                      Overwrite overwrite) {
    std::vector<std::string> subFolders;
    const auto listing = entriesOf(srcPath);
    if (!listing.ok()) {
      if (presenceBy(listing.outcome()) == Presence::unknown) failed(srcPath, listing.outcome());
      return subFolders;
    }
    std::vector<const FolderEntry*> twins;
    const std::string* last = nullptr;
    for (const FolderEntry& entry : listing.value()) {
      if (ends()) return subFolders;
      const std::size_t before = waiting();
      if (entry.folder)
        subFolders.push_back(entry.name);
      else if (isTwin(entry.name, std::exchange(last, &entry.name)))
        twins.push_back(&entry);
      else if (wanted(entry))
        (this->*rules_.work)({srcPath, dstPath, entry, overwrite});
      if (waiting() == before) app_.windows.yield();
    }
    sendCopies();
    deleteFiles();
    // Whether a twin's target is taken shows when the first of the names has been sent.
    for (const FolderEntry* twin : twins) {
      if (ends()) break;
      (this->*rules_.work)({srcPath, dstPath, *twin, Overwrite::never});
      if (copies_.empty()) app_.windows.yield();
      sendCopies();
    }
    return subFolders;
  }

  Result<std::vector<FolderEntry>> entriesOf(const std::string& folder) {
    auto entries = files_.list(folder, rules_.listing);
    const auto isWanted = [this](const FolderEntry& entry) { return wanted(entry); };
    // What is hidden is in a listing of names, and it is no hit. Nor is what lies in a folder that
    // a transfer could not list.
    if (isFinder() && entries.ok() && std::ranges::any_of(entries.value(), isWanted))
      return files_.list(folder, FileSystem::Entries::plain);
    return entries;
  }

  bool goesByName() const { return rules_.listing == FileSystem::Entries::named; }
  bool isFinder() const { return goesByName() && rules_.code >= WalkFindACCfg; }

  bool wanted(const FolderEntry& entry) const {
    if (entry.folder || !goesByName()) return !entry.folder;
    const std::string NAME = upper(entry.name);
    return (rules_.name.empty() || NAME == rules_.name) && NAME.ends_with(rules_.end);
  }

  // A folder's copies go to the disk together, so that it may make several at a time.
  void sendCopies() {
    const auto copies = std::exchange(copies_, {});
    std::size_t told = 0;
    app_.files().copyFiles(copies, [&](const Outcome& copied) {
      const auto& [from, to] = copies[told++];
      note(from, overReadOnly(from, to, copied, &FileSystem::copyFile));
      app_.windows.yield();
      return !ends();
    });
  }

  // A read-only target that has refused a file gives way, unless it is the same.
  Outcome overReadOnly(const std::string& from, const std::string& to, const Outcome& refused,
                       Outcome (FileSystem::*send)(std::string_view, std::string_view)) {
    if (refused.number() != err::pathFileAccess) return refused;
    const auto old = files_.attributes(to);
    if (!old.ok() || old.value().folder || !old.value().readOnly) return refused;
    if (rules_.code == WalkCopy && sameContent(files_, from, to).valueOr(false)) return {};
    Attributes writable = old.value();
    writable.readOnly = false;
    if (!files_.setAttributes(to, writable).ok()) return refused;
    Outcome sent = (files_.*send)(from, to);
    if (!sent.ok()) files_.setAttributes(to, old.value()).skipped();
    return sent;
  }

  // A folder's deletions go to the disk together, too.
  void deleteFiles() {
    const auto paths = std::exchange(deletions_, {});
    std::size_t told = 0;
    files_.deleteFiles(paths, [&](const Outcome& deleted) {
      note(paths[told++], deleted);
      app_.windows.yield();
      return !ends();
    });
  }
  std::size_t waiting() const { return copies_.size() + deletions_.size(); }

  // Whether an entry's name differs in case alone from the one listed before it. Both have one
  // target, where the second must not take the place of the first.
  bool isTwin(const std::string& name, const std::string* last) const {
    return rules_.transfers && last != nullptr && equalsIgnoringCase(name, *last);
  }

  void subFolder(const std::string& src, const std::string& dst, Overwrite overwrite) {
    // Half an aircraft is none to list.
    if (rules_.code <= WalkScanSN && equalsIgnoringCase(fileName(src), StagedFolder::name)) return;
    const std::string here = files_.identity(src);
    const bool enters = !here.empty() && mayBeEntered(src, here) &&
                        std::ranges::find(ancestors_, here) == ancestors_.end();
    if (here.empty()) {
      noteMissing(src);
    } else if (enters) {
      if (rules_.transfers) makeFolder(dst);
      folder(src, dst, overwrite, here);
    } else if (rules_.code == WalkMove || here == destination_) {
      ++report_.left;
    }
    // Of a link this takes away the link itself.
    if (((rules_.code == WalkMove && enters) || rules_.code == WalkDelete) && !ends())
      removeFolder(src);
  }

  // Not a link behind which files would vanish, and not the very folder that is being filled.
  bool mayBeEntered(const std::string& src, const std::string& identity) {
    if (rules_.transfers && identity == destination_) return false;
    if (!rules_.removes) return true;
    const auto link = isLinkForCertain(files_, src);
    if (!link.ok()) failed(src, link.outcome());
    return link.ok() && !link.value();
  }

  void makeFolder(const std::string& folder) {
    const Outcome made = files_.makeFolder(folder);
    if (!made.ok() && !folderExists(files_, folder)) failed(folder, made);
  }

  void removeFolder(const std::string& folder) {
    const Outcome removed = files_.removeFolder(folder);
    if (removed.ok() || presenceOf(files_, folder) == Presence::absent) return;
    // What it still holds is there on purpose, or has been noted itself.
    const auto rest = files_.list(folder, FileSystem::Entries::all);
    if (!rest.ok() || rest.value().empty()) failed(folder, removed);
  }

  void scanAircraft(const File& file) { scan(file, skv::scanAircraft); }
  void scanPanel(const File& file) { scan(file, skv::scanPanel); }
  void scanSound(const File& file) { scan(file, skv::scanSound); }
  void scan(const File& file, Outcome (*detector)(App&, const std::string&, const std::string&)) {
    const std::string path = file.path();
    const auto found = files_.attributes(path);
    if (found.ok() && (found.value().hidden || found.value().system)) return;
    note(path, found.ok() ? detector(app_, file.folder, file.entry.name) : found.outcome());
  }

  void hit(const File& file) {
    ++report_.done;
    hit_ = true;
    app_.FoundDir = file.folder;
  }
  void hitLooseWav(const File& file) {
    const auto config = files_.attributes(file.folder + "sound.cfg");
    if (config.ok()) return;
    if (presenceBy(config.outcome()) == Presence::absent)
      hit(file);
    else
      failed(file.path(), config.outcome());
  }
  void hitTextureBmp(const File& file) {
    if (upper(file.folder).ends_with("TEXTURE\\")) hit(file);
  }

  void copy(const File& file) {
    switch (transferOf(file)) {
      case Transfer::send:
        copies_.push_back({file.path(), file.target()});
        break;
      case Transfer::leave:
        ++report_.left;
        break;
      case Transfer::drop:
      case Transfer::fail:
        break;
    }
  }

  void move(const File& file) {
    const std::string path = file.path();
    const Outcome cleared = files_.setAttributes(path, {});
    switch (transferOf(file)) {
      case Transfer::send:
        note(path, overReadOnly(path, file.target(), files_.moveFile(path, file.target()),
                                &FileSystem::moveFile));
        break;
      case Transfer::drop:
        note(path, cleared.ok() ? files_.deleteFile(path) : cleared);
        break;
      case Transfer::leave:
        ++report_.left;
        break;
      case Transfer::fail:
        break;
    }
  }

  void remove(const File& file) { deletions_.push_back(file.path()); }
  void purge(const File& file) {
    if (!staysWhenThinned(file.entry.name)) remove(file);
  }

  void collect(const File& file) {
    // An empty dst has become a backslash, which is no part of a relative path.
    const std::string target = file.target();
    app_.PackFileList.push_back(target.starts_with('\\') ? target.substr(1) : target);
    ++report_.done;
  }

  void measure(const File& file) {
    app_.SizeTotal += static_cast<double>(file.entry.length);
    ++report_.done;
  }

  Transfer transferOf(const File& file) {
    if (file.overwrite == Overwrite::always) return Transfer::send;
    const std::string path = file.path();
    const std::string target = file.target();
    const auto old = files_.attributes(target);
    if (!old.ok()) {
      if (presenceBy(old.outcome()) == Presence::absent) return Transfer::send;
      return failedTransfer(target, old.outcome());
    }
    if (old.value().folder)
      return failedTransfer(path, Outcome::failure(err::pathFileAccess, target));
    if (file.overwrite == Overwrite::never) return Transfer::leave;

    const auto time = files_.modified(path), oldTime = files_.modified(target);
    if (!time.ok()) return failedTransfer(path, time.outcome());
    if (!oldTime.ok()) return failedTransfer(target, oldTime.outcome());
    if (time.value() > oldTime.value()) return Transfer::send;
    if (time.value() == oldTime.value()) {
      const auto length = files_.fileLength(path), oldLength = files_.fileLength(target);
      if (!length.ok()) return failedTransfer(path, length.outcome());
      if (!oldLength.ok()) return failedTransfer(target, oldLength.outcome());
      // Half a copy, left by a power cut.
      if (length.value() != oldLength.value()) return Transfer::send;
    }
    // What stands behind a link may be the source itself.
    return files_.isLink(target) ? Transfer::leave : Transfer::drop;
  }

  Transfer failedTransfer(const std::string& path, const Outcome& failure) {
    failed(path, failure);
    return Transfer::fail;
  }

  void note(const std::string& path, const Outcome& worked) {
    if (report_.note(worked, path)) ++report_.done;
  }
  void failed(const std::string& path, const Outcome& failure) { report_.note(failure, path); }

  // A folder to which the disk does not lead: gone meanwhile, or a failure.
  void noteMissing(const std::string& path) {
    const Outcome reason = whyThereIsNone(path);
    if (presenceBy(reason) == Presence::unknown) failed(path, reason);
  }
  Outcome whyThereIsNone(const std::string& folder) const {
    const auto look = files_.attributes(folder);
    return look.ok() ? Outcome::failure(err::deviceIo, folder) : look.outcome();
  }

  // Whether nothing more is to be done. The entry at hand has been worked on.
  bool ends() {
    if (app_.stopRequested && onStop_ == OnStop::end) report_.stopped = true;
    return hit_ || report_.stopped;
  }

  void showFolder(const std::string& src) {
    // A name of the program's own tells nobody anything.
    const bool ours = rules_.code == WalkDelete && src.find(StagedFolder::name) != src.npos;
    app_.frmMain.lblStatus.caption = ours ? "Deleting files..." : walkStatus + src;
  }

  App& app_;
  FileSystem& files_;
  const Rules& rules_;
  const OnStop onStop_;
  const std::string destination_;  // identity of the folder that is filled, "" for none
  WalkReport report_;
  bool hit_ = false;
  std::vector<FileCopy> copies_;        // of the folder at hand
  std::vector<std::string> deletions_;  // likewise
  std::vector<std::string> ancestors_;  // identities of the folders that the walk is in
};

const Walk::Rules& Walk::rulesOf(WalkCode code) {
  using enum FileSystem::Entries;
  static constexpr Rules table[] = {
      {.code = WalkScanAC, .listing = named, .name = "AIRCRAFT.CFG", .work = &Walk::scanAircraft},
      {.code = WalkScanPN, .listing = named, .name = "PANEL.CFG", .work = &Walk::scanPanel},
      {.code = WalkScanSN, .listing = named, .name = "SOUND.CFG", .work = &Walk::scanSound},
      {.code = WalkCopy, .transfers = true, .work = &Walk::copy},
      {.code = WalkMove, .transfers = true, .removes = true, .work = &Walk::move},
      {.code = WalkDelete, .removes = true, .work = &Walk::remove},
      {.code = WalkPurge, .removes = true, .work = &Walk::purge},
      {.code = WalkCollect, .work = &Walk::collect},
      {.code = WalkSize, .listing = measured, .work = &Walk::measure},
      {.code = WalkFindACCfg, .listing = named, .name = "AIRCRAFT.CFG", .work = &Walk::hit},
      {.code = WalkFindPanelCfg, .listing = named, .name = "PANEL.CFG", .work = &Walk::hit},
      {.code = WalkFindGauge, .listing = named, .end = ".GAU", .work = &Walk::hit},
      {.code = WalkFindLooseWav, .listing = named, .end = ".WAV", .work = &Walk::hitLooseWav},
      {.code = WalkFindTextureBmp, .listing = named, .end = ".BMP", .work = &Walk::hitTextureBmp},
      {.code = WalkFindEffect, .listing = named, .end = ".FX", .work = &Walk::hit},
      {.code = WalkFindBgl, .listing = named, .end = ".BGL", .work = &Walk::hit},
  };
  return *std::ranges::find(table, code, &Rules::code);
}

}  // namespace

bool staysWhenThinned(std::string_view name) {
  // Any tail of the kept text is kept, a name of fewer letters such as "CFG" included.
  constexpr std::size_t extension = 4;
  const std::string NAME = upper(name);
  const std::string tail = NAME.substr(NAME.size() - std::min(NAME.size(), extension));
  return std::string_view(".CFG/.JPG/.TXT").find(tail) != std::string_view::npos;
}

WalkReport WalkTree(App& app, const std::string& src, const std::string& dst, WalkCode code,
                    bool overwrite, OnStop onStop) {
  return Walk(app, code, src, dst, onStop).top(src, dst, overwrite);
}

}  // namespace skv
