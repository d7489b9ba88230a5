// The window of the program comes to the front because it was started a second time.
#pragma once

#include <string>

namespace skv::ui::qt {

// The dialog or box that takes the input, else the window itself, out of the task bar when it was
// put there. `token`: the leave to do so of a desktop that asks for one, "" for none.
void callToFront(const std::string& token);

}  // namespace skv::ui::qt
