#include "ui/views.h"

#include "support/program_fixture.h"

namespace skv {
namespace {

class ViewsTest : public test::ProgramTest {
 protected:
  ui::FrmMain& form = app.frmMain;
};

TEST_F(ViewsTest, TabsShowOneFrame) {
  form.tabAddon.click(2);
  EXPECT_TRUE(form.frameSound.visible && !form.frameInfo.visible && !form.framePanel.visible);
  form.tabAddon.click(3);
  EXPECT_TRUE(form.frameSound.visible);
  form.tabACInfo.click(1);
  EXPECT_TRUE(form.frameACInfoATC.visible && !form.frameACInfoGeneral.visible);
}

TEST_F(ViewsTest, TheSplitBarStopsBeforeAListGetsTooSmall) {
  using enum ui::MouseButton;
  form.sceneryHeight = 3000;
  form.libraryHeight = 2000;
  auto& bar = form.lblSepBar;
  const struct {
    const char* what;
    std::function<void()> user;
    int scenery;
  } steps[] = {{"not dragging", [&] { bar.mouseMove(left, 100); }, 3000},
               {"the other button", [&] { bar.mouseDown(right, 0); }, 3000},
               {"not dragging", [&] { bar.mouseMove(left, 100); }, 3000},
               {"pressed", [&] { bar.mouseDown(left, 0); }, 3000},
               {"dragged", [&] { bar.mouseMove(left, 1000); }, 4000},
               {"the library is too small", [&] { bar.mouseMove(left, 1); }, 4000},
               {"the scenery is too small", [&] { bar.mouseMove(left, -3001); }, 4000},
               {"released", [&] { bar.mouseUp(left, 0); }, 4000},
               {"not dragging", [&] { bar.mouseMove(left, -100); }, 4000}};
  for (const auto& [what, user, scenery] : steps) {
    user();
    EXPECT_EQ(form.sceneryHeight, scenery) << what;
    EXPECT_EQ(form.libraryHeight, 5000 - scenery) << what;
  }
}

TEST_F(ViewsTest, HeightFollowsWidth) {
  const int height = form.height;
  form.width = 5000;
  Form_Resize(app);
  EXPECT_EQ(form.width, 5000) << "nothing happens before start-up";
  app.LayoutAspect = 1.5;
  struct {
    ui::Form::State state;
    int width, expectedWidth, expectedHeight;
  } const cases[] = {{ui::Form::State::normal, 15000, 15000, 10000},
                     {ui::Form::State::normal, 9000, 10335, 6890},
                     {ui::Form::State::maximised, 20000, 20000, height},
                     {ui::Form::State::maximised, 9000, 10335, 6890},
                     {ui::Form::State::minimised, 9000, 9000, height}};
  for (const auto& c : cases) {
    form.windowState = c.state;
    form.width = c.width;
    form.height = height;
    Form_Resize(app);
    EXPECT_EQ(form.width, c.expectedWidth);
    EXPECT_EQ(form.height, c.expectedHeight);
  }
}

}  // namespace
}  // namespace skv
