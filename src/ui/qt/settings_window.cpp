#include <QGridLayout>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>
#include <utility>

#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"
#include "ui/qt/frame_panel.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr int fieldWidth = 430;

struct Row {
  TextBox* box;
  Button* browse;  // null without one
};

FramePanel* page(FormBuilder& build, Frame& frame, std::initializer_list<Row> rows) {
  FramePanel* panel = build.frame(frame, false);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(9);
  grid->setColumnMinimumWidth(1, fieldWidth);
  grid->setColumnStretch(1, 1);
  int line = 0;
  for (const Row& row : rows) {
    build.field(*grid, line, 0, 1, *row.box);
    if (row.browse)
      grid->addWidget(
          build.button(*row.browse, QObject::tr("Browse: %1").arg(spoken(row.box->label))), line,
          2);
    ++line;
  }
  panel->body()->addLayout(grid);
  panel->body()->addStretch();
  QSizePolicy policy = panel->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  panel->setSizePolicy(policy);
  return panel;
}

}  // namespace

QWidget* makeSettingsWindow(Bindings& bindings, FrmSettings& form, const FileSystem& files,
                            QWidget* owner) {
  auto* window = new FormDialog(owner);
  new FormWindow(bindings, form, *window);
  FormBuilder build(bindings, form, files);

  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(18, 10, 18, 16);
  column->setSpacing(14);
  auto* tabs = new QHBoxLayout;
  tabs->addWidget(build.tabs(form.tabSettings, QObject::tr("Settings")));
  tabs->addStretch();
  column->addLayout(tabs);

  auto* pages = new QGridLayout;
  pages->addWidget(page(build, form.frameLocations,
                        {{&form.txtFSRoot, &form.btnBrowse},
                         {&form.txtHangarDir, &form.btnBrowseHangar},
                         {&form.txtPacksDir, &form.btnBrowsePacks},
                         {&form.txtCentralPanel, &form.btnBrowsePanel},
                         {&form.txtSceneryLib, &form.Command1}}),
                   0, 0);
  pages->addWidget(page(build, form.frameEmail,
                        {{&form.txtPOPUserName, nullptr},
                         {&form.txtPOPPassword, nullptr},
                         {&form.txtPOPHost, nullptr},
                         {&form.txtSMTPHost, nullptr},
                         {&form.txtOutlookFolder, nullptr}}),
                   0, 0);
  column->addLayout(pages, 1);

  auto* foot = new QHBoxLayout;
  foot->addStretch();
  QPushButton* ok = build.button(form.btnOK);
  ok->setDefault(true);
  ok->setMinimumWidth(90);
  foot->addWidget(ok);
  column->addLayout(foot);
  bindings.widgetOf(form.txtFSRoot)->setFocus();
  return window;
}

}  // namespace skv::ui::qt
