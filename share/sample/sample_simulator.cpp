#include "sample/sample_simulator.h"

#include <stdexcept>

#include "sample/sample_aircraft.h"
#include "sample/sample_files.h"
#include "sample/sample_formats.h"
#include "sample/sample_pictures.h"
#include "sample/sample_scenery.h"
#include "sample/zip_file.h"

namespace skv::sample {
namespace {

namespace fs = std::filesystem;

// What a list file holds, in its text form.
class ListFile {
 public:
  void add(const std::string& name, const std::string& folder) {
    text_ += name + '\1' + folder + "\n";
  }
  // Panels and sounds that are no aliases become rows of their own lists.
  static void addParts(ListFile& list, const Design& design, const std::string& folder,
                       const std::string& kind, const Part& part) {
    for (const std::string& suffix : part.folders)
      list.add(design.name() + (suffix.empty() ? "" : " (" + suffix + ")"),
               folder + kind + (suffix.empty() ? "" : "." + suffix) + "\\");
  }
  std::string bytes() const { return windowsText(text_); }

 private:
  std::string text_;
};

struct Lists {
  ListFile aircraft, panels, sounds;

  void add(const Design& design, const std::string& aircraftRoot) {
    const std::string folder = aircraftRoot + design.folder + "\\";
    aircraft.add(design.name(), folder);
    ListFile::addParts(panels, design, folder, "panel", design.panel);
    ListFile::addParts(sounds, design, folder, "sound", design.sound);
  }
  void write(const fs::path& folder) const {
    writeFiles(folder, {{"SKV_AC.lst", aircraft.bytes()},
                        {"SKV_PN.lst", panels.bytes()},
                        {"SKV_SN.lst", sounds.bytes()}});
  }
};

Files packageFiles(const Design& design) {
  Files files = below("Aircraft", aircraftFiles(design));
  append(files, below("Main", sharedFiles(design)));
  return files;
}

void writePackage(const fs::path& simulator, const Design& design) {
  writeZip(simulator / "SKV-Packages" / (design.folder + ".zip"), packageFiles(design),
           {.backslashes = true, .level = 9});
}

// An add-on in the Hangar; one that is packed away keeps only its texts, and its folders.
void writeToHangar(const fs::path& simulator, const Design& design, bool packedAway) {
  const fs::path hangar = simulator / "SKV-Hangar";
  Files files = below("Aircraft/" + design.folder, aircraftFiles(design));
  append(files, below("Main/" + design.folder, sharedFiles(design)));
  for (const SampleFile& file : files) fs::create_directories((hangar / file.path).parent_path());
  if (packedAway)
    std::erase_if(files, [](const SampleFile& file) {
      return !file.path.ends_with(".cfg") && !file.path.ends_with(".txt") &&
             !file.path.ends_with(".jpg");
    });
  writeFiles(hangar, files);
}

// The scenery library; of a scenery that is packed away it keeps the texts, and the folders.
void writeLibrary(const fs::path& simulator) {
  const fs::path library = simulator / "SKV-Hangar/SceneryLib";
  for (const LibraryScenery& scenery : librarySceneries()) {
    const Files files = sceneryFiles(scenery.name);
    const Files main{
        {"Texture/quay_" + scenery.name.substr(0, 3) + ".bmp", groundBmp(scenery.name)}};
    if (scenery.packed) {
      Files package = below("Scenery", files);
      append(package, below("Main", main));
      writeZip(simulator / "SKV-Packages/Scenery" / (scenery.name + ".zip"), package);
    }
    Files kept = below("Scenery/" + scenery.name, files);
    append(kept, below("Main/" + scenery.name, main));
    for (const SampleFile& file : kept) fs::create_directories((library / file.path).parent_path());
    if (scenery.packed)
      std::erase_if(kept, [](const SampleFile& file) { return !file.path.ends_with(".txt"); });
    writeFiles(library, kept);
  }
  writeFiles(library, {{"SKV_SL.lst", sceneryLibrary()}});
}

void writeSharedFolders(const fs::path& simulator) {
  Files files;
  for (const char* name : {"basic_six", "radios", "throttles", "autopilot", "clock"})
    files.push_back({std::string("Gauges/") + name + ".gau", gaugeGau(60'000, name)});
  for (const char* name : {"stall", "touchdown", "wind", "marker"})
    files.push_back({std::string("Sound/") + name + ".wav", hummingWav(1, 180, name)});
  for (const char* name : {"asphalt", "grass", "water", "city", "night"})
    files.push_back({std::string("Texture/") + name + ".bmp", groundBmp(name)});
  for (const char* name : {"fx_navred", "fx_navgre", "fx_beacon", "fx_smoke"})
    files.push_back({std::string("Effects/") + name + ".fx", effectFx(name)});
  files.push_back({"fs2002.cfg", windowsText("[Main]\nSample=1\n")});
  files.push_back({"Scenery.cfg", sceneryCfg()});
  writeFiles(simulator, files);
}

// The central panels folder, with a panel that aircraft point at.
Files centralPanels() {
  return {{"Panels/glass/panel.cfg",
           windowsText("[Window Titles]\nWindow00=Glass\n\n[Window00]\nfile=panel.bmp\nposition=7\n"
                       "visible=1\ngauge00=basic_six!Attitude, 40,40\n")},
          {"Panels/glass/panel.bmp", panelBmp(320, 240, "glass")},
          {"Panels/glass/glass.jpg", panelJpeg("glass")}};
}

}  // namespace

void makeDrives(const fs::path& folder) {
  fs::create_directories(folder / "dosdevices");
  fs::create_directories(folder / "drive_c");
  const auto link = [&](const char* target, const char* drive) {
    const fs::path name = folder / "dosdevices" / drive;
    if (!fs::is_symlink(name)) fs::create_directory_symlink(target, name);
  };
  link("../drive_c", "c:");
  link("/", "z:");
}

SampleSimulator makeSample(const fs::path& folder) {
  makeDrives(folder);
  SampleSimulator sample;
  sample.drives = folder / "dosdevices";
  sample.driveC = folder / "drive_c";
  sample.simulator = sample.driveC / "Program Files/Microsoft Games/FS2002";
  sample.downloads = sample.driveC / "Downloads";
  sample.FSRoot = "C:\\Program Files\\Microsoft Games\\FS2002\\";
  sample.HangarDir = sample.FSRoot + "SKV-Hangar\\";
  sample.PacksDir = sample.FSRoot + "SKV-Packages\\";
  sample.PanelsDir = sample.FSRoot + "aircraft\\Panels\\";
  sample.SceneryLib = sample.HangarDir + "SceneryLib\\";
  sample.Downloads = "C:\\Downloads\\";

  writeSharedFolders(sample.simulator);
  for (const std::string& name : addonSceneries())
    writeFiles(sample.simulator / "ADDON SCENERY" / name, sceneryFiles(name));
  writeLibrary(sample.simulator);
  writeFiles(sample.simulator / "aircraft", centralPanels());
  writeFiles(
      sample.driveC / "Program/ACPics",
      {{"T-3 Amphibian.jpg", aircraftJpeg({0xf0, 0xf0, 0xec}, paintOf("Tern"), "specimen")}});

  const std::string simulatorRoot = sample.FSRoot + "aircraft\\";
  const std::string hangarRoot = sample.HangarDir + "aircraft\\";
  Lists simulatorLists, hangarLists;
  for (const Design& design : simulatorAircraft()) {
    writeFiles(sample.simulator / "aircraft" / design.folder, aircraftFiles(design));
    writeFiles(sample.simulator, sharedFiles(design));
    simulatorLists.add(design, simulatorRoot);
    // Simulator and Package; simulator and Hangar; all three.
    const bool packed = design.folder == "skerry_s2" || design.folder == "halden_h4";
    const bool parked = design.folder == "quillon_q5" || design.folder == "halden_h4";
    if (packed) writePackage(sample.simulator, design);
    if (parked) {
      writeToHangar(sample.simulator, design, packed);
      hangarLists.add(design, hangarRoot);
    }
  }
  for (const Design& design : hangarAircraft()) {
    const bool packed =
        design.folder == "pallas_p8";  // Hangar and Package; the others Hangar alone
    writeToHangar(sample.simulator, design, packed);
    if (packed) writePackage(sample.simulator, design);
    hangarLists.add(design, hangarRoot);
  }
  // Package alone: the folder was deleted, the Package kept. And nowhere: all was deleted.
  const Design onlyPacked = downloadedAircraft("kestrel_k1");
  writePackage(sample.simulator, onlyPacked);
  simulatorLists.aircraft.add(onlyPacked.name(), simulatorRoot + onlyPacked.folder + "\\");
  simulatorLists.aircraft.add("Yarrow Y1 (lost)", simulatorRoot + "yarrow_y1\\");
  simulatorLists.panels.add("Glass", sample.PanelsDir + "glass\\");
  simulatorLists.write(sample.simulator);
  hangarLists.write(sample.simulator / "SKV-Hangar");

  sample.archives = writeDownloads(sample.downloads);
  return sample;
}

}  // namespace skv::sample
