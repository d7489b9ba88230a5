#include "ui/qt/owned_dialogs.h"

#include <QDialog>
#include <QPointer>
#include <algorithm>
#include <vector>

#include "ui/qt/form_window.h"

namespace skv::ui::qt {

namespace {

int depth(const QObject* object) {
  int steps = 0;
  for (; object->parent(); object = object->parent()) ++steps;
  return steps;
}

}  // namespace

void endDialogsAbove(QWidget& window) {
  QList<QDialog*> found = window.findChildren<QDialog*>();
  std::ranges::stable_sort(found, std::greater{}, [](const QDialog* it) { return depth(it); });
  // One that ends may take others along.
  const std::vector<QPointer<QDialog>> dialogs(found.begin(), found.end());
  for (const QPointer<QDialog>& dialog : dialogs) {
    if (!dialog) continue;
    if (auto* form = dynamic_cast<FormDialog*>(dialog.data())) {
      if (form->isVisible() && form->onAbandon) form->onAbandon();
      continue;
    }
    if (dialog->isVisible()) dialog->QDialog::reject();
    // Boxes live where they are waited for.
    if (dialog) dialog->setParent(nullptr);
  }
}

}  // namespace skv::ui::qt
