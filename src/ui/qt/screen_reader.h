// What our own widgets are to a screen reader.
#pragma once

namespace skv::ui::qt {

// The property of a widget that is a picture and nothing else. It is set before the name: with that
// a screen reader asks for the first time what the widget is.
inline constexpr const char* isGraphic = "graphic";

// Once for the program, before its windows.
void describeToScreenReaders();

}  // namespace skv::ui::qt
