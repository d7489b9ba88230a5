#include "ui/qt/flat_style.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QRadioButton>
#include <QStyleOption>
#include <algorithm>

#include "ui/qt/flat_drawing.h"
#include "ui/qt/icons.h"

namespace skv::ui::qt {

namespace {

constexpr int scrollBarExtent = 12;
constexpr int leastHandle = 28;

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  painter->save();
  switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      drawCheck(*painter, *option);
      break;
    case PE_IndicatorRadioButton:
      drawRadio(*painter, *option);
      break;
    case PE_IndicatorHeaderArrow:
      drawSortArrow(*painter, *option);
      break;
    case PE_PanelButtonCommand:
      drawButton(*painter, option);
      break;
    case PE_PanelLineEdit:
      drawLineEdit(*painter, option);
      break;
    case PE_Frame:
      drawBox(*painter, option->rect, colour(option, QPalette::Base),
              fieldBorder(option, widget && widget->hasFocus()));
      break;
    case PE_FrameFocusRect:
      // All others show it by their border or ground.
      if (qobject_cast<const QRadioButton*>(widget))
        drawBox(*painter, option->rect, Qt::transparent, colour(option, QPalette::Link), 3);
      break;
    case PE_PanelMenu:
      drawBox(*painter, option->rect, colour(option, QPalette::Base), colour(option, QPalette::Mid),
              0);
      break;
    case PE_FrameMenu:
    case PE_FrameTabBarBase:
    case PE_FrameLineEdit:
      break;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  painter->restore();
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  painter->save();
  switch (element) {
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
      drawHeader(*painter, option);
      break;
    case CE_TabBarTabShape:
      drawTab(*painter, option);
      break;
    case CE_MenuBarItem:
    case CE_MenuBarEmptyArea:
      drawMenuBarItem(*painter, option);
      break;
    case CE_MenuItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
        QStyleOptionMenuItem flat(*item);
        if (has(option, State_Selected) && has(option, State_Enabled))
          drawBox(*painter, option->rect, colour(option, QPalette::Highlight), Qt::transparent);
        if (has(option, State_Selected))
          for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
            if (has(option, State_Enabled))
              flat.palette.setColor(role, colour(option, QPalette::HighlightedText));
        flat.state &= ~State_Selected;
        QProxyStyle::drawControl(element, &flat, painter, widget);
      }
      break;
    case CE_TabBarTabLabel:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
        QStyleOptionTab label(*tab);
        if (has(option, State_Enabled) && !has(option, State_Selected) &&
            !has(option, State_MouseOver))
          label.palette.setColor(QPalette::WindowText, colour(option, QPalette::PlaceholderText));
        QProxyStyle::drawControl(element, &label, painter, widget);
      }
      break;
    case CE_PushButtonLabel:
      if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
        QStyleOptionButton label(*button);
        if (isDefault(option) && !has(option, State_Sunken))
          label.palette.setColor(QPalette::ButtonText, colour(option, QPalette::BrightText));
        else if (has(option, State_Sunken))
          label.palette.setColor(QPalette::ButtonText, colour(option, QPalette::HighlightedText));
        QProxyStyle::drawControl(element, &label, painter, widget);
      }
      break;
    default:
      QProxyStyle::drawControl(element, option, painter, widget);
  }
  painter->restore();
}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  if (control != CC_ScrollBar) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  painter->save();
  drawScrollBar(*painter, option, subControlRect(control, option, SC_ScrollBarSlider, widget));
  painter->restore();
}

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl subControl, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control != CC_ScrollBar || !bar)
    return QProxyStyle::subControlRect(control, option, subControl, widget);
  // No arrow buttons: the handle has the whole length.
  const bool upright = bar->orientation == Qt::Vertical;
  const QRect& all = bar->rect;
  const int length = upright ? all.height() : all.width();
  const qint64 values = static_cast<qint64>(bar->maximum) - bar->minimum + bar->pageStep;
  const int handle = static_cast<int>(std::clamp<qint64>(
      values <= 0 ? length : static_cast<qint64>(length) * bar->pageStep / values,
      std::min(leastHandle, length), length));
  const int start = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                            length - handle, bar->upsideDown);
  const auto along = [&](int from, int size) {
    return upright ? QRect(all.x(), all.y() + from, all.width(), size)
                   : QRect(all.x() + from, all.y(), size, all.height());
  };
  switch (subControl) {
    case SC_ScrollBarSlider:
      return along(start, handle);
    case SC_ScrollBarSubPage:
      return along(0, start);
    case SC_ScrollBarAddPage:
      return along(start + handle, length - start - handle);
    case SC_ScrollBarGroove:
      return all;
    default:
      return {};
  }
}

QRect FlatStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
  if (element == SE_LineEditContents) {
    const auto* frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
    return option->rect.adjusted(frame && frame->lineWidth == 0 ? 2 : 6, 1, -6, -1);
  }
  return QProxyStyle::subElementRect(element, option, widget);
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
  switch (type) {
    case CT_PushButton:
      return contents + QSize(widget && widget->property("small").toBool() ? 20 : 30, 12);
    case CT_LineEdit:
      return contents + QSize(16, 10);
    case CT_MenuBarItem:
      return contents + QSize(22, 12);
    case CT_MenuItem:
      return QProxyStyle::sizeFromContents(type, option, contents, widget) + QSize(8, 4);
    case CT_HeaderSection:
      return QProxyStyle::sizeFromContents(type, option, contents, widget) + QSize(4, 8);
    default:
      return QProxyStyle::sizeFromContents(type, option, contents, widget);
  }
}

int FlatStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return markSide;
    case PM_FocusFrameHMargin:  // what stands left and right of a row's text
    case PM_HeaderMargin:
      return 5;
    case PM_ScrollBarExtent:
      return scrollBarExtent;
    case PM_DefaultFrameWidth:
      return qobject_cast<const QAbstractScrollArea*>(widget)
                 ? 2
                 : QProxyStyle::pixelMetric(metric, option, widget);
    case PM_TabBarTabHSpace:
      return 30;
    case PM_TabBarTabVSpace:
      return 14;
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabShiftVertical:
    case PM_TabBarTabOverlap:
    case PM_TabBarBaseOverlap:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return 5;
    case PM_MenuBarHMargin:
      return 6;
    case PM_MenuBarVMargin:
      return 3;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int FlatStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returned) const {
  if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
  return QProxyStyle::styleHint(hint, option, widget, returned);
}

QIcon FlatStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                              const QWidget* widget) const {
  // Every menu bar asks for it, to draw it when the window is too narrow: ours is made then.
  if (which == SP_ToolBarHorizontalExtensionButton)
    return drawnIcon(QStringLiteral("down"), QPalette::ButtonText);
  return QProxyStyle::standardIcon(which, option, widget);
}

}  // namespace skv::ui::qt
