#include "ui/qt/row_delegate.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <utility>

#include "ui/qt/theme.h"

namespace skv::ui::qt {

namespace {
constexpr int leastRowHeight = 27;
}

// A text is one line, and is drawn as one: the style would lay it out three times.
void RowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  QStyleOptionViewItem cell(option);
  initStyleOption(&cell, index);
  const QString text = std::exchange(cell.text, {});
  const QStyle& style = *list_->style();
  style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, list_);
  if (text.isEmpty()) return;
  const int margin = style.pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, list_) + 1;
  const QRect room = style.subElementRect(QStyle::SE_ItemViewItemText, &cell, list_)
                         .adjusted(margin, 0, -margin, 0);
  const bool enabled = cell.state & QStyle::State_Enabled;
  const bool selected = cell.state & QStyle::State_Selected;
  const auto group = !enabled                               ? QPalette::Disabled
                     : !(cell.state & QStyle::State_Active) ? QPalette::Inactive
                                                            : QPalette::Normal;
  painter->setPen(cell.palette.color(group, selected ? QPalette::HighlightedText : QPalette::Text));
  painter->setFont(cell.font);
  const auto side = QStyle::visualAlignment(cell.direction, cell.displayAlignment);
  painter->drawText(room, static_cast<int>(side) | Qt::TextSingleLine,
                    cell.fontMetrics.elidedText(text, cell.textElideMode, room.width()));
}

QSize RowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
  const QSize size = QStyledItemDelegate::sizeHint(option, index);
  return {size.width(), std::max(size.height() + (places_ ? 2 : 0), leastRowHeight)};
}

bool RowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                            const QStyleOptionViewItem& option, const QModelIndex& index) {
  const bool tells = index.data(Qt::AccessibleDescriptionRole).toString().size() > 0 ||
                     sizeHint(option, index).width() > option.rect.width();
  if (event->type() == QEvent::ToolTip && !tells) {
    QToolTip::hideText();
    return true;
  }
  return QStyledItemDelegate::helpEvent(event, view, option, index);
}

bool RowDelegate::eventFilter(QObject* editor, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QStyledItemDelegate::eventFilter(editor, event);
  auto& key = static_cast<QKeyEvent&>(*event);
  if (key.key() != Qt::Key_Tab && key.key() != Qt::Key_Backtab)
    return QStyledItemDelegate::eventFilter(editor, event);
  // Leaves the list, as it does when no field is open.
  Q_EMIT commitData(static_cast<QWidget*>(editor));
  Q_EMIT closeEditor(static_cast<QWidget*>(editor), NoHint);
  QKeyEvent onward(key.type(), key.key(), key.modifiers(), key.text());
  QCoreApplication::sendEvent(list_, &onward);
  return true;
}

void RowDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  // The end of a path tells most, the beginning of any other text.
  option->textElideMode = option->text.contains(QLatin1Char('\\')) ? Qt::ElideLeft : Qt::ElideRight;
  // The selected row is marked enough, and the list shows that it has the keyboard.
  option->state &= ~QStyle::State_HasFocus;
  if (const Colour colour = index.data(Qt::UserRole).toUInt(); colour != defaultColour) {
    QColor& text = legible_[colour];
    if (!text.isValid()) text = legible(colour, option->palette);
    // A disabled list is grey throughout.
    for (const auto group : {QPalette::Active, QPalette::Inactive})
      for (const auto role : {QPalette::Text, QPalette::HighlightedText})
        option->palette.setColor(group, role, text);
  }
  if (!places_ || index.column() != 0) return;
  const QPixmap& picture = places_->picture(index.data(Qt::UserRole + 1).toInt(), option->palette,
                                            list_->devicePixelRatio());
  option->features |= QStyleOptionViewItem::HasDecoration;
  option->decorationSize = places_->size();
  option->icon = QIcon(picture);
  option->icon.addPixmap(picture, QIcon::Selected);
}

}  // namespace skv::ui::qt
