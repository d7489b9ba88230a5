#include "ui/qt/list_tree.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

#include "ui/qt/text.h"
#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {
constexpr int leastRowHeight = 27;
constexpr int leastColumn = 44;
}  // namespace

class ListTree::RowDelegate : public QStyledItemDelegate {
 public:
  explicit RowDelegate(ListTree& tree) : QStyledItemDelegate(&tree), tree_(tree) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width(), std::max(size.height() + (tree_.places_ ? 2 : 0), leastRowHeight)};
  }

  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override {
    const bool tells = index.data(Qt::AccessibleDescriptionRole).toString().size() > 0 ||
                       sizeHint(option, index).width() > option.rect.width();
    if (event->type() == QEvent::ToolTip && !tells) {
      QToolTip::hideText();
      return true;
    }
    return QStyledItemDelegate::helpEvent(event, view, option, index);
  }

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    // The end of a path tells most, the beginning of any other text.
    option->textElideMode =
        option->text.contains(QLatin1Char('\\')) ? Qt::ElideLeft : Qt::ElideRight;
    // The selected row is marked enough, and the list shows that it has the keyboard.
    option->state &= ~QStyle::State_HasFocus;
    if (const Colour colour = index.data(Qt::UserRole).toUInt(); colour != defaultColour) {
      QColor& text = legible_[colour];
      if (!text.isValid()) text = legible(colour, option->palette);
      option->palette.setColor(QPalette::Text, text);
      option->palette.setColor(QPalette::HighlightedText, text);
    }
    if (!tree_.places_ || index.column() != 0) return;
    const QPixmap& picture = tree_.places_->picture(index.data(Qt::UserRole + 1).toInt(),
                                                    option->palette, tree_.devicePixelRatio());
    option->features |= QStyleOptionViewItem::HasDecoration;
    option->decorationSize = PlacePictures::size;
    option->icon = QIcon(picture);
    option->icon.addPixmap(picture, QIcon::Selected);
  }

 private:
  ListTree& tree_;
  mutable std::map<Colour, QColor> legible_;  // made once, since every cell asks
};

ListTree::ListTree(Bindings& bindings, Form& form, ListView& list, const QString& accessibleName)
    : list_(list), rows_(list) {
  setModel(&rows_);
  setItemDelegate(new RowDelegate(*this));
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
  setMinimumHeight(67);
  setEditTriggers(list.labelEdit ? DoubleClicked | SelectedClicked : NoEditTriggers);
  header()->setStretchLastSection(false);
  header()->setMinimumSectionSize(leastColumn);
  header()->setHighlightSections(false);
  QPalette muted = palette();
  muted.setColor(QPalette::ButtonText, muted.color(QPalette::PlaceholderText));
  header()->setPalette(muted);
  header()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  for (std::size_t i = 0; i < list.columns().size(); ++i)
    setColumnHidden(static_cast<int>(i), list.columns()[i].width == 0);
  binding_ = new Binding(bindings, form, list, this, [this] { refresh(); });
  binding_->onDetach = [this] { rows_.detach(); };
  listen();
}

ListTree::~ListTree() {
  // The rows go before the view does.
  setModel(nullptr);
}

void ListTree::showPlaces() {
  places_ = std::make_unique<PlacePictures>();
  rows_.iconWords = PlacePictures::words;
}

void ListTree::later(std::function<void()> action) {
  QMetaObject::invokeMethod(
      this,
      [this, action = std::move(action)] {
        if (binding_->accepts()) action();
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
  connect(header(), &QHeaderView::sectionClicked, this, [this](int section) {
    later([this, section] { ui::raise(list_.columnClick, section + 1); });
  });
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
      list_.select(row);
      bool cancel = true;
      ui::raise(list_.afterLabelEdit, cancel, newString);
    });
  };
}

void ListTree::refresh() {
  refreshing_ = true;
  const int scrolled = verticalScrollBar()->value();
  if (rows_.refresh() == RowsModel::Followed::fromScratch) {
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolled);
  }

  const QModelIndex selected = rows_.index(list_.selected() - 1, 0);
  if (currentIndex().row() != selected.row() || !selectionModel()->isSelected(selected)) {
    setAutoScroll(false);  // only a wish brings a row into view
    selectionModel()->setCurrentIndex(
        selected, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    setAutoScroll(true);
  }
  if (list_.visibleWishes() != wishesSeen_) {
    wishesSeen_ = list_.visibleWishes();
    scrollTo(rows_.index(list_.visibleRow() - 1, 0));
  }
  if (list_.labelEditWishes() != editsSeen_) {
    editsSeen_ = list_.labelEditWishes();
    edit(currentIndex().siblingAtColumn(0));
  }
  if (!list_.emptyText->empty()) hint_ = shown(list_.emptyText);
  showHeader();
  setEnabled(list_.enabled);
  setVisible(list_.visible);
  viewport()->update();
  refreshing_ = false;
}

void ListTree::showHeader() {
  header()->setSectionsClickable(list_.columnClick != nullptr);
  header()->setSortIndicatorShown(list_.sorted());
  if (list_.sorted())
    header()->setSortIndicator(list_.sortKey(), list_.sortOrder() == SortOrder::ascending
                                                    ? Qt::AscendingOrder
                                                    : Qt::DescendingOrder);
}

void ListTree::fitColumns() {
  const int width = viewport()->width();
  std::vector<int> seen;
  int designed = 0;
  int widest = 0;
  for (int i = 0; i < static_cast<int>(list_.columns().size()); ++i) {
    const int columnWidth = list_.columns()[static_cast<std::size_t>(i)].width;
    if (columnWidth == 0) continue;
    seen.push_back(i);
    designed += columnWidth;
    if (columnWidth > list_.columns()[static_cast<std::size_t>(widest)].width) widest = i;
  }
  if (designed == 0 || width < 2 * leastColumn) return;
  int taken = 0;
  for (const int i : seen) {
    if (i == widest) continue;
    // At first as designed, later as the user has left them.
    if (fittedWidth_ == 0)
      setColumnWidth(i, list_.columns()[static_cast<std::size_t>(i)].width * width / designed);
    taken += columnWidth(i);
  }
  const int rest = fittedWidth_ == 0 ? width - taken : columnWidth(widest) + width - fittedWidth_;
  setColumnWidth(widest, std::max(rest, 2 * leastColumn));
  fittedWidth_ = width;
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
  if (list_.selected() == 0) setCurrentIndex({});
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
  QTreeView::mousePressEvent(event);
  const auto button = event->button() == Qt::RightButton ? MouseButton::right : MouseButton::left;
  later([this, button] { ui::raise(list_.mouseDown, button); });
}

void ListTree::contextMenuEvent(QContextMenuEvent* event) {
  const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
  const QModelIndex index = byMouse ? indexAt(event->pos()) : currentIndex();
  if (list_.labelEdit && index.isValid()) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("&Rename"), this, [this] { edit(currentIndex().siblingAtColumn(0)); });
    menu->popup(byMouse ? event->globalPos()
                        : viewport()->mapToGlobal(visualRect(index).bottomLeft()));
  } else if (!byMouse) {
    later([this] { ui::raise(list_.mouseDown, MouseButton::right); });
  }
}

void ListTree::paintEvent(QPaintEvent* event) {
  QTreeView::paintEvent(event);
  if (rows_.rowCount() > 0 || hint_.isEmpty()) return;
  QPainter painter(viewport());
  painter.setPen(palette().color(QPalette::PlaceholderText));
  constexpr int flags = Qt::AlignCenter | Qt::TextWordWrap;
  const QRect room = viewport()->rect().adjusted(16, 4, -16, -4);
  const bool fits = room.contains(fontMetrics().boundingRect(room, flags, hint_));
  painter.drawText(room, flags, fits ? hint_ : hint_.section(QLatin1Char('\n'), 0, 0));
}

void ListTree::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  if (binding_->attached() && viewport()->width() != fittedWidth_) fitColumns();
}

}  // namespace skv::ui::qt
