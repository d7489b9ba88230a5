// What our own widgets are to a screen reader.
#pragma once

namespace skv::ui::qt {

// Once for the program, before its windows.
void describeToScreenReaders();

}  // namespace skv::ui::qt
