#include "sample/sample_settings.h"

#include "base/text.h"

namespace skv::sample {

Outcome writeSettings(SettingsStore& store, const SampleSimulator& sample,
                      const std::string& version, double now) {
  const std::pair<const char*, std::string> values[] = {
      {"FSRoot", sample.FSRoot},         {"HangarDir", sample.HangarDir},
      {"PacksDir", sample.PacksDir},     {"PanelsDir", sample.PanelsDir},
      {"SceneryLib", sample.SceneryLib}, {"LastZIPDir", sample.Downloads},
      {"AppVersion", version},           {"LastACSelected", "1"},
      {"LastVersionCheck", decimal(now)}};
  for (const auto& [key, value] : values)
    if (Outcome outcome = store.write("General", key, value); !outcome.ok()) return outcome;
  return {};
}

}  // namespace skv::sample
