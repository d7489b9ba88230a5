#include <QVBoxLayout>

#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"

namespace skv::ui::qt {

QWidget* makeDirSelectWindow(Bindings& bindings, FrmDirSelect& form, const FileSystem& files,
                             QWidget* owner) {
  auto* window = new FormDialog(owner);
  auto* control = new FormWindow(bindings, form, *window);
  window->onEscape = [control, &form] { control->binding().fire(form.btnCancel.click); };
  FormBuilder build(bindings, form, files);

  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(16, 16, 16, 16);
  column->setSpacing(10);
  QWidget* tree = build.folders(form.Dir1, QObject::tr("Folders"));
  tree->setMinimumSize(440, 300);
  column->addWidget(tree, 1);
  QWidget* path = build.textBox(form.txtDir);
  path->setAccessibleName(QObject::tr("Folder"));
  column->addWidget(path);

  column->addLayout(build.foot({&form.btnMkDir}, {&form.btnOK, &form.btnCancel}, &form.btnOK));
  tree->setFocus();
  return window;
}

}  // namespace skv::ui::qt
