// Fusion with flat marks of its own: check boxes, option buttons and the frame of what has the
// keyboard stay visible on light and dark alike.
#pragma once

#include <QProxyStyle>

namespace skv::ui::qt {

class FlatStyle : public QProxyStyle {
 public:
  FlatStyle();
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option,
                  const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
};

}  // namespace skv::ui::qt
