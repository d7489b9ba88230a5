// The status line: a text over a progress fill.
#pragma once

#include <QWidget>

#include "ui/qt/bindings.h"

namespace skv::ui::qt {

class StatusView : public QWidget {
 public:
  StatusView(Bindings& bindings, Form& form, StatusLine& line);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return {80, sizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  StatusLine& line_;
  QString caption_;
  int percent_ = -1;  // -1 without a fill
};

}  // namespace skv::ui::qt
