// The window of frmMain: menu bar, the three views, status line.
#pragma once

#include <QMainWindow>

#include "ui/model/frm_main.h"
#include "ui/qt/form_builder.h"

class QSplitter;

namespace skv::ui::qt {

class FormWindow;

// Not shown yet; follows the form from then on.
QMainWindow* makeMainWindow(Bindings& bindings, FrmMain& form, const FileSystem& files,
                            QWidget* owner);

// The views, for makeMainWindow.
QWidget* makeAircraftBand(FormBuilder& build, FrmMain& form);
QWidget* makeAddonBand(FormBuilder& build, FrmMain& form);
// Two halves with a divider between them that the user drags; equal at first, whatever they hold.
QSplitter* makeHalves(FormBuilder& build, Divider& divider, QWidget* left, QWidget* right);
QWidget* makeSceneryView(FormBuilder& build, FrmMain& form, FormWindow& window);

}  // namespace skv::ui::qt
