#include "base/text.h"
#include "core/walktree.h"

namespace skv {

namespace {

// Most descriptions end in the path that the call was about.
std::string withoutPath(const std::string& description, const std::string& path) {
  const std::string end = upper(": " + path);
  if (path.empty() || !upper(description).ends_with(end)) return description;
  return description.substr(0, description.size() - end.size());
}

}  // namespace

WalkReport& WalkReport::operator+=(const WalkReport& next) {
  if (failed == 0 && next.failed > 0) {
    first = next.first;
    where = next.where;
  }
  done += next.done;
  failed += next.failed;
  left += next.left;
  stopped = stopped || next.stopped;
  return *this;
}

bool WalkReport::note(const Outcome& step, const std::string& path) {
  if (step.ok()) return true;
  if (failed++ == 0) {
    first = step;
    where = path;
  }
  return false;
}

bool tellWalk(App& app, const WalkReport& report, const char* what) {
  if (report.failed > 0)
    app.windows.messageBox({std::to_string(report.failed) + " of " +
                                std::to_string(report.done + report.failed) +
                                " files could not be " + what + ", the first:\r\n" + report.where +
                                "\r\n" + withoutPath(report.first.description(), report.where),
                            ui::BoxIcon::exclamation});
  else if (report.stopped)
    app.frmMain.lblStatus.notice =
        "Stopped: " + std::to_string(report.done) + " files were " + what + ", the rest was not";
  return report.complete();
}

}  // namespace skv
