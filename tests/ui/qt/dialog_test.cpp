// Boxes and dialogs, driven as a user drives them while the program waits for an answer.
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "ui/qt/window_fixture.h"

namespace skv::test {

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
               {okCancel, escape, Answer::cancel, question},
               {okCancel, enter, Answer::ok, question},
               {okCancel, enter, Answer::cancel},
               {yesNo, enter, Answer::yes, question},
               {yesNo, enter, Answer::no, exclamation},
               {yesNo, enter, Answer::no, question, Stated::cancel},
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
  withBox([](QDialog& box) {
    auto& message = dynamic_cast<QMessageBox&>(box);
    EXPECT_EQ(message.button(QMessageBox::Yes)->text(), "Install");
    EXPECT_EQ(message.button(QMessageBox::No)->text(), "Skip");
    QTest::mouseClick(message.button(QMessageBox::Yes), Qt::LeftButton);
  });
  EXPECT_EQ(windows.messageBox({.text = "note", .buttons = yesNo, .yes = "Install", .no = "Skip"}),
            Answer::yes);
}

TEST_F(BoxTest, AnInputBoxAnswersWhatWasTypedAndNothingWhenItIsLeft) {
  showMain();
  for (const bool leave : {false, true}) {
    withBox([leave](QDialog& box) {
      EXPECT_EQ(box.windowTitle(), "Rename");
      auto* field = box.findChild<QLineEdit*>();
      EXPECT_EQ(field->selectedText(), "old <b>");
      QTest::keyClicks(field, "new");
      QTest::keyClick(field, leave ? Qt::Key_Escape : Qt::Key_Return);
    });
    const auto answer = windows.inputBox("Name:", "Rename", "old <b>");
    EXPECT_EQ(answer, leave ? std::nullopt : std::optional<std::string>("new"));
  }
}

TEST_F(BoxTest, AFileDialogAnswersTheFileAndCancelledWhenItIsLeft) {
  showMain();
  drive.write("C:\\Temp\\one.ZIP", "");
  drive.write("C:\\Temp\\one.txt", "");
  const auto ask = [&](const std::function<void(QFileDialog&)>& act) {
    withBox([act](QDialog& box) { act(dynamic_cast<QFileDialog&>(box)); });
    return windows.openFile({"C:\\Temp\\", "Zip Files|*.zip"});
  };
  const auto picked = ask([&](QFileDialog& dialog) {
    EXPECT_EQ(dialog.directory().absolutePath().toStdString(), drive.native("C:\\Temp"));
    EXPECT_EQ(dialog.nameFilters(), QStringList{"Zip Files (*.[zZ][iI][pP])"});
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText("one.ZIP");
    dialog.findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Open)->click();
  });
  ASSERT_TRUE(picked.ok());
  EXPECT_EQ(picked.value().path, "C:\\Temp\\one.ZIP");
  EXPECT_EQ(picked.value().initialFolder, "C:\\Temp\\");
  const auto left = ask([](QFileDialog& dialog) {
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText("one.ZIP");
    dialog.findChild<QDialogButtonBox*>("buttonBox")->button(QDialogButtonBox::Cancel)->click();
  });
  EXPECT_EQ(left.outcome().number(), err::cancelled);
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

TEST_F(BoxTest, ClosingTheMainWindowEndsAWaitForADialog) {
  showMain();
  QWidget* main = mainWindow();
  inDialog(app.frmSettings, [main] {
    EXPECT_EQ(find<QWidget>("txtFSRoot")->accessibleDescription(), "FS2002 found here");
    main->close();
  });
  QTest::keyClick(main, Qt::Key_F2);
  settle();
  EXPECT_TRUE(app.ending);
  EXPECT_FALSE(main->isVisible());
  EXPECT_EQ(settings.values["Window/MainState"], "0");
  EXPECT_EQ(settings.values["Window/MainWidth"], std::to_string(app.frmMain.width));
}

}  // namespace skv::test
