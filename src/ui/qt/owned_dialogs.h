// The dialogs and boxes above a window.
#pragma once

class QWidget;

namespace skv::ui::qt {

// Ends them, the topmost first, as if each had been cancelled: who waits for their answers goes on.
// None of them belongs to the window afterwards, so that it may be deleted.
void endDialogsAbove(QWidget& window);

}  // namespace skv::ui::qt
