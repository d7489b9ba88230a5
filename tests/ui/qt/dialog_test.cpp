// Boxes and dialogs, driven as a user drives them while the program waits for an answer.
#include <QAccessible>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "ui/qt/window_fixture.h"

namespace skv::test {

// Every control below that the keyboard reaches has a name for a screen reader, and no part is a
// mere frame, which would be a window of its own to it.
void expectNames(const QAccessibleInterface& part, const std::string& place) {
  const QAccessible::State state = part.state();
  if (state.invisible) return;
  const std::string here = place + "/" + part.text(QAccessible::Name).toStdString();
  const bool labelled = !part.relations(QAccessible::Label).isEmpty();
  if (state.focusable) {
    EXPECT_TRUE(labelled || !here.ends_with('/'))
        << here << " " << part.object()->objectName().toStdString();
  }
  EXPECT_TRUE(labelled || part.role() != QAccessible::ComboBox) << here;
  EXPECT_NE(part.role(), QAccessible::Border) << here;
  for (int i = 0; i < part.childCount(); ++i)
    if (const QAccessibleInterface* child = part.child(i)) expectNames(*child, here);
}

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
  using enum ui::BoxButtons;
  using enum ui::BoxIcon;
  using Stated = ui::DefaultButton;
  using ui::Answer;
  constexpr auto enter = QMessageBox::NoButton, escape = QMessageBox::Close;
  const struct {
    ui::BoxButtons buttons;
    QMessageBox::StandardButton press;
    Answer answer;
    ui::BoxIcon icon = warning;
    Stated stated = Stated::byIcon;
  } cases[] = {{yesNo, escape, Answer::no},
               {yesNo, QMessageBox::Yes, Answer::yes},
               {yesNo, QMessageBox::No, Answer::no},
               {yesNoCancel, QMessageBox::No, Answer::no},
               {yesNoCancel, escape, Answer::cancel},
               {ok, escape, Answer::ok},
               {ok, QMessageBox::Ok, Answer::ok},
               {yesNoCancel, enter, Answer::yes, question},
               {yesNoCancel, enter, Answer::no},
               {yesNoCancel, enter, Answer::yes, warning, Stated::yes},
               {yesNoCancel, enter, Answer::no, question, Stated::no},
               {yesNoCancel, enter, Answer::cancel, question, Stated::cancel}};
  for (const auto& [buttons, press, answer, icon, stated] : cases) {
    withBox([key = press](QDialog& box) {
      auto& message = dynamic_cast<QMessageBox&>(box);
      EXPECT_EQ(message.textFormat(), Qt::PlainText);
      EXPECT_EQ(message.text(), "Delete <b>this</b> & that?\nSecond line");
      EXPECT_EQ(box.windowTitle(), "Reset");
      if (key == escape || key == enter)
        QTest::keyClick(&box, key == escape ? Qt::Key_Escape : Qt::Key_Return);
      else
        QTest::mouseClick(message.button(key), Qt::LeftButton);
    });
    EXPECT_EQ(windows.messageBox(
                  {"Delete <b>this</b> & that?\r\nSecond line", icon, buttons, "Reset", stated}),
              answer)
        << press;
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

TEST_F(BoxTest, ScreenReadersHaveNamesForAll) {
  showMain();
  fillAircraft(2);
  app.frmSCOptions.lstFlatten.add("", {});
  const auto expectAll = [](const ui::Form& form) {
    auto* window = find<QWidget>(form.name().c_str());
    ASSERT_NE(window, nullptr) << form.name();
    expectNames(*QAccessible::queryAccessibleInterface(window), form.name());
  };
  expectAll(app.frmMain);
  for (ui::Form* form : std::initializer_list<ui::Form*>{&app.frmDirSelect, &app.frmSCOptions,
                                                         &app.frmMailPack, &app.frmIdentity}) {
    windows.show(*form, &app.frmMain);
    settle();
    expectAll(*form);
    windows.unload(*form);
  }
  inDialog(app.frmSettings, [&] {
    app.frmSettings.lblIntro.visible = app.frmSettings.cmbFound.visible = true;
    settle();
    expectAll(app.frmSettings);
    EXPECT_EQ(find<QWidget>("txtFSRoot")->accessibleDescription(), "FS2002 found here");
  });
  click("mnuFileSettings");
  inDialog(app.frmSplash, [&] {
    expectAll(app.frmSplash);
    // Enter does what the window is for, and opens no web page.
    EXPECT_EQ(find<QWidget>("frmSplash")->focusWidget(), find<QWidget>("btnClose"));
    click("btnClose");
  });
  click("mnuHelpAbout");
}

TEST_F(BoxTest, TheSplashHidesBeforeWhateverAsks) {
  const auto splash = [] { return find<QWidget>("frmSplash"); };
  for (const bool early : {true, false}) {
    windows.show(app.frmSplash, nullptr);
    EXPECT_TRUE(early || QTest::qWaitFor([&] { return splash() != nullptr; }));
    withBox([&](QDialog& box) {
      EXPECT_EQ(splash(), nullptr);
      QTest::qWait(200);  // it would have come by now
      EXPECT_EQ(splash(), nullptr);
      box.reject();
    });
    windows.messageBox({"first"});
    EXPECT_FALSE(app.frmSplash.visible);
    windows.show(app.frmSplash, nullptr);
    EXPECT_TRUE(early || QTest::qWaitFor([&] { return splash() != nullptr; }));
    windows.show(app.frmIdentity, nullptr);
    settle();
    EXPECT_EQ(splash(), nullptr);
    windows.unload(app.frmIdentity);
    windows.unload(app.frmSplash);
  }
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

}  // namespace skv::test
