// Where a user's programs keep their things.
#pragma once

#include <string>

namespace skv {

// "" for a variable that is not set.
std::string environmentValue(const char* name);
std::string homeFolder();

// This program's folder below $XDG_CONFIG_HOME, $XDG_DATA_HOME and $XDG_CACHE_HOME, or where they
// default to. Not made by the call.
std::string configFolder();
std::string dataFolder();
std::string cacheFolder();

// Makes the folder and those above it, for this user alone. Answers whether it stands, belongs to
// the user and lets nobody else write.
bool makePrivateFolder(const std::string& folder);

}  // namespace skv
