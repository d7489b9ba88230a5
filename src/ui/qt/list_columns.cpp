#include "ui/qt/list_columns.h"

#include <QAccessible>
#include <QApplication>
#include <QEvent>
#include <QHeaderView>
#include <QStyleOptionHeader>
#include <QTreeView>
#include <algorithm>
#include <numeric>
#include <utility>

#include "ui/qt/form_window.h"
#include "ui/qt/rows_model.h"

namespace skv::ui::qt {

namespace {
constexpr int leastColumn = 44;

// Measures its texts as they are drawn. Qt's own does so in bold, and loads that font for it.
class PlainHeader : public QHeaderView {
 public:
  explicit PlainHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) { mute(); }

 protected:
  void changeEvent(QEvent* event) override {
    QHeaderView::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) mute();
  }
  QSize sectionSizeFromContents(int section) const override {
    QStyleOptionHeader option;
    initStyleOption(&option);
    option.section = section;
    option.text = model()->headerData(section, orientation()).toString();
    if (isSortIndicatorShown()) option.sortIndicator = QStyleOptionHeader::SortDown;
    return style()->sizeFromContents(QStyle::CT_HeaderSection, &option, QSize(), this);
  }

 private:
  void mute() {
    const QColor muted = QApplication::palette().color(QPalette::PlaceholderText);
    if (palette().color(QPalette::ButtonText) == muted) return;
    QPalette own;
    own.setColor(QPalette::ButtonText, muted);
    setPalette(own);
  }
};

}  // namespace

ListColumns::ListColumns(QTreeView& view, const RowsModel& rows, ListView& list)
    : QObject(&view), view_(view), rows_(rows), list_(list) {
  view.setHeader(new PlainHeader(&view));
  header().setSectionsMovable(true);
  header().setStretchLastSection(false);
  header().setMinimumSectionSize(leastColumn);
  header().setHighlightSections(false);
  header().setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  header().viewport()->installEventFilter(this);
  connect(&header(), &QHeaderView::sectionResized, this, [this] {
    if (fitting_ || !held_) return;
    moved_ = true;
    fillLast();
  });
}

QHeaderView& ListColumns::header() const { return *view_.header(); }

void ListColumns::refresh() {
  std::vector<int> widths;
  for (int i = 0; i < rows_.columnCount(); ++i)
    widths.push_back(list_.columns()[static_cast<std::size_t>(rows_.columnAt(i))].width);
  if (widths != widths_) {
    widths_ = std::move(widths);
    fit();
  }
  showSort();
}

void ListColumns::showSort() {
  int sorted = -1;  // none, also where the key is a column that is not seen
  for (int i = 0; i < rows_.columnCount() && list_.sorted(); ++i)
    if (rows_.columnAt(i) == list_.sortKey()) sorted = i;
  header().setSectionsClickable(list_.columnClick != nullptr);
  if (const auto sort = std::pair(sorted, list_.sortOrder()); std::exchange(sort_, sort) != sort) {
    // The headings tell it in their names, which a screen reader keeps.
    for (int i = 0; i < rows_.columnCount() && QAccessible::isActive(); ++i) {
      QAccessibleEvent renamed(&view_, QAccessible::NameChanged);
      renamed.setChild(i);
      QAccessible::updateAccessibility(&renamed);
    }
  }
  header().setSortIndicatorShown(sorted >= 0);
  if (sorted >= 0)
    header().setSortIndicator(sorted, list_.sortOrder() == SortOrder::ascending
                                          ? Qt::AscendingOrder
                                          : Qt::DescendingOrder);
}

void ListColumns::fit() {
  const int all = std::accumulate(widths_.begin(), widths_.end(), 0);
  const int width = view_.viewport()->width();
  if (all == 0 || width < 2 * leastColumn) return;
  fitting_ = true;
  for (int i = 0; i + 1 < rows_.columnCount(); ++i)
    view_.setColumnWidth(i,
                         std::max(widths_[static_cast<std::size_t>(i)] * width / all, leastColumn));
  fitting_ = false;
  fillLast();
}

void ListColumns::fillLast() {
  const int last = rows_.columnCount() - 1;
  int taken = 0;
  for (int i = 0; i < last; ++i) taken += view_.columnWidth(i);
  fitting_ = true;
  view_.setColumnWidth(last, std::max(view_.viewport()->width() - taken, leastColumn));
  fitting_ = false;
}

bool ListColumns::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
    held_ = true;
  if (event->type() == QEvent::MouseButtonRelease) {
    held_ = false;
    if (std::exchange(moved_, false)) note();
  }
  return QObject::eventFilter(watched, event);
}

void ListColumns::note() {
  for (int i = 0; i < rows_.columnCount(); ++i) {
    widths_[static_cast<std::size_t>(i)] = view_.columnWidth(i) * twipsPerPixel;
    list_.setColumnWidth(rows_.columnAt(i), view_.columnWidth(i) * twipsPerPixel);
  }
  changedByUser();
}

}  // namespace skv::ui::qt
