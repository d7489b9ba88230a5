#include "ui/qt/form_makers.h"

#include <QtGlobal>

#include "ui/qt/dialogs.h"
#include "ui/qt/main_window.h"

namespace skv::ui::qt {

FormMakers::FormMakers() {
  add(makeMainWindow);
  add(makeSettingsWindow);
  add(makeDirSelectWindow);
  add(makeSplashWindow);
  add(makeSceneryOptionsWindow);
  add(makeShowPicWindow);
  add(makeMailPackWindow);
  add(makeIdentityWindow);
}

QWidget* FormMakers::make(Bindings& bindings, Form& form, const FileSystem& files,
                          QWidget* owner) const {
  const auto maker = makers_.find(typeid(form));
  if (maker == makers_.end())
    qFatal("No window is registered for the form \"%s\"", form.name().c_str());
  return maker->second(bindings, form, files, owner);
}

}  // namespace skv::ui::qt
