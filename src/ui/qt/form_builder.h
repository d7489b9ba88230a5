// Makes the widgets of a form's controls, each bound to its control.
#pragma once

#include <QString>
#include <functional>
#include <utility>
#include <vector>

#include "platform/file_system.h"
#include "ui/qt/bindings.h"

class QComboBox;
class QFormLayout;
class QGridLayout;
class QHBoxLayout;
class QLabel;
class QPushButton;
class QRadioButton;
class QTabBar;

namespace skv::ui::qt {

class CaptionLabel;
class FramePanel;
class ListTree;
class PictureView;

class FormBuilder {
 public:
  FormBuilder(Bindings& bindings, Form& form, const FileSystem& files)
      : bindings_(bindings), form_(form), files_(files) {}

  QPushButton* button(Button& button, const QString& accessibleName = {});
  // The last line of a dialog: what else it offers at the left, how it is left at the right.
  // `byEnter`: which one of these Enter presses.
  QHBoxLayout* foot(std::initializer_list<Button*> left, std::initializer_list<Button*> right,
                    const Button* byEnter = nullptr);
  QRadioButton* option(OptionButton& option);
  CaptionLabel* label(Label& label);
  // Its label is what screen readers call it: Qt gives a combo box no name of its own.
  QComboBox* combo(ComboBox& box, QLabel& label);
  QWidget* textBox(TextBox& box);
  QTabBar* tabs(TabStrip& strip, const QString& accessibleName);
  FramePanel* frame(Frame& frame, bool card);
  ListTree* list(ListView& list, const QString& accessibleName, const QString& hint = {});
  PictureView* picture(Image& image, const QString& accessibleName, const QString& drawingName);
  QWidget* status(StatusLine& line);
  QWidget* folders(FolderTree& tree, const QString& accessibleName);

  // A box with its label before it.
  void field(QFormLayout& layout, TextBox& box);
  void field(QGridLayout& grid, int row, int column, int columns, TextBox& box);

  // Makes a part that nobody sees yet after the window has shown itself for the first time.
  void later(std::function<void()> make) { later_.push_back(std::move(make)); }
  std::vector<std::function<void()>> takeLater() { return std::exchange(later_, {}); }

  Bindings& bindings() { return bindings_; }
  Form& form() { return form_; }

 private:
  QLabel* labelOf(TextBox& box, QWidget* field);

  Bindings& bindings_;
  Form& form_;
  const FileSystem& files_;
  std::vector<std::function<void()>> later_;
};

}  // namespace skv::ui::qt
