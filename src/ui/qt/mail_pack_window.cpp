// A Package for a friend: its picture on the left, recipient and message on the right.
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/qt/caption_label.h"
#include "ui/qt/dialogs.h"
#include "ui/qt/form_builder.h"
#include "ui/qt/form_window.h"
#include "ui/qt/language.h"
#include "ui/qt/picture_view.h"

namespace skv::ui::qt {

namespace {

constexpr int pictureWidth = 260, recipientWidth = 380, messageHeight = 130;

// The message takes the room that there is, below its label.
void addMessage(FormBuilder& build, QVBoxLayout& column, TextBox& box) {
  QWidget* area = build.textBox(box);
  area->setMinimumHeight(messageHeight);
  auto* label = new QLabel(captioned(box.label));
  label->setBuddy(area);
  column.addWidget(label);
  column.addWidget(area, 1);
}

QVBoxLayout* pictureSide(FormBuilder& build, FrmMailPack& form) {
  auto* side = new QVBoxLayout;
  side->setSpacing(8);
  PictureView* picture =
      build.picture(form.imgAC, QObject::tr("Picture of the add-on"),
                    form.scenery ? QStringLiteral("scenery") : QStringLiteral("aircraft"));
  picture->setMinimumWidth(pictureWidth);
  side->addWidget(picture, 1);
  side->addWidget(build.label(form.lblAddon));
  return side;
}

QVBoxLayout* mailSide(FormBuilder& build, FrmMailPack& form) {
  auto* side = new QVBoxLayout;
  side->setSpacing(6);
  auto* recipient = new QGridLayout;
  recipient->setHorizontalSpacing(8);
  recipient->setColumnMinimumWidth(1, recipientWidth - 100);
  build.field(*recipient, 0, 0, 1, form.txtEMail);
  side->addLayout(recipient);
  addMessage(build, *side, form.txtMsg);
  auto* way = new QHBoxLayout;
  way->setSpacing(8);
  auto* label = new QLabel(QObject::tr("Send by:"));
  QComboBox* ways = build.combo(form.cmbMailType, *label);
  way->addWidget(label);
  way->addWidget(ways);
  way->addStretch();
  side->addLayout(way);
  side->addWidget(build.label(form.lblMailType));
  return side;
}

}  // namespace

QWidget* makeMailPackWindow(Bindings& bindings, FrmMailPack& form, const FileSystem& files,
                            QWidget* owner) {
  auto* window = new FormDialog(owner);
  new FormWindow(bindings, form, *window);
  FormBuilder build(bindings, form, files);

  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  auto* content = new QVBoxLayout;
  content->setContentsMargins(16, 14, 16, 14);
  content->setSpacing(14);
  auto* sides = new QHBoxLayout;
  sides->setSpacing(16);
  sides->addLayout(pictureSide(build, form), 2);
  sides->addLayout(mailSide(build, form), 3);
  content->addLayout(sides, 1);

  content->addLayout(build.foot({}, {&form.btnSend, &form.btnCancel}));
  column->addLayout(content, 1);
  column->addWidget(build.status(form.lblStatus));
  bindings.widgetOf(form.txtEMail)->setFocus();
  return window;
}

}  // namespace skv::ui::qt
