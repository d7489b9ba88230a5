#include "ui/qt/menus.h"

#include <QAction>

#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

// The captions of a menu's entries, each with a letter of its own: theirs where they have one, for
// the others the first free one, of a word's beginning if possible.
QString lettered(const MenuItem& item, const std::vector<MenuItem*>& siblings) {
  QString taken;
  for (const MenuItem* sibling : siblings)
    if (const QString caption = captioned(sibling->caption); caption.contains(QLatin1Char('&')))
      taken += caption.at(caption.indexOf(QLatin1Char('&')) + 1).toLower();
  const auto isFree = [&](QChar letter) {
    return letter.isLetterOrNumber() && !taken.contains(letter.toLower());
  };
  for (const MenuItem* sibling : siblings) {
    QString caption = captioned(sibling->caption);
    if (sibling->separator || caption.contains(QLatin1Char('&'))) {
      if (sibling == &item) return caption;
      continue;
    }
    qsizetype place = -1;
    for (qsizetype i = 0; i < caption.size() && place < 0; ++i)
      if ((i == 0 || !caption.at(i - 1).isLetterOrNumber()) && isFree(caption.at(i))) place = i;
    for (qsizetype i = 0; i < caption.size() && place < 0; ++i)
      if (isFree(caption.at(i))) place = i;
    if (place >= 0) {
      taken += caption.at(place).toLower();
      caption.insert(place, QLatin1Char('&'));
    }
    if (sibling == &item) return caption;
  }
  return captioned(item.caption);
}

void follow(QAction& action, const MenuItem& item, const std::vector<MenuItem*>& siblings) {
  action.setText(lettered(item, siblings));
  action.setToolTip(captioned(item.hint));
  action.setEnabled(item.enabled && item.available());
  action.setVisible(item.visible);
  action.setCheckable(item.checked);
  action.setChecked(item.checked);
}

}  // namespace

void addEntry(Bindings& bindings, Form& form, MenuItem& item, QWidget& menu,
              const std::vector<MenuItem*>& siblings) {
  auto* action = new QAction(&menu);
  menu.addAction(action);
  action->setShortcut(QKeySequence(shown(item.shortcut)));
  auto* binding = new Binding(bindings, form, item, action,
                              [action, &item, &siblings] { follow(*action, item, siblings); });
  QObject::connect(action, &QAction::triggered, binding, [binding, &item] {
    // Qt has switched the mark of a checked entry off; the item says what it shows.
    binding->note();
    binding->fire(item.click);
  });
}

QMenu* makeClosedMenu(Bindings& bindings, Form& form, MenuItem& item, QWidget* owner,
                      const std::vector<MenuItem*>& siblings) {
  auto* menu = new QMenu(captioned(item.caption), owner);
  menu->setToolTipsVisible(true);
  new Binding(bindings, form, item, menu, [menu, &item, &siblings] {
    follow(*menu->menuAction(), item, siblings);
    menu->setAccessibleName(spoken(item.caption));
  });
  return menu;
}

void addEntries(Bindings& bindings, Form& form, MenuItem& item, QMenu& menu) {
  for (MenuItem* entry : item.entries) {
    if (entry->separator) {
      QAction* line = menu.addSeparator();
      new Binding(bindings, form, *entry, line,
                  [line, entry] { line->setVisible(entry->visible); });
    } else if (!entry->entries.empty()) {
      menu.addMenu(makeMenu(bindings, form, *entry, &menu, item.entries));
    } else {
      addEntry(bindings, form, *entry, menu, item.entries);
    }
  }
}

QMenu* makeMenu(Bindings& bindings, Form& form, MenuItem& item, QWidget* owner,
                const std::vector<MenuItem*>& siblings) {
  QMenu* menu = makeClosedMenu(bindings, form, item, owner, siblings);
  addEntries(bindings, form, item, *menu);
  return menu;
}

}  // namespace skv::ui::qt
