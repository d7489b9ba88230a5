#include "core/app.h"

namespace skv {

App::App(Platform thePlatform, ui::Windowing& theWindows)
    : platform(std::move(thePlatform)),
      windows(theWindows),
      codePage(static_cast<int>(val(platform.settings.read("General", "CodePage", "1252")))) {}

}  // namespace skv
