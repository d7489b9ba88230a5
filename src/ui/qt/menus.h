// Menus of MenuItems.
#pragma once

#include <QMenu>

#include "ui/qt/bindings.h"

namespace skv::ui::qt {

inline const std::vector<MenuItem*> noSiblings;

// The menu of an item with entries, submenus included. Live: captions, checks, what is enabled or
// hidden follow the items. Actions carry the items' names, menus too. `siblings`: the items beside
// this one, which must not have its letter; kept.
QMenu* makeMenu(Bindings& bindings, Form& form, MenuItem& item, QWidget* owner,
                const std::vector<MenuItem*>& siblings = noSiblings);

// The same in two steps: the menu with its caption, and what it opens on.
QMenu* makeClosedMenu(Bindings& bindings, Form& form, MenuItem& item, QWidget* owner,
                      const std::vector<MenuItem*>& siblings = noSiblings);
void addEntries(Bindings& bindings, Form& form, MenuItem& item, QMenu& menu);

// An entry without entries of its own, at the end of a menu or a menu bar.
void addEntry(Bindings& bindings, Form& form, MenuItem& item, QWidget& menu,
              const std::vector<MenuItem*>& siblings = noSiblings);

}  // namespace skv::ui::qt
