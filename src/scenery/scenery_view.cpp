#include "scenery/scenery_view.h"

#include "core/view.h"

namespace skv {

void mnuViewFSScenery_Click(App& app) {
  showView(app, View::scenery);
  app.windows.yield();
}

}  // namespace skv
