// A text of one line that gives way when there is no room: it ends in dots and tells the whole as a
// tool tip. A text with a colour of its own stands on a soft ground of that colour.
#pragma once

#include <QLabel>
#include <QPointer>
#include <functional>

#include "ui/model/list_view.h"

namespace skv::ui::qt {

class CaptionLabel : public QLabel {
 public:
  explicit CaptionLabel(QWidget* parent = nullptr);
  void setCaption(const QString& caption, Colour colour = defaultColour);
  // For the head of a frame: larger and stronger, but on a ground of its own. From the next caption
  // on, which brings the ground or not: a font that is never shown is not to be loaded.
  void makeHeading() { heading_ = true; }
  // With a ground of its own whatever lies below, for a text over a picture or a list.
  void makeNotice();
  // What it says is about a field: screen readers tell it there.
  void tellOf(QWidget* field);
  // Drawn as a link, and reached by the keyboard.
  void setClickable(bool clickable);
  bool clickable() const { return clickable_; }
  void click();
  std::function<void()> onClick;

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void setStrength();
  bool grounded() const { return notice_ || colour_ != defaultColour; }

  Colour colour_ = defaultColour;
  bool notice_ = false;
  bool heading_ = false;
  bool strong_ = false;
  bool clickable_ = false;
  QPointer<QWidget> field_;
};

}  // namespace skv::ui::qt
