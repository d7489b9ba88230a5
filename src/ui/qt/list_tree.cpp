#include "ui/qt/list_tree.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>

#include "ui/qt/list_columns.h"
#include "ui/qt/menus.h"
#include "ui/qt/place_pictures.h"
#include "ui/qt/row_delegate.h"
#include "ui/qt/row_drag.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

ListTree::ListTree(Bindings& bindings, Form& form, ListView& list, const QString& accessibleName)
    : bindings_(bindings),
      list_(list),
      rows_(list),
      delegate_(new RowDelegate(this)),
      columns_(new ListColumns(*this, rows_, list)),
      drag_(
          new RowDrag(*this, [this] { return binding_->accepts() ? list_.rowOf(dragged_) : 0; })) {
  setModel(&rows_);
  setItemDelegate(delegate_);
  setAccessibleName(accessibleName);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  setSelectionMode(SingleSelection);
  setSelectionBehavior(SelectRows);
  setVerticalScrollMode(ScrollPerItem);
  setHorizontalScrollMode(ScrollPerPixel);
  setTabKeyNavigation(false);
  setIndentation(0);
  binding_ = new Binding(bindings, form, list, this, [this] { refresh(); });
  binding_->onDetach = [this] { rows_.detach(); };
  if (list.contextMenu && !bindings.widgetOf(*list.contextMenu))
    addActions(makeMenu(bindings, form, *list.contextMenu, this)->actions());
  listen();
}

ListTree::~ListTree() {
  // The rows go before the view does.
  setModel(nullptr);
}

void ListTree::showPlaces(const PlaceSet& set) {
  delegate_->showPlaces(set);
  placeHeight_ = set.cell + 4;
  tellRows([this, &set](int row) { return set.words(list_.smallIcon(row)); });
}

// The rows' height is asked for when the list is about to be seen: the first question for a font
// waits until all of them have been looked through.
bool ListTree::event(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) delegate_->forgetColours();
  const bool handled = QTreeView::event(event);
  if (event->type() == QEvent::Polish) {
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const int row = delegate_->sizeHint(option, rows_.index(0, 0)).height();
    setMinimumHeight(header()->sizeHint().height() + 2 * frameWidth() +
                     leastRows_ * std::max(row, placeHeight_));
  }
  return handled;
}

void ListTree::later(std::function<void()> action) {
  QMetaObject::invokeMethod(
      this,
      [this, action = std::move(action)] {
        if (!binding_->accepts()) return;
        binding_->act();
        action();
      },
      Qt::QueuedConnection);
}

void ListTree::listen() {
  connect(this, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
    const int row = rows_.rowAt(index);
    if (std::exchange(pressChangedRow_, false) || row == 0) return;
    if (row == list_.selected())
      later([this] { ui::raise(list_.click); });
    else
      userSelects(row);
  });
  connect(header(), &QHeaderView::sectionClicked, this, &ListTree::sortBy);
  columns_->changedByUser = [this] { binding_->fire(list_.columnsChanged); };
  rows_.checked = [this](ListView::RowId id, bool checked) {
    const int row = binding_->accepts() ? list_.rowOf(id) : 0;
    if (row == 0) return;
    list_.setChecked(row, checked);
    later([this, id] {
      if (const int now = list_.rowOf(id)) ui::raise(list_.itemCheck, now);
    });
  };
  rows_.renamed = [this](ListView::RowId id, const std::string& newString) {
    later([this, id, newString] {
      const int row = list_.rowOf(id);
      if (row == 0) return;
      // The handler means the selected row, which may be another one by now.
      const ListView::RowId selected = list_.selected() == 0 ? 0 : list_.id(list_.selected());
      list_.select(row);
      bool cancel = true;
      ui::raise(list_.afterLabelEdit, cancel, newString);
      if (selected != 0 && list_.selected() == list_.rowOf(id)) list_.select(list_.rowOf(selected));
    });
  };
}

void ListTree::refresh() {
  refreshing_ = true;
  followRows();
  followWishes();
  columns_->refresh();
  EditTriggers triggers = NoEditTriggers;
  if (list_.labelEdit && !list_.dblClick) triggers = DoubleClicked | SelectedClicked;
  if (list_.editByTyping) triggers |= EditKeyPressed | AnyKeyPressed;
  setEditTriggers(triggers);
  setAccessibleDescription(rows_.rowCount() == 0 ? words() : QString());
  setEnabled(list_.enabled);
  setVisible(list_.visible);
  viewport()->update();
  refreshing_ = false;
}

void ListTree::followRows() {
  const int scrolled = verticalScrollBar()->value();
  const int height = viewport()->height();
  const bool selectedSeen = rows_.rowCount() > 0 && inView(currentIndex().row() + 1, height);
  const RowsModel::Followed followed = rows_.refresh();
  if (followed == RowsModel::Followed::fromScratch) {
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolled);
  }
  // A row that was moved is followed.
  if (followed == RowsModel::Followed::inOtherOrder && (selectedSeen || list_.moveSelected))
    scrollTo(currentIndex());
  const QModelIndex selected = rows_.index(list_.selected() - 1, 0);
  if (currentIndex().row() != selected.row() || !selectionModel()->isSelected(selected)) {
    setAutoScroll(false);  // rows that come and go above the selected one move nothing
    selectionModel()->setCurrentIndex(
        selected, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    setAutoScroll(true);
  }
}

void ListTree::followWishes() {
  const ListView::RowId selected = list_.selected() == 0 ? 0 : list_.id(list_.selected());
  if (std::exchange(selectedSeen_, selected) != selected) reveal(selected);
  if (list_.visibleWishes() != wishesSeen_) {
    wishesSeen_ = list_.visibleWishes();
    if (list_.visibleRow() <= list_.count()) reveal(list_.id(list_.visibleRow()));
  }
  if (std::exchange(editsSeen_, list_.labelEditWishes()) != list_.labelEditWishes())
    QMetaObject::invokeMethod(
        this, [this] { editSelected(); }, Qt::QueuedConnection);
}

void ListTree::editSelected() {
  const QModelIndex index = currentIndex().siblingAtColumn(0);
  if (!index.isValid() || !binding_->accepts()) return;
  setFocus();
  scrollTo(index);
  edit(index);
}

void ListTree::reveal(ListView::RowId row) {
  toReveal_ = row;
  const int number = row == 0 || !isVisible() ? 0 : list_.rowOf(row);
  if (number == 0) return;
  toReveal_ = 0;
  scrollTo(rows_.index(number - 1, 0));
}

bool ListTree::inView(int row, int height) const {
  const QRect place = visualRect(rows_.index(row - 1, 0));
  return place.isValid() && place.top() >= 0 && place.top() < height;
}

void ListTree::showEvent(QShowEvent* event) {
  QTreeView::showEvent(event);
  if (toReveal_ != 0 && binding_->attached()) reveal(toReveal_);
}

void ListTree::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  if (!binding_->attached()) return;
  if (viewport()->width() != event->oldSize().width()) columns_->fit();
  // What could be seen of the selected row stays in view, and what was revealed before the list had
  // its size.
  const int row = list_.selected();
  if (row != 0 && rows_.rowAt(currentIndex()) == row && inView(row, event->oldSize().height()))
    scrollTo(currentIndex());
}

void ListTree::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTreeView::currentChanged(current, previous);
  const int row = rows_.rowAt(current);
  if (refreshing_ || row == 0 || row == list_.selected()) return;
  pressChangedRow_ = true;
  userSelects(row);
}

void ListTree::userSelects(int row) {
  if (!binding_->accepts()) return;
  list_.select(row);
  later([this] { ui::raise(list_.itemClick ? list_.itemClick : list_.click); });
}

void ListTree::focusInEvent(QFocusEvent* event) {
  // Qt makes a first row current for the keyboard; no row is selected by that.
  refreshing_ = true;
  QTreeView::focusInEvent(event);
  if (binding_->attached() && list_.selected() == 0) setCurrentIndex({});
  refreshing_ = false;
}

QItemSelectionModel::SelectionFlags ListTree::selectionCommand(const QModelIndex& index,
                                                               const QEvent*) const {
  // One row is always selected; a click below the rows changes nothing.
  return index.isValid() ? QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows
                         : QItemSelectionModel::NoUpdate;
}

void ListTree::mousePressEvent(QMouseEvent* event) {
  pressChangedRow_ = false;
  drag_->cancel();
  QTreeView::mousePressEvent(event);
  const auto button = event->button() == Qt::RightButton ? MouseButton::right : MouseButton::left;
  const QPoint place = event->position().toPoint();
  if (const QModelIndex index = indexAt(place);
      button == MouseButton::left && list_.moveSelected && rows_.rowAt(index) != 0) {
    setCurrentIndex(index);  // Qt leaves a row alone whose check box is pressed
    dragged_ = list_.id(rows_.rowAt(index));
    drag_->press(place);
  }
  later([this, button] { ui::raise(list_.mouseDown, button); });
}

void ListTree::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton) || !drag_->move(event->position().toPoint()))
    QTreeView::mouseMoveEvent(event);
}

void ListTree::mouseReleaseEvent(QMouseEvent* event) {
  const std::optional<int> steps =
      event->button() == Qt::LeftButton ? drag_->release() : std::nullopt;
  if (!steps) {
    QTreeView::mouseReleaseEvent(event);
    return;
  }
  // It was no click, neither on the row nor on its check box.
  moveSelected(dragged_, *steps);
}

void ListTree::moveSelected(ListView::RowId row, int steps) {
  if (steps == 0) return;
  later([this, row, steps] {
    if (list_.selected() != 0 && list_.id(list_.selected()) == row)
      ui::raise(list_.moveSelected, steps);
  });
}

void ListTree::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!list_.dblClick) {
    QTreeView::mouseDoubleClickEvent(event);
    return;
  }
  const int row = rows_.rowAt(indexAt(event->position().toPoint()));
  if (event->button() == Qt::LeftButton && row != 0 && row == list_.selected())
    later([this] { ui::raise(list_.dblClick); });
}

void ListTree::keyPressEvent(QKeyEvent* event) {
  const int row = rows_.rowAt(currentIndex());
  if (drag_->running() && event->key() == Qt::Key_Escape)
    drag_->cancel();
  else if (state() == EditingState || !(columnKey(*event) || (row != 0 && rowKey(*event, row))))
    QTreeView::keyPressEvent(event);
}

void ListTree::sortBy(int section) {
  later([this, section] { ui::raise(list_.columnClick, rows_.columnAt(section) + 1); });
}

bool ListTree::columnKey(const QKeyEvent& event) {
  // On some keyboards a digit takes Shift.
  const auto modifiers = event.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
  const int place = event.key() - Qt::Key_1;
  if (modifiers != Qt::ControlModifier || place < 0 || place >= rows_.columnCount() ||
      !header()->sectionsClickable())
    return false;
  if (!event.isAutoRepeat()) sortBy(header()->logicalIndex(place));
  return true;
}

bool ListTree::rowKey(const QKeyEvent& event, int row) {
  const QModelIndex name = currentIndex().siblingAtColumn(0);
  const int key = event.key();
  const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
  if (event.matches(QKeySequence::Copy)) {
    // Of a row it is the place that is wanted elsewhere.
    QGuiApplication::clipboard()->setText(
        name.siblingAtColumn(rows_.columnCount() - 1).data().toString());
    return true;
  }
  if (list_.moveSelected && modifiers == Qt::ControlModifier &&
      (key == Qt::Key_Up || key == Qt::Key_Down)) {
    moveSelected(list_.id(row), key == Qt::Key_Up ? -1 : 1);
    return true;
  }
  if (modifiers != Qt::NoModifier) return false;
  if (key == Qt::Key_Space && name.flags() & Qt::ItemIsUserCheckable) {
    // Whichever of its cells was clicked last.
    if (!event.isAutoRepeat())
      rows_.setData(name, list_.checked(row) ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
    return true;
  }
  const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
  if (enter && list_.editByTyping)
    editSelected();
  else if (enter && list_.dblClick)
    later([this] { ui::raise(list_.dblClick); });
  else if (key == Qt::Key_Delete && list_.editByTyping)
    rows_.setData(name, QString(), Qt::EditRole);
  else
    return false;
  return true;
}

void ListTree::contextMenuEvent(QContextMenuEvent* event) {
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  const QModelIndex index = byMouse ? indexAt(event->pos()) : currentIndex();
  const QPoint place =
      byMouse ? event->globalPos() : viewport()->mapToGlobal(visualRect(index).bottomLeft());
  if (index.isValid() && binding_->accepts() && list_.contextMenu) {
    binding_->act();
    auto* menu = qobject_cast<QMenu*>(bindings_.widgetOf(*list_.contextMenu));
    if (menu && list_.contextMenu->available()) menu->popup(place);
  } else if (index.isValid() && list_.labelEdit && list_.afterLabelEdit) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    // Later: the menu that goes gives the keyboard back to the list, which would close the field.
    menu->addAction(tr("&Rename"), this, [this] { list_.startLabelEdit(); });
    menu->popup(place);
  } else if (!byMouse) {
    later([this] { ui::raise(list_.mouseDown, MouseButton::right); });
  }
}

QString ListTree::words() const {
  return list_.emptyText == "" ? hint_ : captioned(list_.emptyText);
}

void ListTree::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (drag_->running()) {
    QPainter painter(viewport());
    drag_->paint(painter);
  }
  if (rows_.rowCount() > 0 || !binding_->attached() || (overlay_ && overlay_->isVisible())) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  constexpr int flags = Qt::AlignCenter | Qt::TextWordWrap;
  const QString text = words();
  QRect room = viewport()->rect().adjusted(16, 4, -16, -4);
  if (!room.contains(fontMetrics().boundingRect(room, flags, text))) {
    // What matters stands first.
    room = viewport()->rect().adjusted(6, 2, -6, -2);
    painter.drawText(room, Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, text);
    return;
  }
  painter.drawText(room, flags, text);
}

}  // namespace skv::ui::qt
