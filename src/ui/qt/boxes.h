// The boxes that ask or tell: each blocks until it is answered.
#pragma once

#include "base/outcome.h"
#include "platform/file_system.h"
#include "ui/model/windowing.h"

class QWidget;

namespace skv::ui::qt {

Answer runMessageBox(const Box& box, QWidget* owner);
std::optional<std::string> runInputBox(const std::string& prompt, const std::string& title,
                                       const std::string& text, QWidget* owner);
Result<PickedFile> runFileDialog(const FileDialog& dialog, const FileSystem& files, QWidget* owner);

}  // namespace skv::ui::qt
