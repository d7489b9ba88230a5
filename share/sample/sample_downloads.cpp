#include "sample/sample_downloads.h"

#include <algorithm>

#include "base/text.h"
#include "sample/sample_aircraft.h"
#include "sample/sample_formats.h"
#include "sample/sample_scenery.h"
#include "sample/zip_file.h"

namespace skv::sample {
namespace {

Files without(Files files, std::string_view start) {
  std::erase_if(files, [&](const SampleFile& file) { return file.path.starts_with(start); });
  return files;
}

Files joined(Files files, Files more) {
  append(files, std::move(more));
  return files;
}

Files upperCased(Files files) {
  for (SampleFile& file : files) file.path = upper(file.path);
  return files;
}

Files readme(const Design& design) {
  return {{"readme.txt", windowsText(design.name() + "\n\nUnzip it and put everything where it "
                                                     "belongs.\nHave fun!\n")}};
}

// What a Macintosh puts beside every file: its resource fork, hidden by a leading dot.
Files macintosh(const Files& files) {
  Files all{{".DS_Store", std::string("\0\0\0\1Bud1", 8) + std::string(500, '\0')}};
  for (const SampleFile& file : files) {
    all.push_back(file);
    const auto slash = file.path.rfind('/') + 1;  // 0 when there is none
    all.push_back({"__MACOSX/" + file.path.substr(0, slash) + "._" + file.path.substr(slash),
                   std::string("\0\5\26\7\0\2\0\0Mac OS X        ", 24) + std::string(58, '\0')});
  }
  return all;
}

class Writer {
 public:
  explicit Writer(std::filesystem::path folder) : folder_(std::move(folder)) {}
  void add(const std::string& file, const std::string& layout, const std::string& title,
           const Files& files, const ZipStyle& style = {}) {
    writeZip(folder_ / file, files, style);
    all_.push_back({file, layout, title});
  }
  std::vector<Download> take() { return std::move(all_); }

 private:
  std::filesystem::path folder_;
  std::vector<Download> all_;
};

void addPlainLayouts(Writer& out) {
  const Design b3 = downloadedAircraft("brightwell_b3");
  out.add("brightwell_b3.zip", "aircraft.cfg in the root", b3.title(0),
          joined(aircraftFiles(b3), readme(b3)));

  const Design c22 = downloadedAircraft("calder_c22");
  out.add("C22_HARROW.ZIP", "one folder around it, shared folders beside it", c22.title(0),
          joined(joined(below("C22", aircraftFiles(c22)), sharedFiles(c22)), readme(c22)),
          {.folderEntries = true});

  const Design d9 = downloadedAircraft("dunmore_d9");
  out.add("dunmore_d9.zip", "a Package", d9.title(0),
          joined(below("Aircraft", aircraftFiles(d9)), below("Main", sharedFiles(d9))),
          {.backslashes = true, .level = 9});

  const Design e4 = downloadedAircraft("everard_e4");
  out.add("everard.zip", "the simulator's own tree, from FS2002 downwards", e4.title(0),
          joined(below("FS2002/Aircraft/everard_e4", aircraftFiles(e4)),
                 below("FS2002", sharedFiles(e4))),
          {.folderEntries = true});

  const Design g5 = downloadedAircraft("gannet_g5");
  const Design panels = downloadedAircraft("brightwell_b3");
  Files panel;
  for (SampleFile& file : aircraftFiles(panels))
    if (file.path.starts_with("panel/"))
      panel.push_back({"Panel/" + file.path.substr(6), std::move(file.bytes)});
  out.add("gannet_g5.zip", "an aircraft without a panel, the panel in a folder beside it",
          g5.title(0), joined(below("gannet_g5", aircraftFiles(g5)), panel));
}

void addNestedArchives(Writer& out) {
  const Design f12 = downloadedAircraft("farrow_f12");
  const Files shared = sharedFiles(f12);
  const Files effects(shared.end() - 1, shared.end()), gauges(shared.begin(), shared.begin() + 1);
  Files nested{{"aircraft.zip", zipBytes(aircraftFiles(f12))},
               {"more/GAUGES.ZIP", zipBytes(gauges, {.backslashes = true})},
               {"more/effects.zip", zipBytes(effects)}};
  out.add("farrow_f12_full.zip", "archives in the archive: the aircraft, its gauges, its effects",
          f12.title(0), joined(nested, readme(f12)), {.level = 0});

  const Design k1 = downloadedAircraft("kestrel_k1");
  out.add("k1_installer.zip", "an archive in an archive in the archive: found by nobody", "",
          {{"disk1.zip", zipBytes({{"k1.zip", zipBytes(aircraftFiles(k1))}})},
           {"INSTALL.TXT", windowsText("Run the installer of disk 2.\n")}});
}

void addOddSpellings(Writer& out) {
  const Design j7 = downloadedAircraft("jarrah_j7");
  out.add("JARRAH.ZIP", "everything in capitals, backslashes, a panel that is an alias",
          j7.title(0), upperCased(below("j7", aircraftFiles(j7))), {.backslashes = true});

  const Design i2 = downloadedAircraft("isolde_i2");
  out.add("isolde_cp437.zip", "umlauts as DOS packers wrote them", i2.title(0),
          below("Isolde Größwald", aircraftFiles(i2)), {.names = ZipStyle::Names::codePage437});
  out.add("isolde_win1252.zip", "umlauts as Windows packers wrote them", i2.title(0),
          joined(below("Isolde Größwald", aircraftFiles(i2)), {{"Lies mich – zuerst.txt", "x"}}),
          {.names = ZipStyle::Names::windows1252});
  out.add("isolde_utf8.zip", "umlauts and more in UTF-8", i2.title(0),
          joined(below("Isolde Größwald", aircraftFiles(i2)),
                 {{"Прочти меня.txt", "x"}, {"説明.txt", "x"}}));

  const Design b3 = downloadedAircraft("brightwell_b3");
  out.add("brightwell_mac.zip", "packed on a Macintosh, with __MACOSX", b3.title(0),
          macintosh(below("Brightwell B3", aircraftFiles(b3))), {.folderEntries = true});
}

void addTraps(Writer& out) {
  const Design l3 = downloadedAircraft("lorimer_l3"), l4 = downloadedAircraft("lorimer_l4");
  out.add("lorimer_pair.zip", "two aircraft, of which the first is taken", l3.title(0),
          joined(below("Aircraft/L3", aircraftFiles(l3)), below("Aircraft/L4", aircraftFiles(l4))));

  const Design k1 = downloadedAircraft("kestrel_k1");
  Files gaugeInPanel = aircraftFiles(k1);
  gaugeInPanel.push_back({"panel/k1.gau", gaugeGau(20'000, "k1")});
  out.add("k1_gauge_in_panel.zip", "a gauge among the panel's files, which go with it", k1.title(0),
          gaugeInPanel);
  Files gaugeInRoot = aircraftFiles(k1);
  gaugeInRoot.push_back({"k1.gau", gaugeGau(20'000, "k1")});
  out.add("k1_gauge_in_root.zip", "a gauge beside aircraft.cfg: everything counts as gauges", "",
          gaugeInRoot);
  out.add("k1_loose_sounds.zip", "sounds without a sound.cfg", k1.title(0),
          without(below("K1", aircraftFiles(k1)), "K1/sound/sound.cfg"));

  out.add(
      "repaint_mytexture.zip", "an aircraft with a folder of textures beside it", l4.title(0),
      joined(below("L4", aircraftFiles(l4)), {{"mytexture/l4_tail.bmp", groundBmp("tail")},
                                              {"texture.night/l4_tail.bmp", groundBmp("night")}}));
  out.add("textures_only.zip", "no aircraft at all", "",
          {{"texture.blue/c410_fuse.bmp", liveryBmp({230, 230, 240}, {20, 40, 160}, 24, "blue")},
           {"readme.txt", windowsText("Add these lines to your aircraft.cfg.\n")}});
  out.add("scenery_aldersund.zip", "a scenery, no aircraft", "",
          below("Aldersund", sceneryFiles("Aldersund")));
}

}  // namespace

std::vector<Download> writeDownloads(const std::filesystem::path& folder) {
  Writer out(folder);
  addPlainLayouts(out);
  addNestedArchives(out);
  addOddSpellings(out);
  addTraps(out);
  return out.take();
}

}  // namespace skv::sample
