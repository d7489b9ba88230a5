// Settings with which the program opens on the sample, as if it had been set up before.
#pragma once

#include <string>

#include "platform/platform.h"
#include "sample/sample_simulator.h"

namespace skv::sample {

// `version` is the running one: another would bring the settings dialog. `now` is a day count: an
// update check that is a week old would run at once.
Outcome writeSettings(SettingsStore& store, const SampleSimulator& sample,
                      const std::string& version, double now);

}  // namespace skv::sample
