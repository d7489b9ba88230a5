// The status line: a text over a progress fill.
#pragma once

#include <QWidget>

#include "ui/qt/bindings.h"

namespace skv::ui::qt {

class StatusView : public QWidget {
 public:
  StatusView(Bindings& bindings, Form& form, StatusLine& line);
  QSize sizeHint() const override;
  const QString& text() const { return text_; }
  int percent() const { return percent_; }  // -1 without a fill
  QSize minimumSizeHint() const override { return {80, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void refresh();
  void drawTexts(QPainter& painter, const QColor& colour) const;

  StatusLine& line_;
  QString text_;
  int percent_ = -1;
};

}  // namespace skv::ui::qt
