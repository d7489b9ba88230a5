#include "core/app.h"

#include "core/settings_keys.h"

namespace skv {

App::App(Platform thePlatform, ui::Windowing& theWindows)
    : platform(std::move(thePlatform)),
      windows(theWindows),
      codePage(static_cast<int>(val(readSetting(*this, setting::CodePage, "1252")))) {}

}  // namespace skv
