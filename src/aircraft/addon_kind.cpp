#include "aircraft/addon_kind.h"

#include "aircraft/list_files.h"

namespace skv {

const AddonKind panelKind{.part = "panel",
                          .file = "panel.cfg",
                          .backup = "panel.preSKV.cfg",
                          .list = &ui::FrmMain::lstPanel,
                          .status = &ui::FrmMain::lblPNStatus,
                          .restore = &ui::FrmMain::btnPNRestoreOriginal,
                          .assign = &ui::FrmMain::btnAssignPN,
                          .remove = &ui::FrmMain::btnDelPN,
                          .save = SavePNList,
                          .words = {.addTitle = "Add Panel",
                                    .addPrompt = "Panel Name:",
                                    .wrongFolder = "This is not a valid Panel folder!",
                                    .aliasTitle = "Assign Panel",
                                    .alias = "This panel configuration already points to\r"
                                             "another physical panel. FS does not allow\r"
                                             "multiple aliasing. You can only add real panels.",
                                    .deleteTitle = "Delete Panel",
                                    .deleteQuestion = "Delete selected Panel?",
                                    .resetTitle = "Reset original Panel",
                                    .resetQuestion = "Are you sure to reset Panel.cfg to original?",
                                    .resetDone = "Panel reset to original version!"}};

const AddonKind soundKind{.part = "sound",
                          .file = "sound.cfg",
                          .backup = "sound.preSKV.cfg",
                          .list = &ui::FrmMain::lstSound,
                          .status = &ui::FrmMain::lblSNStatus,
                          .restore = &ui::FrmMain::btnSNRestoreOriginal,
                          .assign = &ui::FrmMain::btnAssignSN,
                          .remove = &ui::FrmMain::btnDelSN,
                          .save = SaveSNList,
                          .words = {.addTitle = "Add Sound",
                                    .addPrompt = "Sound Name:",
                                    .wrongFolder = "This is not a valid Sound folder!",
                                    .aliasTitle = "Assign Sound",
                                    .alias = "This sound configuration already points to\r"
                                             "another physical sound. FS does not allow\r"
                                             "multiple aliasing. You can only add real sounds.",
                                    .deleteTitle = "Delete Sound",
                                    .deleteQuestion = "Delete selected Sound?",
                                    .resetTitle = "Reset original Sound",
                                    .resetQuestion = "Are you sure to reset Sound.cfg to original?",
                                    .resetDone = "Sound reset to original version!"}};

}  // namespace skv
