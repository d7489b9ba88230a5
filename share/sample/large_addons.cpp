// Add-ons by number and weight, for measuring.
#include <algorithm>
#include <stdexcept>

#include "sample/sample_aircraft.h"
#include "sample/sample_formats.h"
#include "sample/sample_simulator.h"
#include "sample/zip_file.h"

namespace skv::sample {
namespace {

std::string numbered(std::string_view name, std::size_t number, std::size_t digits) {
  const std::string text = std::to_string(number);
  return std::string(name) + std::string(digits > text.size() ? digits - text.size() : 0, '0') +
         text;
}

Design largeDesign() {
  return {"BigPlane", "Hartmoor", "H-1500 Caravan",
          "big",      70,         "Measured, not flown.",
          {{""}, ""}, {{""}, ""}, {{"Long Haul", "HM-1500", 1500, "000"}}};
}

// Repeats a drawn picture line by line with a shift, so that `size` bytes of it cost no drawing of
// a new one: it packs like a picture, which is what counts.
std::string pictureOf(std::size_t size, const std::string& drawn, std::size_t number) {
  std::string bytes;
  bytes.reserve(size);
  const std::size_t start = number * 7919 % drawn.size();
  while (bytes.size() < size) {
    const std::size_t from = (start + bytes.size()) % drawn.size();
    bytes.append(drawn, from, std::min(size - bytes.size(), drawn.size() - from));
  }
  return bytes;
}

std::vector<ZipEntrySource> largeAddon(std::size_t files, std::uint64_t bytes) {
  const Design design = largeDesign();
  Files fixed = below("BigPlane", aircraftFiles(design));
  append(fixed, sharedFiles(design));
  if (files <= fixed.size()) throw std::logic_error("too few files for a large add-on");

  std::vector<ZipEntrySource> all;
  std::uint64_t sum = 0;
  for (SampleFile& file : fixed) {
    sum += file.bytes.size();
    all.push_back({std::move(file.path), [content = std::move(file.bytes)] { return content; }});
  }
  const std::size_t rest = files - all.size();
  const std::uint64_t left = bytes > sum ? bytes - sum : 0;
  // Of ten files seven are pictures, one a binary, one a sound, one a text of a twentieth of the
  // usual size. The last picture takes what is missing.
  const auto each =
      static_cast<std::size_t>(static_cast<double>(left) / (0.905 * static_cast<double>(rest)));
  const std::string drawn = liveryBmp({0xf0, 0xf0, 0xec}, {0x1f, 0x4e, 0x9c}, 24, "large");
  std::uint64_t given = 0;
  for (std::size_t i = 0; i < rest; ++i) {
    const std::size_t kind = i + 1 == rest ? 0 : i % 10;
    std::size_t size = kind == 9 ? each / 20 : each;
    if (i + 1 == rest) size = given < left ? static_cast<std::size_t>(left - given) : 0;
    given += size;
    if (kind < 7)
      all.push_back(
          {"BigPlane/" + numbered("texture.", i / 60, 3) + "/" + numbered("part", i, 5) + ".bmp",
           [=] { return pictureOf(size, drawn, i); }});
    else if (kind == 7)
      all.push_back({"Gauges/" + numbered("gauge", i, 5) + ".gau",
                     [=] { return gaugeGau(size, "g" + std::to_string(i)); }});
    else if (kind == 8)
      all.push_back({"Sound/" + numbered("call", i, 5) + ".wav", [=] {
                       return hummingWav(static_cast<double>(size) / 11025.0, 90,
                                         "s" + std::to_string(i))
                           .substr(0, std::max<std::size_t>(size, 44));
                     }});
    else
      all.push_back({"BigPlane/" + numbered("docs/page", i, 5) + ".txt", [=] {
                       std::string text;
                       for (std::size_t line = i; text.size() < size; ++line)
                         text +=
                             "Line " + std::to_string(line) + " of the handbook, for reading.\r\n";
                       text.resize(size);
                       return text;
                     }});
  }
  return all;
}

// Of ten files four are sceneries and six are pictures, all of one size but the last.
std::vector<ZipEntrySource> largeScenery(std::size_t files, std::uint64_t bytes) {
  if (files == 0) throw std::logic_error("no files for a large scenery");
  const std::string drawn = groundBmp("large");
  const std::size_t each = bytes / files;
  std::vector<ZipEntrySource> all;
  for (std::size_t i = 0; i < files; ++i) {
    const std::size_t size = i + 1 == files ? bytes - each * (files - 1) : each;
    if (i % 10 < 4)
      all.push_back({"BigScenery/Scenery/" + numbered("part", i, 5) + ".bgl",
                     [=] { return sceneryBgl(size, "s" + std::to_string(i)); }});
    else
      all.push_back({"BigScenery/Texture/" + numbered("ground", i, 5) + ".bmp",
                     [=] { return pictureOf(size, drawn, i); }});
  }
  return all;
}

}  // namespace

void makeLargeTree(const std::filesystem::path& folder, std::size_t files, std::uint64_t bytes) {
  for (const ZipEntrySource& entry : largeAddon(files, bytes))
    writeFiles(folder, {{entry.path, entry.bytes()}});
}

void makeLargeZip(const std::filesystem::path& file, std::size_t files, std::uint64_t bytes) {
  writeZip(file, largeAddon(files, bytes), {.folderEntries = true});
}

void makeLargeSceneryZip(const std::filesystem::path& file, std::size_t files,
                         std::uint64_t bytes) {
  writeZip(file, largeScenery(files, bytes), {.folderEntries = true});
}

void makeAircraftFolders(const std::filesystem::path& folder, std::size_t count) {
  for (std::size_t i = 1; i <= count; ++i) {
    const std::string number = numbered("", i, 5);
    Design design = largeDesign();
    design.folder = "ac" + number;
    design.type = "H-" + number;
    writeFiles(folder / design.folder,
               {{"aircraft.cfg", aircraftCfg(design)},
                {"big.air", std::string(64, '\0')},
                {"model/model.cfg", "[models]\r\nnormal=big\r\n"},
                {"panel/panel.cfg", "[Window Titles]\r\nWindow00=Main\r\n"},
                {"sound/sound.cfg", "[fltsim]\r\nproduct_code=SAMP\r\n"},
                {"texture/fuse.bmp", std::string("BM", 2) + std::string(62, '\0')}});
  }
}

std::string aircraftList(const std::string& folder, std::size_t count) {
  std::string text;
  for (std::size_t i = 1; i <= count; ++i) {
    const std::string number = numbered("", i, 5);
    text.append("Hartmoor H-").append(number).append("\1");
    text.append(folder).append("ac").append(number).append("\\\r\n");
  }
  return text;
}

}  // namespace skv::sample
