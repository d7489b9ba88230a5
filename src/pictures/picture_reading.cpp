#include "pictures/picture_reading.h"

#include <chrono>
#include <future>
#include <optional>
#include <stop_token>
#include <system_error>

#include "core/long_operation.h"

namespace skv {

namespace {

using namespace std::chrono_literals;

// Most pictures are there before: the window does not flicker for them.
constexpr auto unnoticed = 80ms;
constexpr auto betweenYields = 10ms;

}  // namespace

Result<Pixels> readPicture(App& app, const std::string& path, int longestSide) {
  const PictureReader& reader = app.platform.pictures;
  const LongOperation busy(app);
  std::stop_source stop;
  std::future<Result<Pixels>> reading;
  try {
    reading = std::async(std::launch::async,
                         [&] { return reader.read(path, longestSide, stop.get_token()); });
  } catch (const std::system_error&) {
    return reader.read(path, longestSide);  // no thread to be had
  }
  for (auto pause = unnoticed + 0ms; reading.wait_for(pause) != std::future_status::ready;
       pause = betweenYields) {
    app.windows.yield();
    if (app.ending) stop.request_stop();
  }
  return reading.get();
}

}  // namespace skv
