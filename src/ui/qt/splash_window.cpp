#include <QFrame>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/qt/caption_label.h"
#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"
#include "ui/qt/icons.h"
#include "ui/qt/screen_reader.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

// The program's picture with its name.
class Banner : public QWidget {
 public:
  Banner(Bindings& bindings, Form& form, Image& image) {
    setFixedSize(480, 200);
    setProperty(isGraphic, true);
    setAccessibleName(QString::fromLatin1("FS Skyvault"));
    setAccessibleDescription(QObject::tr("Add-ons of Flight Simulator 2002"));
    new Binding(bindings, form, image, this, [this, &image] { setVisible(image.visible); });
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    // The picture is drawn for words on its left in any language.
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.drawPixmap(0, 0, drawing(QStringLiteral("splash"), size(), devicePixelRatio()));
    painter.setPen(Qt::white);
    painter.drawText(QRect(34, 92, 300, 24), Qt::AlignLeft | Qt::AlignVCenter,
                     QObject::tr("Add-ons of Flight Simulator 2002"));
    QFont title = font();
    title.setPixelSize(38);
    title.setWeight(QFont::DemiBold);
    painter.setFont(title);
    painter.drawText(QRect(32, 40, 300, 60), Qt::AlignLeft | Qt::AlignVCenter,
                     QStringLiteral("FS Skyvault"));
  }
};

}  // namespace

QWidget* makeSplashWindow(Bindings& bindings, FrmSplash& form, const FileSystem& files,
                          QWidget* owner) {
  auto* window = new FormDialog(owner);
  window->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
  window->setAccessibleName(QObject::tr("About FS Skyvault"));
  new FormWindow(bindings, form, *window);
  FormBuilder build(bindings, form, files);

  auto* outline = new QFrame;
  outline->setFrameStyle(QFrame::Box | QFrame::Plain);
  auto* fixed = new QVBoxLayout(window);
  fixed->setSizeConstraint(QLayout::SetFixedSize);
  fixed->setContentsMargins(0, 0, 0, 0);
  fixed->addWidget(outline);
  auto* column = new QVBoxLayout(outline);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(new Banner(bindings, form, form.Image1));
  auto* text = new QVBoxLayout;
  text->setContentsMargins(34, 16, 34, 16);
  text->setSpacing(2);
  CaptionLabel* version = build.label(form.lblVersion);
  version->makeHeading();
  text->addWidget(version);
  text->addSpacing(8);
  for (Label* line : {&form.Label2, &form.Label3, &form.Label4, &form.Label5})
    text->addWidget(build.label(*line));
  QPushButton* close = build.button(form.btnClose);
  close->setDefault(true);
  text->addSpacing(10);
  text->addWidget(close, 0, Qt::AlignRight);
  column->addLayout(text);
  // In the window by now: before, there is none to take the keyboard in.
  close->setFocus();
  return window;
}

}  // namespace skv::ui::qt
