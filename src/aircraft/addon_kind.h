// What tells the panel side from the sound side: panels and sounds are shared between aircraft in
// the same way.
#pragma once

#include "core/app.h"

namespace skv {

struct AddonKind {
  const char* part;    // folder name and key of a variation
  const char* file;    // configuration file
  const char* backup;  // the real one, kept beside an alias
  ui::ListView ui::FrmMain::*list;
  ui::Label ui::FrmMain::*status;
  ui::Button ui::FrmMain::*restore;
  ui::Button ui::FrmMain::*assign;
  ui::Button ui::FrmMain::*remove;
  bool (*save)(App&);  // the list
  struct {
    const char *addTitle, *addPrompt, *wrongFolder, *aliasTitle, *alias;
    const char *deleteTitle, *deleteQuestion, *resetTitle, *resetQuestion, *resetDone;
  } words;
};

extern const AddonKind panelKind, soundKind;

}  // namespace skv
