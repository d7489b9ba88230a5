// Boxes and dialogs, driven as a user drives them while the program waits for an answer.
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "ui/qt/window_fixture.h"

namespace skv::test {
namespace {

// The box that has the floor.
QDialog* activeBox() { return qobject_cast<QDialog*>(QApplication::activeModalWidget()); }

class BoxTest : public WindowTest {
 protected:
  // Does `act` with the next box that comes up.
  static void withBox(const std::function<void(QDialog&)>& act) {
    once([] { return activeBox() != nullptr; }, [act] { act(*activeBox()); });
  }
};

TEST_F(BoxTest, ABoxShowsItsTextAsItIsAndAnswers) {
  showMain();
  constexpr auto escape = QMessageBox::NoButton;
  const struct {
    ui::BoxButtons buttons;
    QMessageBox::StandardButton press;
    ui::Answer answer;
  } cases[] = {{ui::BoxButtons::yesNo, escape, ui::Answer::no},
               {ui::BoxButtons::yesNo, QMessageBox::Yes, ui::Answer::yes},
               {ui::BoxButtons::yesNo, QMessageBox::No, ui::Answer::no},
               {ui::BoxButtons::yesNoCancel, QMessageBox::No, ui::Answer::no},
               {ui::BoxButtons::yesNoCancel, escape, ui::Answer::cancel},
               {ui::BoxButtons::ok, escape, ui::Answer::ok},
               {ui::BoxButtons::ok, QMessageBox::Ok, ui::Answer::ok}};
  for (const auto& [buttons, press, answer] : cases) {
    withBox([key = press](QDialog& box) {
      auto& message = dynamic_cast<QMessageBox&>(box);
      EXPECT_EQ(message.textFormat(), Qt::PlainText);
      EXPECT_EQ(message.text(), "Delete <b>this</b> & that?\nSecond line");
      EXPECT_EQ(box.windowTitle(), "Reset");
      if (key == escape)
        QTest::keyClick(&box, Qt::Key_Escape);
      else
        QTest::mouseClick(message.button(key), Qt::LeftButton);
    });
    EXPECT_EQ(windows.messageBox({"Delete <b>this</b> & that?\r\nSecond line", ui::BoxIcon::warning,
                                  buttons, "Reset"}),
              answer)
        << press;
  }
}

TEST_F(BoxTest, TheStatedButtonIsTheDefault) {
  showMain();
  struct Case {
    ui::BoxIcon icon;
    ui::DefaultButton stated;
    ui::Answer enter;
  };
  for (const Case& c :
       {Case{ui::BoxIcon::question, ui::DefaultButton::byIcon, ui::Answer::yes},
        Case{ui::BoxIcon::warning, ui::DefaultButton::byIcon, ui::Answer::no},
        Case{ui::BoxIcon::warning, ui::DefaultButton::yes, ui::Answer::yes},
        Case{ui::BoxIcon::question, ui::DefaultButton::no, ui::Answer::no},
        Case{ui::BoxIcon::question, ui::DefaultButton::cancel, ui::Answer::cancel}}) {
    withBox([](QDialog& box) { QTest::keyClick(&box, Qt::Key_Return); });
    EXPECT_EQ(windows.messageBox({"Go on?", c.icon, ui::BoxButtons::yesNoCancel, "", c.stated}),
              c.enter);
  }
}

TEST_F(BoxTest, EveryFormHasAWindowAndAnUnknownOneStopsTheProgram) {
  for (const ui::Form* form : std::initializer_list<const ui::Form*>{
           &app.frmMain, &app.frmSettings, &app.frmDirSelect, &app.frmSplash, &app.frmSCOptions,
           &app.frmMailPack, &app.frmIdentity})
    EXPECT_TRUE(windows.makers().knows(*form)) << form->name();
  ui::Form stranger("frmStranger");
  EXPECT_DEATH(windows.show(stranger, nullptr), "frmStranger");
}

TEST_F(BoxTest, SettingsAreOpenedByKeyFilledAndAccepted) {
  showMain();
  inDialog(app.frmSettings, [] {
    auto* field = find<QLineEdit>("txtSceneryLib");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(find<QLineEdit>("txtPOPPassword")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(find<QLineEdit>("txtFSRoot")->text(), "C:\\FS\\");
    QTest::keyClicks(field, "C:\\SLib\\");
    click("btnOK");
  });
  QTest::keyClick(mainWindow(), Qt::Key_F2);
  settle();
  EXPECT_FALSE(app.frmSettings.visible);
  EXPECT_EQ(find<QWidget>("frmSettings"), nullptr);
  EXPECT_EQ(settings.values["General/SceneryLib"], "C:\\SLib\\");
}

TEST_F(BoxTest, ClosingTheMainWindowEndsAWaitForADialog) {
  showMain();
  QWidget* main = mainWindow();
  QTimer::singleShot(0, qApp, [main] { main->close(); });
  click("mnuFileSettings");
  EXPECT_TRUE(app.ending);
  EXPECT_FALSE(main->isVisible());
  EXPECT_EQ(settings.values["Window/MainState"], "0");
  EXPECT_EQ(settings.values["Window/MainWidth"], std::to_string(app.frmMain.width));
}

}  // namespace
}  // namespace skv::test
