#include "sample/sample_scenery.h"

#include "sample/sample_formats.h"
#include "sample/sample_pictures.h"

namespace skv::sample {
namespace {

struct Area {
  std::string title, local;
  bool active = true;
  std::string remote, textureId;
  std::vector<std::string> more;  // whole lines: Flatten, Exclude
};

// The simulator's own, from the bottom of the world upwards.
std::vector<Area> builtIn() {
  std::vector<Area> areas{
      {"Terrain Base", "SCENEDB\\TERRAIN", true, "", "1", {}},
      {"Land Classes", "SCENEDB\\LANDCLAS", true, "", "1", {}},
      {"Shorelines", "SCENEDB\\SHORE", true, "", "", {}},
      {"Vector Roads", "SCENEDB\\ROADS", true, "", "", {}},
      {"Navigation Aids", "Scenedb\\Navaids", true, "", "", {}},
      {"Default Airports", "SCENERY", true, "", "", {}},
      {"Objects on Disc 2", "CDDATA\\OBJ", false, "D:\\SCENEDB\\OBJECTS", "", {}},
  };
  for (const char* region : {"North Continent", "South Continent", "Eastern Isles", "Western Isles",
                             "Polar Caps", "Inland Sea", "Great Desert", "Tropics"}) {
    std::string code(region, 4);
    areas.push_back({std::string(region) + " Mesh", "SCENEDB\\" + code + "MESH", true, "", "", {}});
    areas.push_back({std::string(region) + " Cities",
                     "SCENEDB\\" + code + "CITY",
                     code != "Pola",
                     code == "Trop" ? "D:\\FSCD\\SCENEDB\\TROPCITY" : "",
                     "2",
                     {}});
  }
  return areas;
}

std::string threeDigits(std::size_t number) {
  const std::string digits = std::to_string(number);
  return std::string(3 - digits.size(), '0') + digits;
}

}  // namespace

std::vector<std::string> addonSceneries() {
  return {
      "Port Haven",     "Port Haven Night",  "Aldersund",        "Bramley Field", "Calder Ridge",
      "Cap Étoile",     "Dunmere",           "Eastlock",         "Fenwick Isle",  "Fjordholm",
      "Glasswater",     "Grand Mesa",        "Hallow Bay",       "Isla Pardo",    "Jarrah Station",
      "Kestrel Point",  "Lagoon Terminal",   "Moorhen Lake",     "Neue Größwald", "Norvik",
      "Oakhanger",      "Pallas Rock",       "Quarry Strip",     "Ravensby",      "Saltmarsh",
      "Skerry Islands", "Straaten Heliport", "Tamarind City",    "Tarn Valley",   "Upper Vale",
      "Vantage Hill",   "Westerly",          "Windmill Landing", "Yarrow Gate",   "Zephyr Coast"};
}

std::vector<LibraryScenery> librarySceneries() {
  return {{"Silver Strand", false, false},
          {"Glasswater", true, false},
          {"Mistral Point", false, true},
          {"Norvik", true, true}};
}

std::string sceneryLibrary() {
  std::string text;
  for (const LibraryScenery& scenery : librarySceneries())
    text += scenery.name + "\1" + "ADDON SCENERY\\" + scenery.name + std::string(7, '\1') + "\n";
  return windowsText(text);
}

std::string sceneryCfg() {
  std::vector<Area> areas = builtIn();
  std::size_t count = 0;
  for (const std::string& name : addonSceneries()) {
    Area area{name, "ADDON SCENERY\\" + name, ++count % 6 != 0, "", "", {}};
    if (count % 7 == 1)
      area.more = {"Flatten.0=" + std::to_string(20 * count) +
                       ",N48 20.00,W122 10.00,N48 20.00,W122 05.00,N48 15.00,W122 05.00,N48 15.00,"
                       "W122 10.00",
                   "Flatten.1=" + std::to_string(20 * count + 3) +
                       ",N48 21.50,W122 09.00,N48 21.50,W122 08.00,N48 20.75,W122 08.00"};
    if (count % 9 == 2)
      area.more.push_back(
          "Flatten=512,N47 10.00,W121 00.00,N47 10.00,W120 50.00,N47 05.00,W120 50.00");
    if (count % 5 == 3)
      area.more.push_back("Exclude=N52 31.10,E13 22.00,N52 30.20,E13 25.00,objects");
    if (count % 10 == 3)
      area.more.push_back("Exclude.0=N52 29.00,E13 20.00,N52 28.10,E13 23.00,vorndb");
    areas.push_back(std::move(area));
  }

  std::string text =
      "[General]\nTitle=World Scenery\nDescription=Sample scenery database\nCache_Size=30000\n"
      "Clean_On_Exit=FALSE\n";
  std::size_t number = 0, layer = 0;
  for (const Area& area : areas) {
    // Where somebody has removed an area by hand, a number is missing.
    number += ++layer % 23 == 0 ? 3 : 1;
    text += "\n[Area." + threeDigits(number) + "]\nTitle=" + area.title + "\nLocal=" + area.local +
            "\nRemote=" + area.remote + "\nActive=" + (area.active ? "TRUE" : "FALSE") +
            "\nRequired=" + (layer <= 6 ? "TRUE" : "FALSE") + "\nLayer=" + std::to_string(layer) +
            "\n";
    if (!area.textureId.empty()) text += "Texture_ID=" + area.textureId + "\n";
    for (const std::string& line : area.more) text += line + "\n";
  }
  return windowsText(text);
}

Files sceneryFiles(const std::string& name) {
  Random random(name);
  Files files;
  const std::uint32_t parts = 2 + random.below(4);
  for (std::uint32_t i = 0; i < parts; ++i) {
    static constexpr const char* kinds[] = {"airport", "objects", "exclude", "lights", "roads"};
    files.push_back({std::string("Scenery/") + kinds[i] + ".bgl",
                     sceneryBgl(3'000 + random.below(24'000), name + kinds[i])});
  }
  for (std::uint32_t i = 0; i < 1 + parts / 3; ++i)
    files.push_back(
        {"Texture/ground" + std::to_string(i + 1) + ".bmp", groundBmp(name + std::to_string(i))});
  for (const char* pictured : {"Zephyr Coast", "Port Haven", "Lake Harbour", "Silver Strand"})
    if (name == pictured) files.push_back({"SKVscrn.jpg", sceneryJpeg(name)});
  files.push_back({"readme.txt", windowsText(name + "\n\nCopy this folder to ADDON SCENERY and add "
                                                    "an area to the scenery library.\n")});
  return files;
}

}  // namespace skv::sample
