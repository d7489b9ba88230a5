// The Scenery Manager: the simulator's sceneries above the library's on the left, picture and file
// browser on the right.
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QSplitter>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/qt/caption_label.h"
#include "ui/qt/frame_panel.h"
#include "ui/qt/icons.h"
#include "ui/qt/list_tree.h"
#include "ui/qt/main_window.h"
#include "ui/qt/picture_view.h"
#include "ui/qt/place_pictures.h"
#include "ui/qt/split_bar_view.h"

namespace skv::ui::qt {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("SceneryView", text); }

QHBoxLayout* rowOf(std::initializer_list<QWidget*> widgets) {
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  for (QWidget* widget : widgets) row->addWidget(widget);
  row->addStretch();
  return row;
}

QPushButton* arrowButton(FormBuilder& build, Button& button, const char* drawing,
                         const QString& accessibleName, const QString& key) {
  QPushButton* widget = build.button(button, accessibleName);
  widget->setProperty("small", true);
  widget->setToolTip(QStringLiteral("%1 (%2)").arg(accessibleName, key));
  widget->setAccessibleDescription(key);
  widget->setIcon(drawnIcon(QLatin1String(drawing), QPalette::ButtonText));
  return widget;
}

// A half of the view, never narrower than its row of commands.
class Half : public QWidget {
 protected:
  bool event(QEvent* event) override {
    if (event->type() == QEvent::LayoutRequest)
      setMinimumWidth(std::max(minimumWidth(), layout()->minimumSize().width()));
    return QWidget::event(event);
  }
};

QWidget* lists(FormBuilder& build, FrmMain& form, FormWindow& window) {
  auto* upperFoot = new QWidget;
  auto* upperRow =
      rowOf({arrowButton(build, form.btnSCup, "up", tr("Move up"), tr("Ctrl+Up")),
             arrowButton(build, form.btnSCdn, "down", tr("Move down"), tr("Ctrl+Down")),
             build.button(form.btnFSScenDel)});
  upperRow->addWidget(build.button(form.btnFSScenerySave));
  upperRow->setContentsMargins(0, 0, 0, 0);
  upperFoot->setLayout(upperRow);

  ListTree* installed = build.list(form.lstScenery, tr("Sceneries installed in FS2002"),
                                   tr("No sceneries are listed."));
  installed->tellRows([&list = form.lstScenery](int row) {
    QString words = list.checked(row) ? tr("Active in FS2002") : tr("Not active in FS2002");
    if (list.colour(row) != defaultColour) words += tr(", built in: cannot be deleted");
    return words;
  });
  ListTree* library = build.list(form.lstInactScenery, tr("Sceneries in the library"),
                                 tr("No sceneries in the library yet."));
  library->showPlaces(libraryPlaces());
  CaptionLabel* installedHead = build.label(form.lblSceneryInstalled);
  CaptionLabel* libraryHead = build.label(form.Label15);
  installedHead->setBuddy(installed);
  libraryHead->setBuddy(library);
  auto* head = new QWidget;
  auto* headLines = new QVBoxLayout(head);
  headLines->setContentsMargins(0, 0, 0, 0);
  auto* headRow = new QHBoxLayout;
  headRow->addWidget(installedHead, 1);
  headRow->addWidget(build.label(form.lblSceneryChanged));
  headLines->addLayout(headRow);
  headLines->addWidget(build.label(form.lblSceneryUnreached));
  CaptionLabel* loading = build.label(form.lblListLoading);
  installed->setOverlay(loading);
  auto* split = new SplitLists(build.bindings(), form, window,
                               {.upperHead = head,
                                .upperList = installed,
                                .upperFoot = upperFoot,
                                .lowerHead = libraryHead,
                                .lowerList = library,
                                .overlay = loading});
  auto* half = new Half;
  auto* column = new QVBoxLayout(half);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(7);
  column->addWidget(split, 1);
  column->addLayout(rowOf({build.button(form.btnSLDel), build.button(form.btnAddSLtoFS)}));
  return half;
}

struct Choice {
  OptionButton& option;
  QString meaning;
};

QWidget* optionFrame(FormBuilder& build, Frame& frame, std::initializer_list<Choice> choices) {
  FramePanel* panel = build.frame(frame, false);
  auto* row = new QHBoxLayout;
  row->setSpacing(10);
  for (const Choice& choice : choices) {
    QRadioButton* widget = build.option(choice.option);
    widget->setToolTip(choice.meaning);
    widget->setAccessibleDescription(choice.meaning);
    row->addWidget(widget);
  }
  panel->body()->addLayout(row);
  return panel;
}

QWidget* pictureAndBrowser(FormBuilder& build, FrmMain& form) {
  auto* half = new Half;
  auto* column = new QVBoxLayout(half);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(7);
  CaptionLabel* title = build.label(form.lblSceneryTitle);
  title->makeHeading();
  column->addWidget(title);
  column->addWidget(
      build.picture(form.imgScenery, tr("Picture of the scenery"), QStringLiteral("scenery")), 1);
  FramePanel* browser = build.frame(form.frameFtreeScenery, false);
  browser->body()->addWidget(build.folders(form.ftreeScenery, tr("Scenery files browser")), 1);
  column->addWidget(browser, 1);
  QHBoxLayout* options = rowOf(
      {optionFrame(build, form.frameSceneryCopy,
                   {{form.optMove, tr("The folder's files go once they are in the library")},
                    {form.optCopy, tr("The folder stays as it is")}}),
       optionFrame(build, form.frameSceneryType,
                   {{form.optScenery, tr("The folder is a new scenery of the library")},
                    {form.optTextures,
                     tr("The folder holds main textures of the selected library scenery")}})});
  options->setSpacing(20);
  column->addLayout(options);
  column->addLayout(rowOf({build.button(form.btnAddToSL)}));
  return half;
}

}  // namespace

QWidget* makeSceneryView(FormBuilder& build, FrmMain& form, FormWindow& window) {
  FramePanel* view = build.frame(form.frameScenery, true);
  QWidget* left = lists(build, form, window);
  QWidget* right = pictureAndBrowser(build, form);
  view->body()->addWidget(makeHalves(build, form.divScenery, left, right), 1);
  return view;
}

}  // namespace skv::ui::qt
