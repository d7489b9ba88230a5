// A start where there is no screen.
#pragma once

#include <QtGlobal>

class QString;

namespace skv::ui::qt {

inline constexpr int noScreenStatus = 1;  // of a process that ends for want of a screen

// A handler of Qt's messages for the time in which the application is made. Where Qt finds no
// screen it would say so in many lines and abort: this says it in a sentence, and ends the process.
void endWithoutScreen(QtMsgType type, const QMessageLogContext& context, const QString& message);

}  // namespace skv::ui::qt
