#include "core/standing_addon.h"

#include "support/program_fixture.h"

namespace skv::test {

class StandingAddonTest : public ProgramTest {
 protected:
  Standing of(AddonType type, const std::string& package = "") {
    const StandingAddon found = standingAddon(app, type, folder + "\\", package);
    EXPECT_EQ(found.why.ok(), found.standing != Standing::unknown);
    return found.standing;
  }
  const std::string folder = "C:\\Lib\\Alps";
};

TEST_F(StandingAddonTest, AFolderIsJudgedByWhatItHolds) {
  using enum Standing;
  const struct {
    std::string file;  // below the folder; "" none, and then the folder is empty
    Standing asAircraft, asScenery;
  } cases[] = {
      {"", notWhole, notWhole},
      {"readme.txt", notWhole, notWhole},
      {"AIRCRAFT.CFG", whole, notWhole},
      {"aircraft.cfg\\folder.txt", notWhole, notWhole},
      {"old\\aircraft.cfg", unknown, notWhole},
      {"texture\\t.bmp", notWhole, whole},
      {"scenery\\x.dat", notWhole, whole},
      {"scenery\\sub\\x.dat", notWhole, notWhole},
      {"deep\\er\\A.BGL", notWhole, whole},
  };
  EXPECT_EQ(of(AddonType::aircraft), absent);
  EXPECT_EQ(of(AddonType::scenery), absent);
  for (const auto& [file, asAircraft, asScenery] : cases) {
    SCOPED_TRACE(file);
    drive.clear(folder);
    if (!file.empty()) drive.write(folder + "\\" + file, "x");
    app.FoundDir = "before";
    EXPECT_EQ(of(AddonType::aircraft), asAircraft);
    EXPECT_EQ(of(AddonType::scenery), asScenery);
    EXPECT_EQ(app.FoundDir + form.lblStatus.caption.get(), "before");
    // A look that fails is no answer.
    for (const auto& [type, answer] :
         {std::pair(AddonType::aircraft, asAircraft), {AddonType::scenery, asScenery}})
      for (int look = 1;; ++look) {
        files.failReadAt(look, err::deviceIo);
        const Standing seen = standingAddon(app, type, folder).standing;
        if (!files.heal()) break;
        EXPECT_TRUE(seen == answer || seen == unknown) << look;
      }
  }
  drive.clear(folder);
  EXPECT_EQ(of(AddonType::scenery, "C:\\Packs\\Alps.zip"), notWhole);
  drive.write("C:\\Packs\\Alps.zip", "the scenery is thinned out");
  EXPECT_EQ(of(AddonType::scenery, "C:\\Packs\\Alps.zip"), whole);

  drive.remove(folder);
  drive.write("C:\\Elsewhere\\aircraft.cfg", "x");
  drive.link(folder, drive.native("C:\\Elsewhere"));
  EXPECT_EQ(of(AddonType::aircraft), unknown);
  drive.remove(folder);
  drive.write(folder, "a file");
  EXPECT_EQ(of(AddonType::aircraft), unknown);
}

}  // namespace skv::test
