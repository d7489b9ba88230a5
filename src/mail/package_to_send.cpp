#include "mail/package_to_send.h"

#include <utility>

#include "base/paths.h"
#include "base/text.h"
#include "core/collect_files.h"
#include "core/disk_queries.h"
#include "core/kept_original.h"
#include "core/stores.h"
#include "core/view.h"
#include "mail/mail_contact.h"
#include "packaging/package_commands.h"

namespace skv {

namespace {

// A file that the user has edited, while the Package's older one is unpacked over it.
constexpr std::string_view editedEnd = ".skv-edited";

}  // namespace

PackageToSend::PackageToSend(App& app, const MailKind& kind)
    : app_(app),
      form_(app.frmMailPack),
      kind_(kind),
      name_(form_.Name),
      file_(name_ + packageEnd),
      package_(app.*kind.packages + file_) {}

bool PackageToSend::fails(const Outcome& outcome) {
  return ReportMailError(app_, outcome) || !goesOn(app_);
}

bool PackageToSend::prepare() {
  auto files = filesOfAddon();
  if (fails(files.outcome()) || fails(finishHalf(files.value()))) return false;
  const auto found = app_.files().attributes(package_);
  if (!found.ok() && presenceBy(found.outcome()) == Presence::unknown)
    return !fails(found.outcome());
  Paths edited;
  if (found.ok()) {
    auto newer = editedOf(files.value());
    if (fails(newer.outcome())) return false;
    edited = std::move(newer).value();
    if (edited.empty() || !askAnew(edited)) return !declined_;
  }
  if (!selectAddon()) {
    app_.windows.messageBox({"\"" + name_ +
                                 "\" has no Package, and none can be made while it does not stand "
                                 "in the list.",
                             ui::BoxIcon::exclamation});
    return false;
  }
  if (!edited.empty()) return makeAnew(edited);
  return askToCompress() && make();
}

bool PackageToSend::askAnew(const Paths& edited) {
  ui::Box box{.text = "\"" + name_ + "\" was changed since its Package was made. Newer files: " +
                      std::to_string(edited.size()) + ", the first: \"" + edited[0] +
                      "\".\r\n\r\nMake the Package anew before it is sent?",
              .icon = ui::BoxIcon::question,
              .buttons = ui::BoxButtons::yesNoCancel,
              .yes = "Make it anew",
              .no = "Send it as it is"};
  for (const std::string& path : edited) box.details += path + "\r\n";
  const ui::Answer answer = app_.windows.messageBox(box);
  declined_ = answer == ui::Answer::cancel || !goesOn(app_);
  return answer == ui::Answer::yes && !declined_;
}

bool PackageToSend::askToCompress() {
  const ui::Answer answer = app_.windows.messageBox(
      {.text = "\"" + name_ +
               "\" has no Package yet. Making one compresses it on this computer, too: its folder "
               "keeps only the .cfg, .jpg and .txt files, and all is in the Package.\r\n\r\n"
               "Uncompress it again when the mail is on its way?",
       .icon = ui::BoxIcon::question,
       .buttons = ui::BoxButtons::yesNoCancel,
       .yes = "Uncompress it again",
       .no = "Leave it compressed"});
  wantsBack_ = answer == ui::Answer::yes;
  declined_ = answer == ui::Answer::cancel || !goesOn(app_);
  return !declined_;
}

// What is newer comes through: UnPackage puts the Package's files in the place of those in
// subfolders, whatever their age.
bool PackageToSend::makeAnew(const Paths& edited) {
  FileSystem& files = app_.files();
  form_.lblStatus.caption = "Uncompressing " + file_ + " ... Please wait!";
  Outcome step;
  for (const std::string& path : edited)
    if (step.ok()) step = files.copyFileDurably(path, path + std::string(editedEnd));
  if (step.ok()) mnuFileUnpackage_Click(app_);
  Paths kept;
  for (const std::string& path : edited) kept.push_back(path + std::string(editedEnd));
  const Outcome restored = finishHalf(kept);
  if (fails(step.ok() ? restored : step)) return false;
  // Otherwise the reason has been told.
  return presenceOf(files, package_) == Presence::absent && selectAddon() && make();
}

bool PackageToSend::make() {
  form_.lblStatus.caption = "Making " + file_ + " ... Please wait!";
  mnuFilePackage_Click(app_);
  if (presenceOf(app_.files(), package_) == Presence::there) return goesOn(app_);
  // The reason has been told.
  wantsBack_ = false;
  form_.lblStatus.caption = "There is no Package of \"" + name_ + "\", and nothing was sent.";
  return false;
}

Result<PackageToSend::Paths> PackageToSend::filesOfAddon() const {
  Paths found;
  auto& list = app_.frmMain.*kind_.list;
  const int row = form_.scenery ? 0 : list.rowOf(form_.row);
  const std::string own = row == 0 ? kind_.addons(app_) + name_ : list.subItem(row, 1);
  for (const std::string& folder :
       {withBackslash(own), mainRootOf(kind_.store(app_)) + name_ + "\\"}) {
    Paths names;
    const WalkReport report = collectFiles(app_, folder, names);
    if (report.failed > 0) return report.first;
    if (report.stopped) return Outcome::failure(err::cancelled);
    for (const std::string& name : names) found.push_back(folder + name);
  }
  return found;
}

// Those that are newer than the Package.
Result<PackageToSend::Paths> PackageToSend::editedOf(const Paths& files) const {
  const auto made = app_.files().modified(package_);
  if (!made.ok()) return made.outcome();
  Paths edited;
  for (const std::string& path : files) {
    const auto time = app_.files().modified(path);
    if (!time.ok()) return time.outcome();
    if (time.value() > made.value()) edited.push_back(path);
  }
  return edited;
}

// Puts the user's files back in their places, also those of a run that was killed before it could.
Outcome PackageToSend::finishHalf(const Paths& files) {
  Outcome first;
  for (const std::string& path : files) {
    if (!path.ends_with(editedEnd) || presenceOf(app_.files(), path) == Presence::absent) continue;
    const Outcome restored =
        restoreOriginal(app_.files(), path.substr(0, path.size() - editedEnd.size()), path);
    if (first.ok()) first = restored;
  }
  return first;
}

// Packages are made of the selected row. The one that the dialog is for may have gone, or its view,
// or another is selected by now.
bool PackageToSend::selectAddon() {
  auto& list = app_.frmMain.*kind_.list;
  const bool shows = form_.scenery == app_.frmMain.frameScenery.visible.get() &&
                     (form_.scenery || !inFSView(app_));
  if (!shows) return false;
  int row = list.rowOf(form_.row);
  // The list may have been loaded anew.
  for (int i = 1; i <= list.count() && row == 0; ++i)
    if (kind_.nameOf(list.subItem(i, 1)) == name_) row = i;
  if (row == 0 || kind_.nameOf(list.subItem(row, 1)) != name_) return false;
  if (list.selected() == row) return true;
  const auto id = list.id(row);
  list.select(row);
  ui::raise(list.click);
  return list.rowOf(id) != 0 && list.selected() == list.rowOf(id);
}

Result<std::string> PackageToSend::fileFor(bool mailProgram) {
  if (!mailProgram || !wantsBack_) return package_;
  copy_ = freePath(app_.files(), app_.InstallTempDir, "Mail.tmp");
  if (Outcome copied = app_.files().copyFile(package_, copy_); !copied.ok()) return copied;
  return copy_;
}

void PackageToSend::giveBack() {
  if (!copy_.empty()) app_.files().deleteFile(copy_).skipped();
  if (!wantsBack_ || app_.ending) return;
  form_.lblStatus.caption = "Uncompressing " + file_ + " ... Please wait!";
  if (selectAddon())
    mnuFileUnpackage_Click(app_);
  else
    app_.windows.messageBox({"\"" + name_ + "\" stays compressed, as it is not in the list now.",
                             ui::BoxIcon::exclamation});
}

}  // namespace skv
