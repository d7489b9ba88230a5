#include "ui/qt/form_builder.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>

#include "ui/qt/caption_label.h"
#include "ui/qt/folder_view.h"
#include "ui/qt/frame_panel.h"
#include "ui/qt/list_tree.h"
#include "ui/qt/picture_view.h"
#include "ui/qt/status_view.h"
#include "ui/qt/text.h"
#include "ui/qt/text_fields.h"

namespace skv::ui::qt {

namespace {

// The one that has the keyboard is what Enter presses, also in a window without a default button
// and before the default button of a dialog.
class PressedByEnter : public QPushButton {
 protected:
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
      click();
    else
      QPushButton::keyPressEvent(event);
  }
};

void describe(QWidget& widget, const Control& control) {
  widget.setToolTip(captioned(control.hint));
  widget.setAccessibleDescription(captioned(control.hint));
}

}  // namespace

QPushButton* FormBuilder::button(Button& button, const QString& accessibleName) {
  auto* widget = new PressedByEnter;
  widget->setAutoDefault(false);
  if (button.caption == "...") widget->setProperty("small", true);
  auto* binding = new Binding(bindings_, form_, button, widget, [widget, &button, accessibleName] {
    widget->setText(captioned(button.caption));
    widget->setAccessibleName(accessibleName.isEmpty() ? spoken(button.caption) : accessibleName);
    // A command without an operation is in its place, and says so.
    widget->setEnabled(button.enabled && button.click != nullptr);
    widget->setVisible(button.visible);
  });
  QObject::connect(widget, &QPushButton::clicked, binding, [widget, binding, &button] {
    // By Enter or by its letter the button is pressed from within a field, which is left first.
    widget->setFocus(Qt::OtherFocusReason);
    binding->fire(button.click);
  });
  return widget;
}

QHBoxLayout* FormBuilder::foot(std::initializer_list<Button*> left,
                               std::initializer_list<Button*> right, const Button* byEnter) {
  constexpr int leastWidth = 90;
  auto* foot = new QHBoxLayout;
  foot->setSpacing(8);
  for (Button* command : left) foot->addWidget(button(*command));
  foot->addStretch();
  for (Button* command : right) {
    QPushButton* widget = button(*command);
    widget->setMinimumWidth(leastWidth);
    widget->setDefault(command == byEnter);
    foot->addWidget(widget);
  }
  return foot;
}

QRadioButton* FormBuilder::option(OptionButton& option) {
  auto* widget = new QRadioButton;
  auto* binding = new Binding(bindings_, form_, option, widget, [widget, &option] {
    widget->setText(captioned(option.caption));
    widget->setAccessibleName(spoken(option.caption));
    widget->setChecked(option.value);
    widget->setEnabled(option.enabled);
    widget->setVisible(option.visible);
  });
  // The one that loses the mark to its neighbour changes as well; only the chosen one was clicked.
  QObject::connect(widget, &QRadioButton::toggled, binding, [binding, &option](bool chosen) {
    if (binding->accepts()) option.value = chosen;
  });
  QObject::connect(widget, &QRadioButton::clicked, binding,
                   [binding, &option] { binding->fire(option.click); });
  return widget;
}

CaptionLabel* FormBuilder::label(Label& label) {
  auto* widget = new CaptionLabel;
  auto* binding = new Binding(bindings_, form_, label, widget, [widget, &label] {
    widget->setCaption(captioned(label.caption), label.colour);
    widget->setClickable(label.click != nullptr);
    widget->setEnabled(label.enabled);
    widget->setVisible(label.visible);
  });
  widget->onClick = [binding, &label] { binding->fire(label.click); };
  return widget;
}

QComboBox* FormBuilder::combo(ComboBox& box, QLabel& label) {
  auto* widget = new QComboBox;
  label.setBuddy(widget);
  describe(*widget, box);
  auto* binding = new Binding(bindings_, form_, box, widget, [widget, &box] {
    const QSignalBlocker quiet(widget);
    QStringList items;
    for (const std::string& item : box.items.get()) items << captioned(item);
    QStringList old;
    for (int i = 0; i < widget->count(); ++i) old << widget->itemText(i);
    if (items != old) {
      widget->clear();
      widget->addItems(items);
    }
    widget->setCurrentIndex(box.listIndex);
    widget->setEnabled(box.enabled);
    widget->setVisible(box.visible);
  });
  QObject::connect(widget, &QComboBox::activated, binding, [binding, &box](int index) {
    if (!binding->accepts()) return;
    box.listIndex = index;
    binding->fire(box.click);
  });
  return widget;
}

QWidget* FormBuilder::textBox(TextBox& box) {
  QWidget* widget = nullptr;
  if (box.multiLine)
    widget = new TextArea(bindings_, form_, box);
  else
    widget = new TextLine(bindings_, form_, box);
  describe(*widget, box);
  return widget;
}

QTabBar* FormBuilder::tabs(TabStrip& strip, const QString& accessibleName) {
  auto* widget = new QTabBar;
  widget->setAccessibleName(accessibleName);
  widget->setExpanding(false);
  auto* binding = new Binding(bindings_, form_, strip, widget, [widget, &strip] {
    const QSignalBlocker quiet(widget);
    const std::vector<std::string>& captions = strip.tabs;
    const int count = static_cast<int>(captions.size());
    while (widget->count() > count) widget->removeTab(widget->count() - 1);
    while (widget->count() < count) widget->addTab({});
    for (int i = 0; i < count; ++i)
      widget->setTabText(i, captioned(captions[static_cast<std::size_t>(i)]));
    widget->setCurrentIndex(strip.value);
    widget->setEnabled(strip.enabled);
    widget->setVisible(strip.visible);
  });
  QObject::connect(widget, &QTabBar::currentChanged, binding, [binding, &strip](int index) {
    if (!binding->accepts() || index < 0) return;
    strip.value = index;
    binding->fire(strip.click, index);
  });
  return widget;
}

FramePanel* FormBuilder::frame(Frame& frame, bool card) {
  return new FramePanel(bindings_, form_, frame, card);
}

ListTree* FormBuilder::list(ListView& list, const QString& accessibleName, const QString& hint) {
  auto* widget = new ListTree(bindings_, form_, list, accessibleName);
  widget->setHint(hint);
  return widget;
}

PictureView* FormBuilder::picture(Image& image, const QString& accessibleName,
                                  const QString& drawingName) {
  return new PictureView(bindings_, form_, image, files_, accessibleName, drawingName);
}

QWidget* FormBuilder::status(StatusLine& line) { return new StatusView(bindings_, form_, line); }

QWidget* FormBuilder::folders(FolderTree& tree, const QString& accessibleName) {
  return new FolderView(bindings_, form_, tree, files_, accessibleName);
}

QLabel* FormBuilder::labelOf(TextBox& box, QWidget* field) {
  auto* label = new QLabel(captioned(box.label));
  label->setTextFormat(Qt::PlainText);
  label->setBuddy(field);
  return label;
}

void FormBuilder::field(QFormLayout& layout, TextBox& box) {
  QWidget* widget = textBox(box);
  layout.addRow(labelOf(box, widget), widget);
}

void FormBuilder::field(QGridLayout& grid, int row, int column, int columns, TextBox& box) {
  QWidget* widget = textBox(box);
  grid.addWidget(labelOf(box, widget), row, column);
  grid.addWidget(widget, row, column + 1, 1, columns);
}

}  // namespace skv::ui::qt
