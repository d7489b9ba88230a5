// Pictures of what the sample holds, drawn: JPEG files as their authors would have taken them.
#pragma once

#include <string>
#include <string_view>

#include "sample/sample_formats.h"

namespace skv::sample {

// 320 x 200: an aircraft over the country, from the side. `seed` chooses the weather.
std::string aircraftJpeg(Paint body, Paint accent, std::string_view seed);
// 320 x 200: a board with dials.
std::string panelJpeg(std::string_view seed);
// 320 x 200: hills behind a field with a runway.
std::string sceneryJpeg(std::string_view seed);

}  // namespace skv::sample
