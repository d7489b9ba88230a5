// A window of the program comes to the front, above those of others: it was started a second time,
// or has to do with another program's window no more.
#pragma once

#include <string>

class QWidget;

namespace skv::ui::qt {

// Out of the task bar when it was put there.
void bringToFront(QWidget& window);

// The dialog or box that takes the input, else the window itself. `token`: the leave to do so
// of a desktop that asks for one, "" for none.
void callToFront(const std::string& token);

}  // namespace skv::ui::qt
