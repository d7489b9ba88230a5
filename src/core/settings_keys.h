// Every setting of the program, by section and key of the settings store. Values are strings;
// numbers are trimmed decimal text with a point.
#pragma once

#include <string>
#include <string_view>

#include "core/app.h"

namespace skv {

struct Setting {
  const char* section;
  const char* key;
};

namespace setting {
inline constexpr const char* general = "General";
inline constexpr const char* window = "Window";
inline constexpr const char* mail = "Mail";
inline constexpr const char* lists = "Lists";

inline constexpr Setting FSRoot{general, "FSRoot"};
inline constexpr Setting HangarDir{general, "HangarDir"};
inline constexpr Setting PacksDir{general, "PacksDir"};
// The folder that the Packages come from while they move to PacksDir, "" when all have arrived.
inline constexpr Setting PacksMoveFrom{general, "PacksMoveFrom"};
inline constexpr Setting PanelsDir{general, "PanelsDir"};
inline constexpr Setting SceneryLib{general, "SceneryLib"};
inline constexpr Setting SceneryPacksPath{general, "SceneryPacksPath"};  // made by hand alone
// The letter that was the program's own drive in the last run, "" for none.
inline constexpr Setting OwnDrive{general, "OwnDrive"};
inline constexpr Setting LastZIPDir{general, "LastZIPDir"};
inline constexpr Setting AppVersion{general, "AppVersion"};  // that ran the settings dialog last
inline constexpr Setting LastACSelected{general, "LastACSelected"};  // row of lstAircraft, from 1
// The folder of that aircraft, by which it is found when the rows have moved.
inline constexpr Setting LastACFolder{general, "LastACFolder"};
inline constexpr Setting CodePage{general, "CodePage"};  // of stored files; made by hand alone
inline constexpr Setting LastVersionCheck{general, "LastVersionCheck"};  // day count
inline constexpr Setting MainTop{window, "MainTop"};                     // twips, as the next two
inline constexpr Setting MainLeft{window, "MainLeft"};
inline constexpr Setting MainWidth{window, "MainWidth"};
inline constexpr Setting MainState{window, "MainState"};  // 0 normal, 1 minimised, 2 maximised
// The order of lstAircraft: a column from 0, "" for the file's own, and 0 ascending, 1 descending.
inline constexpr Setting SortKey{lists, "SortKey"};
inline constexpr Setting SortOrder{lists, "SortOrder"};
inline constexpr Setting POPUserName{mail, "POPUserName"};
inline constexpr Setting POPPassword{mail, "POPPassword"};
// Where a password is kept: "desktop", or "" for the setting itself.
inline constexpr Setting POPPasswordPlace{mail, "POPPasswordPlace"};
inline constexpr Setting POPHost{mail, "POPHost"};
inline constexpr Setting POPPort{mail, "POPPort"};
inline constexpr Setting SMTPHost{mail, "SMTPHost"};
inline constexpr Setting SMTPUserName{mail, "SMTPUserName"};
inline constexpr Setting SMTPPassword{mail, "SMTPPassword"};
inline constexpr Setting SMTPPasswordPlace{mail, "SMTPPasswordPlace"};
inline constexpr Setting OutlookFolder{mail, "OutlookFolder"};
inline constexpr Setting FirstName{mail, "FirstName"};
inline constexpr Setting LastName{mail, "LastName"};
inline constexpr Setting EMail{mail, "EMail"};
inline constexpr Setting MailType{mail, "Type"};  // index in cmbMailType
}  // namespace setting

inline constexpr int usualPOPPort = 110;

inline std::string readSetting(const App& app, const Setting& setting,
                               std::string_view fallback = {}) {
  return app.platform.settings.read(setting.section, setting.key, fallback);
}
// Where the outcome is passed over, the value holds for this run alone.
inline Outcome writeSetting(App& app, const Setting& setting, const std::string& value) {
  return app.platform.settings.write(setting.section, setting.key, value);
}

}  // namespace skv
