#include "ui/qt/menus.h"

#include <QAction>

#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

void follow(QAction& action, const MenuItem& item) {
  action.setText(shown(item.caption));
  action.setEnabled(item.enabled && item.available());
  action.setVisible(item.visible);
  action.setCheckable(item.checked);
  action.setChecked(item.checked);
}

}  // namespace

void addEntry(Bindings& bindings, Form& form, MenuItem& item, QWidget& menu) {
  auto* action = new QAction(&menu);
  menu.addAction(action);
  action->setShortcut(QKeySequence(shown(item.shortcut)));
  auto* binding =
      new Binding(bindings, form, item, action, [action, &item] { follow(*action, item); });
  QObject::connect(action, &QAction::triggered, binding, [binding, &item] {
    // Qt has switched the mark of a checked entry off; the item says what it shows.
    binding->note();
    binding->fire(item.click);
  });
}

QMenu* makeMenu(Bindings& bindings, Form& form, MenuItem& item, QWidget* owner) {
  auto* menu = new QMenu(shown(item.caption), owner);
  new Binding(bindings, form, item, menu, [menu, &item] { follow(*menu->menuAction(), item); });
  for (MenuItem* entry : item.entries) {
    if (entry->separator) {
      QAction* line = menu->addSeparator();
      new Binding(bindings, form, *entry, line,
                  [line, entry] { line->setVisible(entry->visible); });
    } else if (!entry->entries.empty()) {
      menu->addMenu(makeMenu(bindings, form, *entry, menu));
    } else {
      addEntry(bindings, form, *entry, *menu);
    }
  }
  return menu;
}

}  // namespace skv::ui::qt
