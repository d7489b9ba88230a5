// Which window each kind of form gets: the one place where a form meets its front-end.
#pragma once

#include <functional>
#include <typeindex>
#include <unordered_map>

#include "platform/file_system.h"
#include "ui/qt/bindings.h"

namespace skv::ui::qt {

class FormMakers {
 public:
  // With every form of the program.
  FormMakers();

  // The form's window, not shown yet; it follows the form from then on. A form that nobody has
  // registered ends the program: it would be waited for without being seen.
  QWidget* make(Bindings& bindings, Form& form, const FileSystem& files, QWidget* owner) const;
  bool knows(const Form& form) const { return makers_.contains(typeid(form)); }

 private:
  template <class Window, class SomeForm>
  void add(Window* (*maker)(Bindings&, SomeForm&, const FileSystem&, QWidget* owner)) {
    makers_[typeid(SomeForm)] = [maker](Bindings& bindings, Form& form, const FileSystem& files,
                                        QWidget* owner) -> QWidget* {
      return maker(bindings, static_cast<SomeForm&>(form), files, owner);
    };
  }

  using Maker = std::function<QWidget*(Bindings&, Form&, const FileSystem&, QWidget*)>;
  std::unordered_map<std::type_index, Maker> makers_;
};

}  // namespace skv::ui::qt
