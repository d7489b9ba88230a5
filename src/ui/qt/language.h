// The desktop's language. The program's own texts are English and stay so inside; on screen
// captions, hints and what a screen reader says follow the desktop where there is a translation
// (share/translations). What boxes and the status line say stays English.
#pragma once

#include <QString>
#include <string>

class QApplication;

namespace skv::ui::qt {

// Before any window.
void speakTheDesktopsLanguage(QApplication& application);

// A caption of the program as the user reads it. Of a caption with a value in it ("Version 1.02")
// the words around the value.
QString captioned(const std::string& caption);

// Words that the window alone says, in the desktop's language.
QString tr(const char* text);

}  // namespace skv::ui::qt
