#include "ui/qt/main_window.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

#include "ui/qt/form_window.h"
#include "ui/qt/menus.h"
#include "ui/qt/scroll_room.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr int leastWidth = 10335 / twipsPerPixel;

// The pop-up menu says first whose picture it is about, and tells when it has gone.
void headPictures(FrmMain& form, QMenu& menu) {
  auto* heading = new QAction(&menu);
  heading->setEnabled(false);
  menu.insertAction(menu.actions().value(0), heading);
  menu.insertSeparator(menu.actions().value(1));
  QObject::connect(&menu, &QMenu::aboutToShow, heading,
                   [heading, &form] { heading->setText(captioned(form.mnuPic.caption)); });
  // The click of an entry comes behind this signal.
  QObject::connect(&menu, &QMenu::aboutToHide, &menu, [&menu, &form] {
    QTimer::singleShot(0, &menu, [&form] { raise(form.mnuPic.closed); });
  });
}

void addMenus(FormBuilder& build, FrmMain& form, QMainWindow& window) {
  Bindings& bindings = build.bindings();
  for (MenuItem* item : form.menuBar) {
    if (item->entries.empty()) {
      addEntry(bindings, form, *item, *window.menuBar());  // a menu that would open on nothing
      continue;
    }
    QMenu* menu = makeClosedMenu(bindings, form, *item, &window);
    window.menuBar()->addMenu(menu);
    build.later([&bindings, &form, item, menu] { addEntries(bindings, form, *item, *menu); });
  }
  build.later([&bindings, &form, &window] {
    // Its entries' shortcuts work though the menu itself opens on the pictures alone.
    QMenu* pictures = makeMenu(bindings, form, form.mnuPic, &window);
    window.addActions(pictures->actions());
    headPictures(form, *pictures);
  });
}

// A text that is being typed, in a box or in a row.
bool isTextField(const QWidget* widget) {
  return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QPlainTextEdit*>(widget);
}

// Completes itself when it has been seen.
class MainWindow : public QMainWindow {
 public:
  std::vector<std::function<void()>> later;

 protected:
  bool event(QEvent* event) override {
    // Ctrl and a letter belong to the text that has the keyboard, whether they mean something to it
    // or not; but the program can be left from anywhere.
    if (event->type() == QEvent::ShortcutOverride && isTextField(focusWidget())) {
      const auto& key = static_cast<const QKeyEvent&>(*event);
      if (key.modifiers() == Qt::ControlModifier && key.key() >= Qt::Key_A &&
          key.key() <= Qt::Key_Z && key.key() != Qt::Key_Q) {
        event->accept();
        return true;
      }
    }
    return QMainWindow::event(event);
  }
  void paintEvent(QPaintEvent* event) override {
    QMainWindow::paintEvent(event);
    completeIn(std::chrono::milliseconds(0));
  }
  void showEvent(QShowEvent* event) override {
    QMainWindow::showEvent(event);
    // A window that lies below others, or starts minimised, may hear keys and never be painted.
    completeIn(std::chrono::seconds(1));
  }

 private:
  void completeIn(std::chrono::milliseconds time) {
    if (later.empty()) return;
    QTimer::singleShot(time, this, [this] {
      for (const auto& part : std::exchange(later, {})) part();
    });
  }
};

}  // namespace

QMainWindow* makeMainWindow(Bindings& bindings, FrmMain& form, const FileSystem& files, QWidget*) {
  auto* window = new MainWindow;
  window->setContextMenuPolicy(Qt::NoContextMenu);
  auto build = std::make_shared<FormBuilder>(bindings, form, files);
  addMenus(*build, form, *window);
  auto* control = new FormWindow(bindings, form, *window);

  auto* content = new QWidget;
  auto* views = new QVBoxLayout(content);
  views->setContentsMargins(10, 10, 10, 10);
  views->setSpacing(10);
  views->addWidget(makeAircraftBand(*build, form), 1);
  views->addWidget(makeAddonBand(*build, form), 1);
  build->later([build, control, views, &form] {
    views->addWidget(makeSceneryView(*build, form, *control), 1);
  });
  window->later = build->takeLater();

  QWidget* status = build->status(form.lblStatus);
  const int around = window->menuBar()->sizeHint().height() + status->sizeHint().height();
  content->setMinimumWidth(leastWidth);
  auto* room = new ScrollRoom(content, around);
  auto* whole = new QWidget;
  auto* column = new QVBoxLayout(whole);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(room, 1);
  column->addWidget(status);
  window->setCentralWidget(whole);
  control->setGreyedParts({window->menuBar(), content});
  return window;
}

}  // namespace skv::ui::qt
