// The one recursive walker: every bulk file operation goes through it.
#pragma once

#include <string>

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
  WalkFindZip = 55,         // .ZIP
  WalkFindPanelCfg = 56,    // PANEL.CFG
  WalkFindTextureBmp = 57,  // .BMP in a folder whose name ends in TEXTURE
  WalkFindEffect = 58,      // .FX
  WalkFindBgl = 59,         // .BGL
  WalkCollect = 70,         // adds each file's path relative to src to PackFileList
  WalkPurge = 71,           // deletes all but .CFG, .JPG and .TXT files; folders stay
  WalkSize = 99,            // adds the files' lengths to SizeTotal
};
using enum WalkCode;

// What a walk has done. Who deletes, thins out, marks or empties something after it decides by
// this; everybody else tells the user at the end of the command (see tellWalk).
struct WalkReport {
  int done = 0;            // files that were worked on
  int failed = 0;          // files and folders that could not be, those kept on purpose left out
  Outcome first = {};      // the first failure, whose description names its path
  std::string where = {};  // that path

  bool complete() const { return failed == 0; }
  // For an operation of several walks.
  WalkReport& operator+=(const WalkReport& next);
};

// Tells in one box what a command could not do: `what` stands in "3 of 420 files could not be
// copied, the first: ...". Nothing is shown for a complete one. Answers complete().
bool tellWalk(App& app, const WalkReport& report, const char* what);

// Walks `src` depth first, the files of a folder before its subfolders, in listing order. `src`
// itself is neither made nor removed, and `dst` ("" but for WalkCopy and WalkMove) must exist.
// Hidden and system entries are neither visited nor deleted. Nothing is reported: a file that
// cannot be worked on is skipped. Yields after every entry.
//
// `overwrite` false keeps a target that is not older than its source, for the files directly in
// `src`; in the folders below every target is replaced. Read by WalkCopy and WalkMove alone, and
// WalkMove deletes a source that is not newer than its target without copying it. Of source names
// that differ in case alone the first one listed gets the target; the others stay behind.
//
// A caller empties FoundDir before a finder, zeroes SizeTotal and empties PackFileList.
//
// Reading codes follow a link to a folder, but not into a circle. WalkMove, WalkDelete and
// WalkPurge never go through one, not at `src` either: WalkDelete removes the link itself.
WalkReport WalkTree(App& app, const std::string& src, const std::string& dst, WalkCode code,
                    bool overwrite);

}  // namespace skv
