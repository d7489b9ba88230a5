// The one recursive walker: every bulk file operation goes through it.
#pragma once

#include <string>
#include <string_view>

#include "core/app.h"

namespace skv {

enum class WalkCode {
  WalkScanAC = 1,           // adds the aircraft found to lstAircraft
  WalkScanPN = 2,           // adds the panels found to lstPanel
  WalkScanSN = 3,           // adds the sounds found to lstSound
  WalkCopy = 15,            // copies to dst
  WalkMove = 25,            // moves to dst
  WalkFindACCfg = 51,       // the finders leave the folder of the first match in FoundDir
  WalkFindGauge = 52,       // .GAU
  WalkDelete = 53,          // empties src
  WalkFindLooseWav = 54,    // .WAV without a sound.cfg beside it
  WalkFindPanelCfg = 56,    // PANEL.CFG
  WalkFindTextureBmp = 57,  // .BMP in a folder whose name ends in TEXTURE
  WalkFindEffect = 58,      // .FX
  WalkFindBgl = 59,         // .BGL
  WalkCollect = 70,         // adds each file's path relative to src to PackFileList
  WalkPurge = 71,           // deletes all but .CFG, .JPG and .TXT files; folders stay
  WalkSize = 99,            // adds the files' lengths to SizeTotal
};
using enum WalkCode;

// Whether thinning an add-on out keeps a file of this name: one that a user reads and edits.
bool staysWhenThinned(std::string_view name);

// What a walk has done. Who deletes, thins out, marks or empties something after it decides by
// this; everybody else tells the user at the end of the command (see tellWalk).
//
// What is kept on purpose is no failure: hidden entries, targets that are not older, links that a
// walk does not go through.
struct [[nodiscard]] WalkReport {
  int done = 0;            // files that were worked on
  int failed = 0;          // files that could not be, and folders not listed, made or removed
  int left = 0;            // entries in sight that stay in the source of a transfer without a
                           // failure: twins (see WalkTree), links and the folder that is filled
  bool stopped = false;    // the user has ended the walk early
  Outcome first = {};      // the first failure
  std::string where = {};  // the path that it befell

  bool complete() const { return failed == 0 && !stopped; }
  // After a transfer: all in sight has come to the target, so that the source may be emptied,
  // thinned out or removed.
  bool sourceMayGo() const { return complete() && left == 0; }
  // Says that a caller does without it.
  void skipped() const {}
  // For an operation of several walks.
  WalkReport& operator+=(const WalkReport& next);
  // For a step beside the walks of an operation, such as a flush. Answers whether it went well.
  bool note(const Outcome& step, const std::string& path);
};

// Tells in one box what a command could not do: `what` stands in "3 of 420 files could not be
// copied, the first: ...". One that was only stopped is told in the status line. Nothing is shown
// for a complete one. Answers complete().
bool tellWalk(App& app, const WalkReport& report, const char* what);

// What a walk does when the user wants the operation to end. Cleaning up goes on.
enum class OnStop { end, goOn };

// Walks `src` depth first, the files of a folder before its subfolders, in listing order. `src`
// itself is neither made nor removed, and `dst` ("" but for WalkCopy and WalkMove) must exist.
// Hidden and system entries are neither visited nor deleted. A file that cannot be worked on is
// skipped; a `src` that is not there has nothing to do. Yields after every entry.
//
// `overwrite` false keeps a target that is newer than its source, or of the same time and length,
// for the files directly in `src`; in the folders below every target is replaced. Read by WalkCopy
// and WalkMove alone, and WalkMove deletes a source whose target is kept. A target that is to be
// replaced gives way even if it is read-only; one that is the same all through stays. Of source
// names that differ in case alone ("twins") the first one listed gets the target; the others stay
// behind.
//
// A caller empties FoundDir before a finder, zeroes SizeTotal and empties PackFileList. A finder
// hits nothing that a transfer of FoundDir would not see.
//
// Reading codes follow a link to a folder, but not into a circle. WalkMove, WalkDelete and
// WalkPurge never go through one, not at `src` either: WalkDelete removes the link itself.
WalkReport WalkTree(App& app, const std::string& src, const std::string& dst, WalkCode code,
                    bool overwrite, OnStop onStop = OnStop::end);

}  // namespace skv
