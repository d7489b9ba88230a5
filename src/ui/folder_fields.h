// The folders of frmSettings: a field, a setting and a value of App for each.
#pragma once

#include <array>
#include <string>

#include "core/app.h"
#include "core/settings_keys.h"

namespace skv {

// By this file in it a folder is known as the simulator's.
inline constexpr const char* simulatorsMark = "Scenery.cfg";
inline constexpr ui::Colour wrongColour = 0x1A3FC4;  // 0xBBGGRR: a dark red

struct FolderField {
  Setting key;
  ui::TextBox ui::FrmSettings::*box;
  ui::Label ui::FrmSettings::*state;
  const char* fallback;
  std::string App::*global;
  bool mayBeEmpty;
};

// In the order in which they are stored; the simulator's is the first.
inline constexpr std::array folderFields{
    FolderField{setting::FSRoot, &ui::FrmSettings::txtFSRoot, &ui::FrmSettings::lblFSRootState,
                "C:\\Program Files\\Microsoft Games\\FS2002\\", &App::FSRoot, false},
    FolderField{setting::HangarDir, &ui::FrmSettings::txtHangarDir,
                &ui::FrmSettings::lblHangarState, "", &App::HangarDir, false},
    FolderField{setting::PacksDir, &ui::FrmSettings::txtPacksDir, &ui::FrmSettings::lblPacksState,
                "", &App::PacksDir, false},
    FolderField{setting::PanelsDir, &ui::FrmSettings::txtCentralPanel,
                &ui::FrmSettings::lblPanelState, "", &App::PanelsDir, true},
    FolderField{setting::SceneryLib, &ui::FrmSettings::txtSceneryLib,
                &ui::FrmSettings::lblSceneryState, "", &App::SceneryLib, true},
};

struct FolderState {
  std::string text;
  bool wrong = false;
};

// Whether what a field holds is right, in words for the user.
FolderState stateOf(const App& app, const FolderField& field);

}  // namespace skv
