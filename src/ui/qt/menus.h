// Menus of MenuItems.
#pragma once

#include <QMenu>

#include "ui/qt/bindings.h"

namespace skv::ui::qt {

// The menu of an item with entries, submenus included. Live: captions, checks, what is enabled or
// hidden follow the items. Actions carry the items' names, menus too.
QMenu* makeMenu(Bindings& bindings, Form& form, MenuItem& item, QWidget* owner);

// An entry without entries of its own, at the end of a menu or a menu bar.
void addEntry(Bindings& bindings, Form& form, MenuItem& item, QWidget& menu);

}  // namespace skv::ui::qt
