#include "ui/qt/screen_reader.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QSplitterHandle>

#include "ui/qt/picture_view.h"
#include "ui/qt/split_bar_view.h"
#include "ui/qt/status_view.h"

namespace skv::ui::qt {

namespace {

// A line of text, and for the time of an operation with progress a bar with its value.
class StatusAccess : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit StatusAccess(StatusView* view) : QAccessibleWidget(view), view_(view) {}

  QAccessible::Role role() const override {
    return view_->percent() < 0 ? QAccessible::StatusBar : QAccessible::ProgressBar;
  }
  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Value ? view_->text() : QAccessibleWidget::text(which);
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface && view_->percent() >= 0)
      return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QVariant currentValue() const override { return view_->percent(); }
  void setCurrentValue(const QVariant&) override {}
  QVariant minimumValue() const override { return 0; }
  QVariant maximumValue() const override { return 100; }
  QVariant minimumStepSize() const override { return 1; }

 private:
  StatusView* view_;
};

QAccessibleInterface* accessOf(const QString&, QObject* object) {
  if (auto* status = dynamic_cast<StatusView*>(object)) return new StatusAccess(status);
  if (auto* picture = dynamic_cast<PictureView*>(object))
    return new QAccessibleWidget(picture, QAccessible::Graphic);
  // Each would be of no kind that a desktop knows.
  if (dynamic_cast<SplitBarView*>(object) || qobject_cast<QSplitterHandle*>(object))
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Separator);
  return nullptr;
}

}  // namespace

void describeToScreenReaders() { QAccessible::installFactory(accessOf); }

}  // namespace skv::ui::qt
