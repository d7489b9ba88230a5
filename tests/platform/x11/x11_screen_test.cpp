// Windows of another program, on an X server of the test's own.
#include "platform/x11/x11_screen.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <QDeadlineTimer>
#include <QProcess>
#include <chrono>
#include <csignal>
#include <functional>
#include <map>
#include <thread>

#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_image.h"
#include "support/environment_variable.h"

namespace skv::test {

constexpr const char* title = "Microsoft Flight Simulator 2002";
constexpr std::uint32_t red = 0xff0000, blue = 0x0000ff, green = 0x00ff00;

bool comes(const std::function<bool()>& condition) {
  for (int i = 0; i < 2000 && !condition(); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return condition();
}

class X11ScreenTest : public ::testing::Test {
 protected:
  // Answers the first line that the program prints and that begins as told. It ends with the test,
  // whatever becomes of that.
  static QByteArray start(QProcess& program, const char* name, const QStringList& words,
                          const QByteArray& beginning = {}) {
    program.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    program.start(name, words);
    const QDeadlineTimer end(20000);
    QByteArray line;
    do {
      while (!program.canReadLine() &&
             program.waitForReadyRead(static_cast<int>(end.remainingTime())))
        ;
      line = program.readLine().trimmed();
    } while (!line.isEmpty() && !line.startsWith(beginning));
    return line;
  }
  void TearDown() override {
    for (QProcess* program : {&manager, &server}) {
      program->kill();
      program->waitForFinished();
    }
  }
  // A server of those options, and a window manager; a window that is opened before that has
  // started for good is overlooked.
  void serve(const QStringList& options = {}) {
    const QStringList size{"-displayfd", "1", "-screen", "0", "640x480x24"};
    const QByteArray number = start(server, "Xvfb", size + options);
    ASSERT_NE(number, "") << "Xvfb does not start";
    display.emplace("DISPLAY", ":" + number.toStdString());
    desk = X11Connection::open();
    ASSERT_TRUE(desk);
    const QStringList words{"--sm-disable", "--startup", "echo started"};
    ASSERT_EQ(start(manager, "openbox", words, "started"), "started");
  }
  void setProperty(xcb_window_t window, const char* name, xcb_atom_t type,
                   std::vector<std::uint32_t> values) {
    xcb_change_property(desk->get(), XCB_PROP_MODE_REPLACE, window, desk->atom(name), type, 32,
                        static_cast<std::uint32_t>(values.size()), values.data());
  }
  // The server paints it, so that nobody has to.
  xcb_window_t make(xcb_window_t parent, const std::string& name, xcb_rectangle_t place,
                    std::uint32_t colour) {
    const xcb_window_t window = xcb_generate_id(desk->get());
    xcb_create_window(desk->get(), XCB_COPY_FROM_PARENT, window, parent, place.x, place.y,
                      place.width, place.height, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL, &colour);
    xcb_change_property(desk->get(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(name.size()), name.data());
    return window;
  }
  // Red, and blue in its right half.
  xcb_window_t open(const std::string& name, xcb_rectangle_t place = {60, 60, 200, 150},
                    bool above = false) {
    const xcb_window_t window = make(desk->root(), name, place, above ? green : red);
    place = {static_cast<std::int16_t>(place.width / 2), 0, place.width, place.height};
    if (!above) xcb_map_window(desk->get(), make(window, "", place, blue));
    std::vector<std::uint32_t> hints(18);
    hints[0] = 1;  // the place is the user's
    setProperty(window, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS, hints);
    if (above)
      setProperty(window, "_NET_WM_STATE", XCB_ATOM_ATOM, {desk->atom("_NET_WM_STATE_ABOVE")});
    map(window);
    EXPECT_TRUE(comes([&] { return !desk->numbers(window, "_NET_FRAME_EXTENTS").empty(); }));
    return window;
  }
  void map(xcb_window_t window) {
    xcb_map_window(desk->get(), window);
    EXPECT_TRUE(comes([&] { return desk->isViewable(window); }));
  }
  void moveOff(xcb_window_t window) {
    const std::uint32_t left = 560;
    xcb_configure_window(desk->get(), window, XCB_CONFIG_WINDOW_X, &left);
    xcb_flush(desk->get());
  }
  void tell(xcb_window_t window, const char* what, std::uint32_t value) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = desk->atom(what);
    message.data.data32[0] = value;
    xcb_send_event(desk->get(), 0, desk->root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(desk->get());
  }
  void close(xcb_window_t window) {
    xcb_destroy_window(desk->get(), window);
    EXPECT_FALSE(desk->exists(window));
  }
  static std::uint32_t at(const Pixels& picture, int x, int y) {
    if (x >= picture.width || y >= picture.height) return 0;
    const auto* pixel =
        &picture.rows[picture.rowBytes() * static_cast<std::size_t>(y) + 3 * std::size_t(x)];
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
  }

  std::optional<Variable> display;
  QProcess server, manager;
  std::unique_ptr<X11Connection> desk;
  int waits = 0;
  X11Screen screen{[this] { ++waits; }, {.activation = 1500, .drawing = 60}};
};

TEST_F(X11ScreenTest, TakesTheWholeWindowWhereverItIs) {
  serve();
  tell(desk->root(), "_NET_NUMBER_OF_DESKTOPS", 3);
  const std::map<std::string, std::function<void(xcb_window_t)>> situations = {
      {"covered by a window that stays above",
       [&](xcb_window_t) {
         open("cover", {0, 0, 500, 400}, true);
       }},
      {"minimised", [&](xcb_window_t window) { tell(window, "WM_CHANGE_STATE", 3); }},
      {"on another desktop", [&](xcb_window_t window) { tell(window, "_NET_WM_DESKTOP", 2); }},
      {"half off the screen", [&](xcb_window_t window) { moveOff(window); }},
  };
  for (const auto& [what, arrange] : situations) {
    SCOPED_TRACE(what);
    const xcb_window_t window = open(title);
    arrange(window);
    const bool goes = what[0] == 'm' || what[0] == 'o';
    EXPECT_TRUE(comes([&] { return desk->isViewable(window) != goes; }));
    EXPECT_EQ(screen.activate("MICROSOFT flight", true).description(), "");
    EXPECT_EQ(desk->number(desk->root(), "_NET_ACTIVE_WINDOW"), window);
    const auto frame = desk->numbers(window, "_NET_FRAME_EXTENTS");
    ASSERT_EQ(frame.size(), 4U);
    const auto picture = screen.captureActiveWindow();
    ASSERT_TRUE(picture.ok()) << picture.outcome().description();
    EXPECT_EQ(picture.value().width, static_cast<int>(200 + frame[0] + frame[1]));
    EXPECT_EQ(picture.value().height, static_cast<int>(150 + frame[2] + frame[3]));
    const int left = static_cast<int>(frame[0]), top = static_cast<int>(frame[2]);
    EXPECT_EQ(at(picture.value(), left, top), red);
    EXPECT_EQ(at(picture.value(), left + 99, top + 149), red);
    EXPECT_EQ(at(picture.value(), left + 100, top), blue);
    EXPECT_EQ(at(picture.value(), left + 199, top + 149), blue);
    EXPECT_TRUE(comes([&] { return desk->number(desk->root(), "_NET_CURRENT_DESKTOP") == 0; }));
    close(window);
  }
  EXPECT_GT(waits, 0);
}

TEST_F(X11ScreenTest, ChoosesAmongTitlesAndMissesWhatHasGone) {
  serve();
  const auto widthOf = [&] {
    const auto picture = screen.captureActiveWindow();
    return picture.ok() ? picture.value().width / 100 * 100 : 0;
  };
  EXPECT_FALSE(screen.activate(title, true).ok());
  const xcb_window_t exact = open("microsoft FLIGHT simulator 2002", {0, 0, 100, 150});
  open(std::string(title) + " - notes", {30, 30, 200, 150});
  open(std::string("About ") + title, {60, 60, 300, 150});
  EXPECT_TRUE(screen.activate(title, true).ok());
  EXPECT_EQ(widthOf(), 100);
  const xcb_window_t upper = open(title, {90, 90, 400, 150});
  EXPECT_TRUE(screen.activate(title, true).ok());
  EXPECT_TRUE(screen.activate(title, false).ok());
  EXPECT_EQ(widthOf(), 400) << "the upper one of two";
  EXPECT_TRUE(screen.activate(title, true).ok());
  close(upper);
  EXPECT_EQ(widthOf(), 0) << "closed before the picture";
  close(exact);
  EXPECT_TRUE(screen.activate(title, true).ok());
  EXPECT_EQ(widthOf(), 200) << "the title begins with it";

  open("later");
  open("front");
  EXPECT_TRUE(screen.activate("front", true).ok());
  ::kill(static_cast<pid_t>(manager.processId()), SIGSTOP);
  waits = 0;
  EXPECT_FALSE(screen.activate("later", true).ok()) << "nobody brings it to the front";
  EXPECT_GT(waits, 10);
}

// As Wine keeps one: the desktop is a window, its windows lie in that, and no window manager knows
// them.
TEST_F(X11ScreenTest, TakesAWindowOfADesktopInAWindow) {
  serve();
  const xcb_window_t desktop = open("Wine desktop", {20, 20, 400, 300});
  open("in front", {0, 0, 600, 400});
  map(make(desktop, title, {30, 20, 100, 60}, green));
  map(make(desktop, "on top of it", {0, 20, 300, 60}, red));
  EXPECT_EQ(screen.activate(title, true).description(), "");
  EXPECT_EQ(desk->number(desk->root(), "_NET_ACTIVE_WINDOW"), desktop);
  const auto picture = screen.captureActiveWindow();
  ASSERT_TRUE(picture.ok()) << picture.outcome().description();
  EXPECT_EQ(picture.value().width, 100);
  EXPECT_EQ(picture.value().height, 60);
  EXPECT_EQ(at(picture.value(), 99, 59), green);
}

TEST_F(X11ScreenTest, TellsOfWhatIsOffTheScreenWhereNobodyKeepsIt) {
  serve({"-extension", "Composite"});
  const xcb_window_t window = open(title);
  EXPECT_TRUE(screen.activate(title, true).ok());
  EXPECT_TRUE(screen.captureActiveWindow().ok());
  moveOff(window);
  EXPECT_TRUE(screen.activate(title, true).ok());
  EXPECT_NE(screen.captureActiveWindow().outcome().description().find("off the screen"),
            std::string::npos);
}

TEST_F(X11ScreenTest, WithoutServer) {
  for (const char* nowhere : {"", ":4711", "no such display"}) {
    const Variable none("DISPLAY", nowhere);
    const Outcome outcome = screen.activate(title, true);
    EXPECT_NE(outcome.description().find("no X server"), std::string::npos);
    EXPECT_FALSE(screen.captureActiveWindow().ok());
  }
}

TEST(X11PixelsTest, ReadsWhatServersHold) {
  struct Case {
    X11PixelFormat format;
    std::vector<std::uint8_t> bytes;  // of 1 by 2 pixels: 0xff8040 and black
    std::uint32_t expected;
  } const cases[] = {
      {{32, 32, true, 0xff0000, 0xff00, 0xff}, {0x40, 0x80, 0xff, 9, 0, 0, 0, 9}, 0xff8040},
      {{32, 32, false, 0xff0000, 0xff00, 0xff}, {9, 0xff, 0x80, 0x40, 9, 0, 0, 0}, 0xff8040},
      {{24, 32, true, 0xff0000, 0xff00, 0xff}, {0x40, 0x80, 0xff, 7, 0, 0, 0, 7}, 0xff8040},
      {{16, 32, true, 0xf800, 0x7e0, 0x1f}, {0x08, 0xfc, 7, 7, 0, 0, 7, 7}, 0xff8242},
      {{32, 32, true, 0x3ff00000, 0xffc00, 0x3ff}, {0x00, 0x05, 0xf8, 0x3f, 0, 0, 0, 0}, 0xff8040},
  };
  for (const Case& each : cases) {
    const auto pixels = pixelsFrom(each.bytes, 1, 2, each.format);
    ASSERT_TRUE(pixels);
    EXPECT_EQ(pixels->rows[0] | pixels->rows[1] << 8 | pixels->rows[2] << 16, each.expected);
    EXPECT_EQ(pixels->rows[4] | pixels->rows[5] | pixels->rows[6], 0);
    EXPECT_FALSE(pixelsFrom(each.bytes, 1, 3, each.format));
  }
  EXPECT_FALSE(pixelsFrom(cases[0].bytes, 1, 1, {8, 32, true, 0, 0, 0}));
}

}  // namespace skv::test
