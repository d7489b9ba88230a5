// The windows of the secondary forms.
#pragma once

#include <QWidget>

#include "platform/file_system.h"
#include "ui/model/dialogs.h"
#include "ui/qt/bindings.h"

namespace skv::ui::qt {

QWidget* makeSettingsWindow(Bindings& bindings, FrmSettings& form, const FileSystem& files,
                            QWidget* owner);
QWidget* makeDirSelectWindow(Bindings& bindings, FrmDirSelect& form, const FileSystem& files,
                             QWidget* owner);
QWidget* makeSplashWindow(Bindings& bindings, FrmSplash& form, const FileSystem& files,
                          QWidget* owner);
QWidget* makeSceneryOptionsWindow(Bindings& bindings, FrmSCOptions& form, const FileSystem& files,
                                  QWidget* owner);
QWidget* makeShowPicWindow(Bindings& bindings, FrmShowPic& form, const FileSystem& files,
                           QWidget* owner);

QWidget* makeMailPackWindow(Bindings& bindings, FrmMailPack& form, const FileSystem& files,
                            QWidget* owner);
QWidget* makeIdentityWindow(Bindings& bindings, FrmIdentity& form, const FileSystem& files,
                            QWidget* owner);

}  // namespace skv::ui::qt
