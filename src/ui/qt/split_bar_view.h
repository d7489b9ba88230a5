// Two lists, one above the other, with a bar between them that the user drags.
#pragma once

#include <QWidget>

#include "ui/model/frm_main.h"
#include "ui/qt/bindings.h"

class QVBoxLayout;

namespace skv::ui::qt {

class CaptionLabel;
class FormWindow;

// A SplitBar on screen. Up and Down move it by the keyboard.
class SplitBarView : public QWidget {
 public:
  SplitBarView(Bindings& bindings, Form& form, SplitBar& bar);
  // Called after each event that may have moved the lists' border.
  std::function<void()> onMoved;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  SplitBar& bar_;
  Binding* binding_;
  qreal grip_ = 0;  // where in the bar the button went down
};

// The scenery lists. Takes sceneryHeight and libraryHeight of the form for the lists' heights, and
// gives each half of what the window's height gains or loses.
class SplitLists : public QWidget {
 public:
  struct Parts {
    QWidget *upperHead, *upperList, *upperFoot;
    QWidget *lowerHead, *lowerList;
    CaptionLabel* overlay;  // in the middle of the whole
  };
  SplitLists(Bindings& bindings, FrmMain& form, FormWindow& window, const Parts& parts);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void shareRoom();
  void layOut();

  FrmMain& form_;
  Parts parts_;
  QVBoxLayout* column_;
};

}  // namespace skv::ui::qt
