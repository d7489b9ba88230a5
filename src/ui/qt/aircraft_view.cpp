// The two bands of an aircraft view: the aircraft above, what belongs to the selected one below. In
// each the left half is a list, the right half a picture or details.
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSplitter>
#include <QTabBar>
#include <QVBoxLayout>
#include <initializer_list>

#include "ui/qt/caption_label.h"
#include "ui/qt/frame_panel.h"
#include "ui/qt/icons.h"
#include "ui/qt/language.h"
#include "ui/qt/list_tree.h"
#include "ui/qt/main_window.h"
#include "ui/qt/picture_view.h"
#include "ui/qt/place_pictures.h"

namespace skv::ui::qt {

namespace {

// The commands under the halves: those on the list, and the one that puts the choice to use.
QHBoxLayout* commands(std::initializer_list<QPushButton*> onList, QPushButton* use) {
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  for (QPushButton* button : onList) row->addWidget(button);
  row->addStretch();
  row->addWidget(use);
  return row;
}

// The head of frames of which the tabs show one at a time, and the place where they all lie. The
// room is that of the largest.
QGridLayout* addStack(QVBoxLayout& body, QTabBar* tabs) {
  auto* row = new QHBoxLayout;
  row->addWidget(tabs);
  row->addStretch();
  body.addLayout(row);
  auto* stack = new QGridLayout;
  body.addLayout(stack, 1);
  return stack;
}

void addPage(QGridLayout& stack, QWidget* page) {
  QSizePolicy policy = page->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  page->setSizePolicy(policy);
  stack.addWidget(page, 0, 0);
}

FramePanel* detailFrame(FormBuilder& build, Frame& frame, std::initializer_list<TextBox*> boxes) {
  FramePanel* panel = build.frame(frame, false);
  auto* form = new QFormLayout;
  form->setContentsMargins(0, 2, 0, 0);
  form->setVerticalSpacing(6);
  form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
  for (TextBox* box : boxes) build.field(*form, *box);
  panel->body()->addLayout(form);
  panel->body()->addStretch();
  return panel;
}

FramePanel* generalFrame(FormBuilder& build, FrmMain& form) {
  FramePanel* panel = build.frame(form.frameACInfoGeneral, false);
  auto* grid = new QGridLayout;
  grid->setContentsMargins(0, 2, 0, 0);
  grid->setVerticalSpacing(6);
  grid->setHorizontalSpacing(8);
  build.field(*grid, 0, 0, 3, form.txtACTitle);
  build.field(*grid, 1, 0, 3, form.txtSim);
  build.field(*grid, 2, 0, 1, form.txtModel);
  build.field(*grid, 2, 2, 1, form.txtPanel);
  build.field(*grid, 3, 0, 1, form.txtSound);
  build.field(*grid, 3, 2, 1, form.txtTexture);
  grid->setColumnStretch(1, 1);
  grid->setColumnStretch(3, 1);
  panel->body()->addLayout(grid);
  panel->body()->addStretch();
  return panel;
}

FramePanel* descriptionFrame(FormBuilder& build, FrmMain& form) {
  FramePanel* panel = build.frame(form.frameACDescription, false);
  QWidget* box = build.textBox(form.txtACDescription);
  box->setMinimumHeight(60);
  panel->body()->addWidget(box, 1);
  return panel;
}

QWidget* infoPage(FormBuilder& build, FrmMain& form) {
  FramePanel* page = build.frame(form.frameInfo, false);
  ListTree* left = build.list(form.lstACVersions, tr("Variations of the aircraft"),
                              tr("No variations to show."));
  auto* right = new QWidget;
  auto* details = new QVBoxLayout(right);
  details->setContentsMargins(0, 0, 0, 0);
  QGridLayout* stack =
      addStack(*details, build.tabs(form.tabACInfo, tr("Details of the variation")));
  addPage(*stack, generalFrame(build, form));
  QSplitter* halves = makeHalves(build, form.divInfo, left, right);
  QPushButton* save = build.button(form.btnSaveACInfo);
  build.later([&build, stack, &form, grip = halves->handle(1), save] {
    addPage(*stack, detailFrame(build, form.frameACInfoATC,
                                {&form.txtATCID, &form.txtATCAirline, &form.txtATCFlight}));
    addPage(*stack, detailFrame(build, form.frameACinfoUI,
                                {&form.txtUIManufacturer, &form.txtUIType, &form.txtUIVariation}));
    addPage(*stack, descriptionFrame(build, form));
    // They are reached as if they had been there from the start.
    QWidget::setTabOrder(build.bindings().widgetOf(form.txtACDescription), grip);
    QWidget::setTabOrder(grip, save);
  });
  page->body()->addWidget(halves, 1);
  page->body()->addLayout(commands({}, save));
  return page;
}

QWidget* panelPage(FormBuilder& build, FrmMain& form) {
  FramePanel* page = build.frame(form.framePanel, false);
  ListTree* left =
      build.list(form.lstPanel, tr("Panel library"), tr("No panels in this library yet."));
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(build.label(form.lblPNStatus));
  column->addWidget(
      build.picture(form.imgPanel, tr("Picture of the panel"), QStringLiteral("panel")), 1);
  page->body()->addWidget(makeHalves(build, form.divPanel, left, right), 1);
  page->body()->addLayout(commands({build.button(form.btnAddPN), build.button(form.btnDelPN),
                                    build.button(form.btnPNRestoreOriginal)},
                                   build.button(form.btnAssignPN)));
  return page;
}

QWidget* soundPage(FormBuilder& build, FrmMain& form) {
  FramePanel* page = build.frame(form.frameSound, false);
  ListTree* left =
      build.list(form.lstSound, tr("Sound library"), tr("No sounds in this library yet."));
  auto* right = new QWidget;
  auto* column = new QVBoxLayout(right);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(build.label(form.lblSNStatus));
  column->addStretch();
  page->body()->addWidget(makeHalves(build, form.divSound, left, right), 1);
  page->body()->addLayout(commands({build.button(form.btnAddSN), build.button(form.btnDelSN),
                                    build.button(form.btnSNRestoreOriginal)},
                                   build.button(form.btnAssignSN)));
  return page;
}

}  // namespace

QWidget* makeAircraftBand(FormBuilder& build, FrmMain& form) {
  FramePanel* band = build.frame(form.frameAircraft, true);
  ListTree* list = build.list(form.lstAircraft, tr("Aircraft"),
                              tr("No aircraft here yet.\n"
                                 "File, Install Package/ZIP adds one from a ZIP to the Hangar."));
  list->showPlaces(aircraftPlaces());
  PictureView* picture =
      build.picture(form.imgAircraft, tr("Picture of the aircraft"), QStringLiteral("aircraft"));
  CaptionLabel* specimen = build.label(form.lblACSpecimen);
  specimen->makeNotice();
  picture->setOverlay(specimen);
  band->body()->addWidget(makeHalves(build, form.divAircraft, list, picture), 1);
  band->body()->addLayout(commands({build.button(form.btnAddAC), build.button(form.btnDelAC),
                                    build.button(form.btnACRestoreOriginal)},
                                   build.button(form.btnHangar)));
  return band;
}

QWidget* makeAddonBand(FormBuilder& build, FrmMain& form) {
  FramePanel* band = build.frame(form.frameAddon, true);
  QGridLayout* stack =
      addStack(*band->body(), build.tabs(form.tabAddon, tr("Parts of the aircraft")));
  addPage(*stack, infoPage(build, form));
  build.later([&build, stack, &form] {
    addPage(*stack, panelPage(build, form));
    addPage(*stack, soundPage(build, form));
  });
  return band;
}

}  // namespace skv::ui::qt
