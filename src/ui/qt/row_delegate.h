// How the rows of a list are drawn: their height, their texts and colours, their places.
#pragma once

#include <QStyledItemDelegate>
#include <map>
#include <memory>

#include "ui/model/list_view.h"
#include "ui/qt/place_pictures.h"

namespace skv::ui::qt {

class RowDelegate : public QStyledItemDelegate {
 public:
  explicit RowDelegate(QWidget* list) : QStyledItemDelegate(list), list_(list) {}

  // Draws the rows' small icons as places.
  void showPlaces(const PlaceSet& set) { places_ = std::make_unique<PlacePictures>(set); }
  // The program's palette has changed.
  void forgetColours() { legible_.clear(); }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                 const QModelIndex& index) override;

 protected:
  bool eventFilter(QObject* editor, QEvent* event) override;
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

 private:
  QWidget* list_;
  std::unique_ptr<PlacePictures> places_;
  mutable std::map<Colour, QColor> legible_;  // made once, since every cell asks
};

}  // namespace skv::ui::qt
