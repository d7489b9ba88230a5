#include "sample/sample_aircraft.h"

#include <algorithm>
#include <set>

#include "sample/sample_formats.h"
#include "sample/sample_pictures.h"

namespace skv::sample {
namespace {

std::string partFolder(const std::string& part, const std::string& suffix) {
  return suffix.empty() ? part : part + "." + suffix;
}

std::string withDescriptionBreaks(const std::string& story) {
  std::string line;
  for (const char c : story) line += c == '\n' ? std::string("\\n") : std::string(1, c);
  return line;
}

std::string gaugeLibrary(const Design& design) { return design.air + "_gauges"; }

std::string panelCfg(const Design& design, const std::string& suffix) {
  const std::string library = gaugeLibrary(design);
  std::string text =
      "// Panel of the " + design.name() + "\n[Window Titles]\nWindow00=Main Panel\n";
  if (suffix.empty()) text += "Window01=Radio Stack\n";
  text +=
      "\n[VIEW]\nVIEW_FORWARD_DIR=2.000, 0.000, 0.000\n\n[Window00]\nfile=panel.bmp\n"
      "size_mm=640,480\nposition=7\nvisible=1\nident=MAIN_PANEL\n";
  static constexpr const char* gauges[] = {"Airspeed",        "Attitude", "Altimeter",
                                           "TurnCoordinator", "Heading",  "VerticalSpeed"};
  int number = 0;
  for (const char* gauge : gauges) {
    const int column = number % 3, row = number / 3;
    text += "gauge" + std::string(number < 10 ? "0" : "") + std::to_string(number) + "=" + library +
            "!" + gauge + ", " + std::to_string(180 + column * 96) + "," +
            std::to_string(200 + row * 96) + ",88,88\n";
    ++number;
  }
  if (suffix.empty())
    text +=
        "\n[Window01]\nfile=radio.bmp\nsize_mm=156\nposition=8\nvisible=0\nident=RADIO_STACK_"
        "PANEL\n"
        "gauge00=" +
        library + "!Radio, 0,0\n";
  text += "\n[Color]\nDay=255,255,255\nNight=223,255,255\nLuminous=201,64,64\n";
  return windowsText(text);
}

std::string soundCfg(const Design& design) {
  std::string text = "; Sounds of the " + design.name() +
                     "\n[fltsim]\nproduct_code=SAMP\n\n"
                     "[SOUND_ENGINE]\nnumber_of_engines=2\n";
  for (const char* name : {"engine_idle", "engine_full", "flaps", "gear"})
    text += std::string("\n[") + name + "]\nfilename=" + name +
            "\nflags=0\nminimum_volume=7500\nmaximum_volume=10000\n";
  return windowsText(text);
}

Files panelFiles(const Design& design) {
  if (!design.panel.alias.empty())
    return {{"panel/panel.cfg", windowsText("[fltsim]\nalias=" + design.panel.alias + "\n")}};
  Files files;
  for (const std::string& suffix : design.panel.folders) {
    const std::string folder = partFolder("panel", suffix);
    files.push_back({folder + "/panel.cfg", panelCfg(design, suffix)});
    files.push_back({folder + "/panel.bmp", panelBmp(320, 240, design.folder + folder)});
    if (design.pictures != Pictures::none)
      files.push_back({folder + "/panel.jpg", panelJpeg(design.folder + folder)});
    if (suffix.empty())
      files.push_back({folder + "/radio.bmp", panelBmp(160, 120, design.folder + "radio")});
  }
  return files;
}

// Taken from the side by the author: one for the aircraft, or one of each of the first repaints.
Files pictureFiles(const Design& design) {
  constexpr std::size_t repaints = 2;
  Files files;
  for (std::size_t i = 0; i < std::min(repaints, design.variations.size()); ++i) {
    const Variation& it = design.variations[i];
    const std::string folder =
        design.pictures == Pictures::one ? "" : partFolder("texture", it.texture) + "/";
    files.push_back(
        {folder + design.air + ".jpg",
         aircraftJpeg({0xf0, 0xf0, 0xec}, paintOf(it.airline), design.folder + folder)});
    if (design.pictures == Pictures::one) break;
  }
  return files;
}

Files soundFiles(const Design& design) {
  if (!design.sound.alias.empty())
    return {{"sound/sound.cfg", windowsText("[fltsim]\nalias=" + design.sound.alias + "\n")}};
  Files files;
  for (const std::string& suffix : design.sound.folders) {
    const std::string folder = partFolder("sound", suffix);
    const std::string seed = design.folder + folder;
    files.push_back({folder + "/sound.cfg", soundCfg(design)});
    files.push_back({folder + "/engine_idle.wav", hummingWav(1.5, design.hertz, seed + "idle")});
    files.push_back(
        {folder + "/engine_full.wav", hummingWav(2, design.hertz * 2.2, seed + "full")});
    files.push_back({folder + "/flaps.wav", hummingWav(0.8, 210, seed + "flaps")});
    files.push_back({folder + "/gear.wav", hummingWav(1.1, 130, seed + "gear")});
  }
  return files;
}

}  // namespace

std::string Design::title(std::size_t variation) const {
  const Variation& it = variations[variation];
  return name() + " " + it.airline + " " + it.registration;
}

std::string aircraftCfg(const Design& design) {
  std::string text = "// " + design.name() + "\n// Made for this sample; not a real aircraft.\n\n";
  for (std::size_t i = 0; i < design.variations.size(); ++i) {
    const Variation& it = design.variations[i];
    const auto key = [&](const char* name, const std::string& value) {
      text += std::string(name) + "=" + value + "\n";
    };
    text += "[fltsim." + std::to_string(i) + "]\n";
    key("title", design.title(i));
    key("sim", design.air);
    key("model", it.model);
    key("panel", it.panel);
    key("sound", it.sound);
    key("texture", it.texture);
    key("kb_checklists", design.air + "_check");
    key("atc_id", it.registration);
    if (it.flight != 0) {
      key("atc_airline", it.airline);
      key("atc_flight_number", std::to_string(it.flight));
    }
    key("ui_manufacturer", design.maker);
    key("ui_type", design.type);
    key("ui_variation", it.airline);
    key("description", withDescriptionBreaks(design.story));
    text += "\n";
  }
  text +=
      "[General]\natc_type=" + design.maker + "\natc_model=" + design.air +
      "\neditable=1\nperformance=Cruise speed\\n" + std::to_string(90 + design.air.size() * 40) +
      " kts\nCategory=airplane\n\n"
      "; All weights in pounds, all distances in feet from the datum.\n"
      "[WEIGHT_AND_BALANCE]\nmax_gross_weight=" +
      std::to_string(2000 + design.story.size() * 100) +
      "\nempty_weight=" + std::to_string(1200 + design.story.size() * 60) +
      "\nreference_datum_position=3.6, 0.0, 0.0\nempty_weight_CG_position=-1.8, 0.0, 0.0\n"
      "station_load.0=\"170.0, -2.7, -1.2, 0.0\" ; pilot\n"
      "station_load.1=\"170.0, -2.7,  1.2, 0.0\"\n\n"
      "[flight_tuning]\ncruise_lift_scalar=1.0\nparasite_drag_scalar=1.0\n"
      "induced_drag_scalar=1.0\nelevator_effectiveness=1.0\naileron_effectiveness=1.0\n"
      "rudder_effectiveness=1.0\n\n"
      "[contact_points]\n// class, longitudinal, lateral, vertical, damage speed\n"
      "point.0=1, -2.2,  0.0, -4.1, 1600, 0, 0.5, 20.0, 0.25, 2.5, 0.7\n"
      "point.1=1, -7.6, -4.3, -4.0, 1600, 1, 0.5,  0.0, 0.25, 2.5, 0.7\n"
      "point.2=1, -7.6,  4.3, -4.0, 1600, 2, 0.5,  0.0, 0.25, 2.5, 0.7\n\n"
      "[lights]\nlight.0=3, -5.5, -17.9, 1.1, fx_navred\nlight.1=3, -5.5, 17.9, 1.1, fx_navgre\n"
      "light.2=2, -21.5, 0.0, 6.2, fx_beacon\n";
  return windowsText(text);
}

Files aircraftFiles(const Design& design) {
  Files files{
      {"aircraft.cfg", aircraftCfg(design)},
      {design.air + ".air", dynamicsAir(design.name(), design.folder)},
      {design.air + "_check.txt",
       windowsText("BEFORE START\n  Parking brake      SET\n  Fuel              CHECK\n\n"
                   "BEFORE TAKE-OFF\n  Trim               SET\n  Flaps              SET\n")}};
  std::set<std::string> models, textures;
  for (const Variation& it : design.variations) {
    models.insert(it.model);
    if (!textures.insert(it.texture).second) continue;
    const std::string folder = partFolder("texture", it.texture);
    const std::string seed = design.folder + folder;
    const Paint body{0xf0, 0xf0, 0xec};
    const Paint accent = paintOf(it.airline);
    // True colours for the fuselage, a palette for the parts, as most authors paint them.
    files.push_back({folder + "/" + design.air + "_fuse.bmp", liveryBmp(body, accent, 24, seed)});
    files.push_back({folder + "/" + design.air + "_wing.bmp", liveryBmp(accent, body, 8, seed)});
  }
  for (const std::string& suffix : models) {
    const std::string folder = partFolder("model", suffix);
    files.push_back({folder + "/model.cfg", windowsText("[models]\nnormal=" + design.air + "\n")});
    files.push_back(
        {folder + "/" + design.air + ".mdl",
         modelMdl(90'000 + Random(design.folder).below(60'000), design.folder + folder)});
  }
  append(files, panelFiles(design));
  append(files, soundFiles(design));
  if (design.pictures != Pictures::none) append(files, pictureFiles(design));
  return files;
}

Files sharedFiles(const Design& design) {
  const std::string seed = design.folder;
  return {{"Gauges/" + gaugeLibrary(design) + ".gau", gaugeGau(48'000, seed + "gauge")},
          {"Sound/" + design.air + "_callout.wav", hummingWav(0.6, 440, seed + "callout")},
          {"Texture/" + design.air + "_spin.bmp", groundBmp(seed + "spin")},
          {"Effects/fx_" + design.air + "_smoke.fx", effectFx(design.name() + " smoke")}};
}

}  // namespace skv::sample
