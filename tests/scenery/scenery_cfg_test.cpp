#include "scenery/scenery_cfg.h"

#include <gtest/gtest.h>

#include "scenery/scenery_list_files.h"
#include "scenery/scenery_row.h"
#include "support/text.h"

namespace skv {
namespace {

using test::coded;
using Texts = std::vector<std::string>;

const CodePage page;

std::string areaText(int number, const std::string& keys) {
  return "[Area." + sortLayer(std::to_string(number)) + "]\r\n" + keys + "\r\n";
}

Texts titles(const SceneryCfg& cfg) {
  Texts result;
  for (const SceneryArea& area : cfg.areas) result.push_back(area.Title);
  return result;
}

TEST(SceneryCfgTest, ReadsWhatASimulatorAndAnEditorWrite) {
  const SceneryCfg cfg = parseSceneryCfg(
      "; by hand\r\n[general]\nCACHE_SIZE = 12 MB\r\nOther=1\r\n"
      "[AREA.002]\r\ntitle=\" Alps \"\r\nLayer= 7.6\r\nLocal=Addon Scenery\\Alps\r\nactive=true\r\n"
      "Flatten.0=a\r\nFlatten.9=c\r\nFlatten.4=b\r\nExclude=x\x05y\r\nExclude.10=never\r\n"
      "[Area.003]\r\nLayer=3\r\n"
      "[Area.004]\r\nTitle=Sea\r\nActive=yes\r\nRemote=\\\\srv\\scenedb\\x\r\n",
      page);
  EXPECT_EQ(cfg.Cache_Size + cfg.Clean_On_Exit, "12 MB");
  ASSERT_EQ(titles(cfg), (Texts{" Alps ", "Sea"}));
  const SceneryArea& alps = cfg.areas[0];
  EXPECT_TRUE(alps.Active && !cfg.areas[1].Active);
  EXPECT_EQ(alps.Flatten, (Texts{"", "a", "b", "c"}));
  const SceneryRow row = rowOfArea(alps);
  EXPECT_EQ(row.Area + row.Layer + row.SortLayer, "0027.6008");
  EXPECT_EQ(row.Flatten + row.Exclude, coded(";a;b;cx y"));
  EXPECT_TRUE(!IsBuiltInArea(row) && IsBuiltInArea(rowOfArea(cfg.areas[1])));
  for (const auto& [folder, builtIn] :
       {std::pair("SceneDB\\x", true), {"scenery", true}, {"Scenery\\World", false}, {"", false}})
    EXPECT_EQ(IsBuiltInArea({.Folder = folder}), builtIn) << folder;
  for (const auto& [layer, key] : {std::pair("", "000"),
                                   {"x", "000"},
                                   {"12", "012"},
                                   {" 3x", "003"},
                                   {"1000", "1000"},
                                   {"1e400", "000"},
                                   {"-5", "-005"}})
    EXPECT_EQ(sortLayer(layer), key);
}

TEST(SceneryCfgTest, StopsAfterElevenMissingNumbersAndCountsWhatItDidNotReach) {
  const auto file = [](std::initializer_list<int> numbers) {
    std::string text;
    for (const int number : numbers) text += areaText(number, "Title=x");
    return text;
  };
  const auto read = [&](const std::string& text) {
    const SceneryCfg cfg = parseSceneryCfg(text, page);
    return std::pair(cfg.areas.size(), cfg.unreached);
  };
  EXPECT_EQ(read(file({1, 2, 13})), std::pair(3UL, 0));
  EXPECT_EQ(read(file({1, 2, 14, 999})), std::pair(2UL, 2));
  EXPECT_EQ(read(file({12})), std::pair(0UL, 1));
  EXPECT_EQ(read(file({1, 2, 2}) + areaText(1000, "Title=x") + "[Area.1]\r\nTitle=x\r\n" +
                 areaText(3, "Titel=x") + areaText(4, "") + "[Weather]\r\nTitle=x\r\n"),
            std::pair(2UL, 4))
      << "the second of a number, one above 999, one that is spelled otherwise, one without title";
  std::string all;
  for (int number = 1; number <= 999; ++number) all += areaText(number, "Title=x");
  EXPECT_EQ(read(all), std::pair(999UL, 0));
}

TEST(SceneryCfgTest, WritesAreasByTheirPositionAndLosesNoCharacter) {
  SceneryCfg cfg{.Cache_Size = "0", .Clean_On_Exit = "TRUE"};
  cfg.areas.push_back(
      {.Title = "Welt", .Local = "Scenery\\World", .Active = true, .Flatten = {"a", "b"}});
  cfg.areas.push_back({.Title = " \"Köln\"", .Local = "'x'", .Exclude = {"", "e"}});
  cfg.areas.push_back({.Title = "two\r\nlines]", .Remote = "\"q\"", .Texture_ID = "1\x1a"});
  const std::string bytes = sceneryCfgBytes(cfg, page);
  EXPECT_TRUE(
      bytes.starts_with("[General]\r\nCache_Size=0\r\nClean_On_Exit=TRUE\r\n"
                        "[Area.001]\r\nTitle=Welt\r\nLayer=1\r\nLocal=Scenery\\World\r\n"
                        "Active=TRUE\r\nRemote=\r\nTexture_ID=\r\n"
                        "Flatten=a\r\nFlatten.0=b\r\n[Area.002]\r\n"))
      << bytes;
  const SceneryCfg again = parseSceneryCfg(bytes, page);
  ASSERT_EQ(titles(again), (Texts{"Welt", " \"Köln\"", "two  lines]"}));
  EXPECT_EQ(again.areas[1].Local, "'x'");
  EXPECT_EQ(again.areas[1].Exclude, (Texts{"", "e"}));
  const SceneryArea& last = again.areas[2];
  EXPECT_EQ(last.Remote + last.Layer + last.Texture_ID, "\"q\"31\x1a");
  for (const SceneryArea& area : again.areas) {
    const SceneryArea back = areaOfRow(rowOfArea(area));
    EXPECT_EQ(std::pair(back.Flatten, back.Exclude), std::pair(area.Flatten, area.Exclude));
  }
}

TEST(SceneryListFilesTest, ReadBackWhateverTheFieldsHold) {
  const auto library =
      parseSceneryLibrary(coded("Foo|Scenery\\Foo\r\nA|B|1|2|3|4|5|6|7|more\n"), page);
  ASSERT_EQ(library.size(), 2U);
  EXPECT_EQ(library[0].Name + library[0].Folder + library[0].Area, "FooScenery\\Foo");
  EXPECT_EQ(library[1].Exclude, "7");
  EXPECT_EQ(sceneryLibraryBytes({{.Name = coded("a|b\r\n"), .Exclude = coded("c;d")}}, page),
            coded("a b  ||||||||c;d\r\n"));

  const SceneryCache cache{37654.4537152778, {{.Name = "Rom", .SortLayer = "002", .active = true}}};
  const std::string bytes = sceneryCacheBytes(cache, page);
  EXPECT_TRUE(bytes.starts_with(coded("37654.4537152778\r\nTrue|Rom||"))) << bytes;
  const SceneryCache read = parseSceneryCache(bytes, page);
  EXPECT_EQ(read.stamp, cache.stamp);
  ASSERT_EQ(read.rows.size(), 1U);
  EXPECT_TRUE(read.rows[0].active && read.rows[0].SortLayer == "002");
  // What a line cannot hold is read from the database each time.
  for (const char* name : {"a\x01", "Ж"})
    EXPECT_EQ(parseSceneryCache(sceneryCacheBytes({1.5, {{.Name = name}}}, page), page).stamp, 0);
}

}  // namespace
}  // namespace skv
