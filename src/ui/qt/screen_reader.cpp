#include "ui/qt/screen_reader.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QSplitterHandle>

#include "ui/qt/caption_label.h"
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

// A text, and a link where a click opens something.
class CaptionAccess : public QAccessibleWidget {
 public:
  explicit CaptionAccess(CaptionLabel* label) : QAccessibleWidget(label), label_(label) {}

  QAccessible::Role role() const override {
    return label_->clickable() ? QAccessible::Link : QAccessible::StaticText;
  }

  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Name ? label_->text() : QAccessibleWidget::text(which);
  }
  QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (label_->clickable()) names.prepend(pressAction());
    return names;
  }
  void doAction(const QString& name) override {
    if (name == pressAction() && label_->isEnabled())
      label_->click();
    else
      QAccessibleWidget::doAction(name);
  }

 private:
  CaptionLabel* label_;
};

QAccessibleInterface* accessOf(const QString& kind, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (!widget) return nullptr;
  if (auto* status = dynamic_cast<StatusView*>(widget)) return new StatusAccess(status);
  if (dynamic_cast<PictureView*>(widget) || widget->property(isGraphic).toBool())
    return new QAccessibleWidget(widget, QAccessible::Graphic);
  // Each would be of no kind that a desktop knows.
  if (dynamic_cast<SplitBarView*>(widget) || qobject_cast<QSplitterHandle*>(widget))
    return new QAccessibleWidget(widget, QAccessible::Separator);
  if (auto* label = dynamic_cast<CaptionLabel*>(widget)) return new CaptionAccess(label);
  // What is just a frame, and no kind of control: Qt would make it a window of its own.
  if (kind == QLatin1String("QFrame")) return new QAccessibleWidget(widget, QAccessible::Grouping);
  return nullptr;
}

}  // namespace

void describeToScreenReaders() { QAccessible::installFactory(accessOf); }

}  // namespace skv::ui::qt
