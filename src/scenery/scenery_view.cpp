#include "scenery/scenery_view.h"

#include "core/view.h"

namespace skv {

void mnuViewFSScenery_Click(App& app) {
  const bool entered = !app.frmMain.frameScenery.visible;
  showView(app, View::scenery);
  app.windows.yield();
  // What had the keyboard is out of sight.
  if (entered && app.frmMain.frameScenery.visible) app.windows.setFocus(app.frmMain.lstScenery);
}

}  // namespace skv
