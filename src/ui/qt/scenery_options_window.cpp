// The flatten and exclude values of a library scenery: two lists of fields, side by side.
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include "ui/qt/caption_label.h"
#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"
#include "ui/qt/list_tree.h"

namespace skv::ui::qt {

namespace {

constexpr int fieldCount = 9;
constexpr int treeWidth = 300;

ListTree* addFields(FormBuilder& build, QGridLayout& grid, Label& caption, ListView& list) {
  const int column = grid.count() == 0 ? 0 : 1;
  CaptionLabel* head = build.label(caption);
  ListTree* tree = build.list(list, QString::fromStdString(caption.caption).remove(u':'));
  head->setBuddy(tree);
  tree->setMinimumWidth(treeWidth);
  tree->setLeastRows(fieldCount);
  grid.addWidget(head, 0, column);
  grid.addWidget(tree, 1, column);
  grid.setColumnStretch(column, 1);
  return tree;
}

}  // namespace

QWidget* makeSceneryOptionsWindow(Bindings& bindings, FrmSCOptions& form, const FileSystem& files,
                                  QWidget* owner) {
  auto* window = new FormDialog(owner);
  auto* control = new FormWindow(bindings, form, *window);
  window->onEscape = [control, &form] { control->binding().fire(form.btnCancel.click); };
  FormBuilder build(bindings, form, files);

  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(16, 12, 16, 16);
  column->setSpacing(12);
  auto* lists = new QGridLayout;
  lists->setHorizontalSpacing(14);
  lists->setVerticalSpacing(4);
  ListTree* first = addFields(build, *lists, form.lblFlatten, form.lstFlatten);
  addFields(build, *lists, form.lblExclude, form.lstExclude);
  lists->setRowStretch(1, 1);
  column->addLayout(lists, 1);

  column->addLayout(build.foot({}, {&form.btnOK, &form.btnCancel}, &form.btnOK));
  first->setFocus();
  return window;
}

}  // namespace skv::ui::qt
