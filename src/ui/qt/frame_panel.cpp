#include "ui/qt/frame_panel.h"

#include <QMouseEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/qt/caption_label.h"
#include "ui/qt/flat_drawing.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

FramePanel::FramePanel(Bindings& bindings, Form& form, Frame& frame, bool card)
    : frame_(frame), card_(card), body_(new QVBoxLayout), caption_(new CaptionLabel) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(card ? 12 : 0, card ? 8 : 0, card ? 12 : 0, card ? 10 : 0);
  column->setSpacing(7);
  if (card) caption_->makeHeading();
  column->addWidget(caption_);
  column->addLayout(body_, 1);
  body_->setSpacing(7);
  binding_ = new Binding(bindings, form, frame, this, [this] { refresh(); });
}

void FramePanel::refresh() {
  caption_->setVisible(frame_.caption != "");
  caption_->setCaption(captioned(frame_.caption), frame_.colour);
  setAccessibleName(spoken(frame_.caption));
  setEnabled(frame_.enabled);
  setVisible(frame_.visible);
}

void FramePanel::paintEvent(QPaintEvent*) {
  if (!card_) return;
  QPainter painter(this);
  drawBox(painter, rect(), palette().color(QPalette::Light), palette().color(QPalette::Mid), 8);
}

void FramePanel::mouseDoubleClickEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) binding_->fire(frame_.dblClick);
}

}  // namespace skv::ui::qt
