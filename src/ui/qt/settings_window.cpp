#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTabBar>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "ui/qt/caption_label.h"
#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"
#include "ui/qt/frame_panel.h"
#include "ui/qt/language.h"
#include "ui/qt/scroll_room.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

// Of a field, as long as the screen has it, and of what stands beside it in its row.
constexpr int fieldWidth = 430, besideField = 285;

struct Row {
  TextBox* box;
  Button* browse = nullptr;  // null without one, as the next
  Label* state = nullptr;
};

// A text of several lines, which CaptionLabel is not made for.
QLabel* paragraph(Bindings& bindings, Form& form, Label& label) {
  auto* widget = new QLabel;
  widget->setTextFormat(Qt::PlainText);
  widget->setWordWrap(true);
  new Binding(bindings, form, label, widget, [widget, &label] {
    widget->setText(captioned(label.caption));
    widget->setVisible(label.visible);
  });
  return widget;
}

// The fields of a page, and the first line below them.
std::pair<QGridLayout*, int> fields(FormBuilder& build, std::initializer_list<Row> rows) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(8);
  grid->setVerticalSpacing(3);
  const int room = roomOnScreen(*QGuiApplication::primaryScreen()).width();
  grid->setColumnMinimumWidth(1, std::min(fieldWidth, room - besideField));
  grid->setColumnStretch(1, 1);
  int line = 0;
  for (const Row& row : rows) {
    if (line > 0) grid->setRowMinimumHeight(line++, 3);
    build.field(*grid, line, 0, 1, *row.box);
    if (row.browse)
      grid->addWidget(
          build.button(*row.browse, QObject::tr("Browse: %1").arg(spoken(row.box->label))), line,
          2);
    ++line;
    if (!row.state) continue;
    CaptionLabel* state = build.label(*row.state);
    state->tellOf(build.bindings().widgetOf(*row.box));
    grid->addWidget(state, line++, 1, 1, 2);
  }
  return {grid, line};
}

FramePanel* page(FormBuilder& build, Frame& frame, QGridLayout* grid) {
  FramePanel* panel = build.frame(frame, false);
  panel->body()->addLayout(grid);
  panel->body()->addStretch();
  QSizePolicy policy = panel->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  panel->setSizePolicy(policy);
  return panel;
}

FramePanel* mailPage(FormBuilder& build, FrmSettings& form) {
  const auto [grid, line] = fields(build, {{&form.txtPOPUserName},
                                           {&form.txtPOPPassword},
                                           {&form.txtPOPHost},
                                           {&form.txtPOPPort},
                                           {&form.txtSMTPHost},
                                           {&form.txtSMTPUserName},
                                           {&form.txtSMTPPassword},
                                           {&form.txtOutlookFolder}});
  auto* folders = new QHBoxLayout;
  folders->setSpacing(8);
  auto* found = new QLabel(QObject::tr("Mail folders found:"));
  folders->addWidget(build.combo(form.cmbOutlookFolders, *found), 1);
  folders->addWidget(build.button(form.btnOutlookFile));
  folders->addWidget(build.button(form.btnOutlookDir));
  grid->addWidget(found, line, 0);
  grid->addLayout(folders, line, 1);
  auto* meaning = new QLabel(captioned(outlookMeans));
  meaning->setWordWrap(true);
  grid->addWidget(meaning, line + 1, 1);
  auto* identity = new QHBoxLayout;
  identity->setContentsMargins(0, 8, 0, 0);
  identity->addWidget(build.button(form.btnIdentity, QObject::tr("Sender of Packages")));
  identity->addStretch();
  grid->addLayout(identity, line + 2, 1);
  return page(build, form.frameEmail, grid);
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
  QLabel* introduction = paragraph(bindings, form, form.lblIntro);
  column->addWidget(introduction);
  column->addWidget(build.combo(form.cmbFound, *introduction));
  auto* tabs = new QHBoxLayout;
  tabs->addWidget(build.tabs(form.tabSettings, QObject::tr("Settings")));
  tabs->addStretch();
  column->addLayout(tabs);

  auto* pages = new QGridLayout;
  pages->addWidget(
      page(build, form.frameLocations,
           fields(build, {{&form.txtFSRoot, &form.btnBrowse, &form.lblFSRootState},
                          {&form.txtHangarDir, &form.btnBrowseHangar, &form.lblHangarState},
                          {&form.txtPacksDir, &form.btnBrowsePacks, &form.lblPacksState},
                          {&form.txtCentralPanel, &form.btnBrowsePanel, &form.lblPanelState},
                          {&form.txtSceneryLib, &form.Command1, &form.lblSceneryState}})
               .first),
      0, 0);
  pages->addWidget(mailPage(build, form), 0, 0);
  column->addLayout(pages, 1);

  column->addLayout(build.foot({&form.btnQuit}, {&form.btnOK}, &form.btnOK));
  bindings.widgetOf(form.txtFSRoot)->setFocus();
  return window;
}

}  // namespace skv::ui::qt
