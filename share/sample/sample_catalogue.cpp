// The table of invented aircraft; how they become files stands in sample_aircraft.cpp.
#include <stdexcept>
#include <utility>

#include "sample/sample_aircraft.h"

namespace skv::sample {
namespace {

const Part own{{""}, ""};

Part alias(std::string folder) { return {{}, std::move(folder)}; }

// Parts that only the installer's other archives bring along.
const Part none{};

// The others have none, as most old add-ons.
void takePictures(std::vector<Design>& all) {
  for (Design& design : all)
    for (const auto& [folder, pictures] : {std::pair("corvane_c410", Pictures::repaints),
                                           {"velmont_v90", Pictures::repaints},
                                           {"halden_h2", Pictures::one},
                                           {"pelham_p40", Pictures::one},
                                           {"skerry_s2", Pictures::one},
                                           {"ardent_a1", Pictures::repaints},
                                           {"pallas_p8", Pictures::one},
                                           {"calder_c22", Pictures::one}})
      if (design.folder == folder) design.pictures = pictures;
}

}  // namespace

std::vector<Design> simulatorAircraft() {
  std::vector<Design> all;
  all.push_back(
      {"corvane_c410",
       "Corvane",
       "C-410 Swiftlet",
       "c410",
       92,
       "Seventy seats, two turbofans and one galley.\n\nV1 118, VR 122, V2 129 at full load.\n"
       "Repaint it as often as you like; the factory did.",
       own,
       own,
       {{"Aurelis Air", "OA-CRA", 1208, "aurelis"},
        {"Bluefjord Airways", "BF-410", 77, "bluefjord"},
        {"Tamarind Pacific", "TP-SWL", 3310, "tamarind"},
        {"Lumière Régionale", "LR-ÉTÉ", 405, "lumiere"},
        {"Factory colours", "C-410P", 0, ""}}});
  all.push_back({"corvane_c410f",
                 "Corvane",
                 "C-410F Freighter",
                 "c410",
                 92,
                 "The Swiftlet with a door and without windows.",
                 alias("corvane_c410\\panel"),
                 alias("corvane_c410\\sound"),
                 {{"Parcelwing", "PW-001", 9001, "parcel"}, {"Night Mail", "NM-410", 12, "mail"}}});
  all.push_back({"halden_h2",
                 "Halden",
                 "H2 Trainer",
                 "h2",
                 55,
                 "Everybody's first hours. Stalls politely.",
                 {{"", "vfr"}, ""},
                 own,
                 {{"Field Club", "H-2001", 0, "club"},
                  {"Field Club", "H-2002", 0, "club", "vfr"},
                  {"Academy of Flight", "AC-17", 17, "academy", "vfr"}}});
  all.push_back({"halden_h4",
                 "Halden",
                 "H4 Tourer",
                 "h4",
                 61,
                 "Four seats, a hundred and sixty horses.\nLean above 5,000 feet.",
                 alias("halden_h2\\panel.vfr"),
                 alias("halden_h2\\sound"),
                 {{"Private", "H-4012", 0, ""}, {"Coastguard", "CG-4", 4, "coast"}}});
  all.push_back({"Orlec O7 Biplane",
                 "Orléc",
                 "O.7 Biplane",
                 "o7",
                 38,
                 "Two wings, one seat, no brakes. Drawn from a faded photograph of the café at the "
                 "aerodrome.",
                 own,
                 own,
                 {{"Flying Circus", "O-VII", 0, ""}, {"Poste Aérienne", "PA-7", 0, "poste"}}});
  all.push_back({"pelham_p40",
                 "Pelham",
                 "P.40 Conveyor",
                 "p40",
                 44,
                 "Ramp down, doors off, everything goes in.",
                 {{""}, ""},
                 {{"", "heavy"}, ""},
                 {{"Transport Squadron 1", "P4001", 401, "ts", "", "heavy"},
                  {"Transport Squadron 2", "P4002", 402, "ts"},
                  {"Transport Squadron 3", "P4003", 403, "ts"},
                  {"Transport Squadron 4", "P4004", 404, "ts"},
                  {"Transport Squadron 5", "P4005", 405, "ts"},
                  {"Relief Flight", "P4006", 406, "relief"},
                  {"Relief Flight", "P4007", 407, "relief"},
                  {"Relief Flight", "P4008", 408, "relief"},
                  {"Arctic Survey", "P4009", 409, "arctic"},
                  {"Arctic Survey", "P4010", 410, "arctic"},
                  {"Water Bomber", "P4011", 411, "fire"},
                  {"Prototype", "P4000", 0, ""}}});
  all.push_back({"quillon_q5",
                 "Quillon",
                 "Q5 Meridian",
                 "q5",
                 110,
                 "Six passengers and their briefcases, Mach 0.83.",
                 own,
                 own,
                 {{"Boardroom Charter", "Q-5BC", 551, "board"},
                  {"Tamarind Executive", "TP-Q5", 552, "tamarind"},
                  {"Demonstrator", "Q-5", 0, ""}}});
  all.push_back(
      {"skerry_s2",
       "Drayton",
       "Skerry 2",
       "s2",
       50,
       "Ten islands before breakfast.",
       own,
       alias("corvane_c410\\sound"),
       {{"Bluefjord Commuter", "BF-S2", 21, "bluefjord"}, {"Isle Link", "IL-202", 202, "isle"}}});
  all.push_back({"tern_t3",
                 "Tern",
                 "T-3 Amphibian",
                 "t3",
                 58,
                 "Wheels UP for water landings.\nWheels UP.\nUP.",
                 own,
                 own,
                 {{"Lake Patrol", "LP-3", 3, "lake"}, {"Private", "T-3XX", 0, ""}}});
  all.push_back({"thermik_g1",
                 "Straaten",
                 "G1 Thermik",
                 "g1",
                 20,
                 "Glide ratio 34. Größte Streckensegler ihrer Klasse.",
                 alias("Panels\\glass"),
                 none,
                 {{"Segelflugverein Übersee", "D-1002", 0, ""}}});
  all.push_back(
      {"velmont_v90",
       "Velmont",
       "V-90 Grand",
       "v90",
       80,
       "Four engines, two decks, three hundred and ninety seats.\n\nDo not slam the doors.",
       {{"", "cargo"}, ""},
       own,
       {{"Aurelis Air", "OA-VEL", 1, "aurelis"},
        {"Tamarind Pacific", "TP-V90", 88, "tamarind"},
        {"Bluefjord Airways", "BF-900", 90, "bluefjord"},
        {"Parcelwing", "PW-090", 9090, "parcel", "cargo", "", "cargo"},
        {"State Flight", "VIP-1", 1, "state"},
        {"Factory colours", "V-90P", 0, ""}}});
  all.push_back({"zephyrine_z11",
                 "Zephyrine",
                 "Z11 Libellule",
                 "z11",
                 27,
                 "Two seats under a bubble.",
                 own,
                 own,
                 {{"Rescue", "Z-11R", 112, "rescue"}, {"Vineyard Tours", "Z-11V", 0, ""}}});
  takePictures(all);
  return all;
}

std::vector<Design> hangarAircraft() {
  std::vector<Design> all;
  all.push_back({"ardent_a1",
                 "Ardent",
                 "A1 Racer",
                 "a1",
                 95,
                 "Sixteen cylinders, one landing light.",
                 own,
                 own,
                 {{"Number 7", "A-1007", 7, ""}, {"Number 12", "A-1012", 12, "twelve"}}});
  all.push_back({"moorhen_m6",
                 "Moorhen",
                 "M6 Flying Boat",
                 "m6",
                 36,
                 "The mail goes by water.",
                 own,
                 own,
                 {{"Lagoon Lines", "LL-6", 61, ""}}});
  all.push_back({"pallas_p8",
                 "Pallas",
                 "P8 Courier",
                 "p8",
                 66,
                 "Fast, thirsty, loved.",
                 own,
                 own,
                 {{"Night Mail", "NM-8", 8, ""}, {"Private", "P-8001", 0, "private"}}});
  takePictures(all);
  return all;
}

namespace {

std::vector<Design> makeDownloaded() {
  std::vector<Design> all;
  const auto add = [&](const char* folder, const char* maker, const char* type, const Part& panel,
                       std::vector<Variation> variations) {
    all.push_back({folder, maker, type, "flight", 70, "Freeware. Share it as it is.", panel, own,
                   std::move(variations)});
  };
  add("brightwell_b3", "Brightwell", "B3", own, {{"Sunday Flyers", "BW-3", 0, ""}});
  add("calder_c22", "Calder", "C-22 Harrow", own,
      {{"Aurelis Air", "OA-C22", 220, ""}, {"Isle Link", "IL-22", 22, "isle"}});
  add("dunmore_d9", "Dunmore", "D9 Packhorse", own, {{"Parcelwing", "PW-D9", 9, ""}});
  add("everard_e4", "Everard", "E.4", own, {{"Transport Squadron 9", "E4004", 4, ""}});
  add("farrow_f12", "Farrow", "F-12 Kittiwake", own, {{"Lagoon Lines", "LL-12", 12, ""}});
  add("gannet_g5", "Gannet", "G5", none, {{"Coastguard", "CG-5", 5, ""}});
  add("isolde_i2", "Isolde", "I-2", own, {{"Größwald Luftdienst", "GW-2", 2, ""}});
  add("jarrah_j7", "Jarrah", "J7 Outback", alias("halden_h2\\panel"),
      {{"Station Run", "J-7", 7, ""}});
  add("kestrel_k1", "Kestrelline", "K1", own, {{"Private", "K-1", 0, ""}});
  add("lorimer_l3", "Lorimer", "L3", own, {{"Academy of Flight", "AC-L3", 3, ""}});
  add("lorimer_l4", "Lorimer", "L4", own, {{"Academy of Flight", "AC-L4", 4, ""}});
  takePictures(all);
  return all;
}

}  // namespace

Design downloadedAircraft(std::string_view folder) {
  for (Design& design : makeDownloaded())
    if (design.folder == folder) return design;
  throw std::logic_error("no such aircraft: " + std::string(folder));
}

}  // namespace skv::sample
