// Who sends Packages: three fields.
#include <QFormLayout>
#include <QVBoxLayout>

#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"

namespace skv::ui::qt {

QWidget* makeIdentityWindow(Bindings& bindings, FrmIdentity& form, const FileSystem& files,
                            QWidget* owner) {
  constexpr int fieldWidth = 280;
  auto* window = new FormDialog(owner);
  auto* control = new FormWindow(bindings, form, *window);
  window->onEscape = [control, &form] { control->binding().fire(form.btnCancel.click); };
  FormBuilder build(bindings, form, files);

  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(16, 14, 16, 16);
  column->setSpacing(14);
  auto* fields = new QFormLayout;
  fields->setHorizontalSpacing(8);
  for (TextBox* box : {&form.txtFirstName, &form.txtLastName, &form.txtEMail}) {
    build.field(*fields, *box);
    bindings.widgetOf(*box)->setMinimumWidth(fieldWidth);
  }
  column->addLayout(fields);
  column->addStretch();

  column->addLayout(build.foot({}, {&form.btnOK, &form.btnCancel}, &form.btnOK));
  return window;
}

}  // namespace skv::ui::qt
