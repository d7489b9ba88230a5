// Boxes and dialogs, driven as a user drives them while the program waits for an answer.
#include <QAbstractButton>
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QTreeWidget>

#include "core/long_operation.h"
#include "ui/dialogs/dir_select.h"
#include "ui/qt/window_fixture.h"
#include "ui/settings.h"

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

TEST_F(BoxTest, ABoxOverADisabledWindowTakesInputWithANormalPointer) {
  showMain();
  LongOperation busy(app);
  Qt::CursorShape pointer = Qt::WaitCursor;
  withBox([&](QDialog& box) {
    const QCursor* cursor = QGuiApplication::overrideCursor();
    pointer = cursor ? cursor->shape() : Qt::ArrowCursor;
    const auto buttons = box.findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 1);
    QTest::mouseClick(buttons.front(), Qt::LeftButton);
  });
  windows.messageBox({"Done"});
  EXPECT_EQ(pointer, Qt::ArrowCursor);
  ASSERT_NE(QGuiApplication::overrideCursor(), nullptr);
  EXPECT_EQ(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
}

TEST_F(BoxTest, ABoxFitsItsScreenAndIsCopiedWhole) {
  showMain();
  const std::string path = "C:\\" + std::string(400, 'x') + "\\aircraft.cfg";
  std::string list;
  for (int line = 0; line < 500; ++line) list += "Line " + std::to_string(line) + "\r\n";
  for (const ui::Box& told : {ui::Box{.text = "Cannot read " + path}, ui::Box{.text = list},
                              ui::Box{.text = "Not copied:", .details = list}}) {
    QSize size;
    withBox([&](QDialog& box) {
      size = box.size();
      QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
      QTest::keyClick(&box, Qt::Key_Return);
    });
    windows.messageBox(told);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    EXPECT_EQ(size.boundedTo(screen), size) << size.width() << " x " << size.height();
    const std::string copied = QGuiApplication::clipboard()->text().toStdString();
    EXPECT_EQ(copied.find(path) != std::string::npos, told.text.find(path) != std::string::npos);
    EXPECT_EQ(copied.find("Line 499") != std::string::npos,
              (told.text + told.details).find("Line 499") != std::string::npos);
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

TEST_F(BoxTest, AFormThatGoesTakesTheBoxesAboveItAlong) {
  showMain();
  ui::Answer answer = ui::Answer::yes;
  std::optional<std::string> pick = "none";
  inDialog(app.frmSettings, [&] {
    inDialog(app.frmDirSelect, [&] {
      withBox([&](QDialog&) { windows.unload(app.frmSettings); });
      answer = windows.messageBox({"Make it?", ui::BoxIcon::question, ui::BoxButtons::yesNo});
    });
    pick = chooseFolder(app, app.frmSettings, "C:\\FS\\", "title");
  });
  click("mnuFileSettings");
  EXPECT_EQ(answer, ui::Answer::no);
  EXPECT_EQ(pick, std::nullopt);
  EXPECT_FALSE(app.frmDirSelect.visible);
}

TEST_F(BoxTest, EveryFormHasAWindowAndAnUnknownOneStopsTheProgram) {
  for (const ui::Form* form : std::initializer_list<const ui::Form*>{
           &app.frmMain, &app.frmSettings, &app.frmDirSelect, &app.frmSplash, &app.frmSCOptions})
    EXPECT_TRUE(windows.makers().knows(*form)) << form->name();
  ui::Form stranger("frmStranger");
  EXPECT_DEATH(windows.show(stranger, nullptr), "frmStranger");
}

TEST_F(BoxTest, AnInputBoxGivesTheTextOrNothing) {
  showMain();
  withBox([](QDialog& box) {
    auto* edit = box.findChild<QLineEdit*>();
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->text(), "New Folder");
    QTest::keyClicks(edit, "Panels");  // over the selected text
    QTest::keyClick(edit, Qt::Key_Return);
  });
  EXPECT_EQ(windows.inputBox("New folder name:", "FS Skyvault", "New Folder"), "Panels");
  withBox([](QDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(windows.inputBox("New folder name:", "FS Skyvault", "New Folder"), std::nullopt);
}

TEST_F(BoxTest, SettingsAreOpenedByKeyFilledAndAccepted) {
  showMain();
  inDialog(app.frmSettings, [] {
    auto* field = find<QLineEdit>("txtSceneryLib");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(find<QLineEdit>("txtPOPPassword")->echoMode(), QLineEdit::Password);
    EXPECT_EQ(find<QLineEdit>("txtFSRoot")->text(), "C:\\FS\\");
    QTest::keyClicks(field, "C:\\SLib\\");
    click("tabSettings", 1);
    EXPECT_TRUE(find<QWidget>("frameEmail")->isVisible());
    QTest::keyClicks(find<QLineEdit>("txtPOPHost"), "mail.example");
    click("btnOK");
  });
  QTest::keyClick(mainWindow(), Qt::Key_F2);
  settle();
  EXPECT_FALSE(app.frmSettings.visible);
  EXPECT_EQ(find<QWidget>("frmSettings"), nullptr);
  EXPECT_EQ(settings.values["General/SceneryLib"], "C:\\SLib\\");
  EXPECT_EQ(settings.values["Mail/POPHost"], "mail.example");
  // A second opening is a new window with the stored values.
  inDialog(app.frmSettings, [] {
    EXPECT_EQ(find<QLineEdit>("txtPOPHost")->text(), "mail.example");
    find<QWidget>("frmSettings")->close();
  });
  click("mnuFileSettings");
  EXPECT_FALSE(app.frmSettings.visible);
}

TEST_F(BoxTest, AFirstStartAsksForSettingsAndEnterFillsTheDefaults) {
  settings.values.clear();
  inDialog(app.frmSettings, [this] {
    EXPECT_EQ(find<QTreeView>("lstAircraft"), nullptr);
    auto* root = find<QLineEdit>("txtFSRoot");
    ASSERT_NE(root, nullptr);
    root->setFocus();
    root->selectAll();
    QTest::keyClicks(root, "C:\\FS");
    // The field is left before the button does its work.
    QTest::keyClick(root, Qt::Key_Return);
    EXPECT_FALSE(app.frmSettings.visible);
  });
  showMain();
  EXPECT_EQ(settings.values["General/FSRoot"], "C:\\FS\\");
  EXPECT_EQ(settings.values["General/HangarDir"], "C:\\FS\\SKV-Hangar\\");
  EXPECT_EQ(settings.values["General/PacksDir"], "C:\\FS\\SKV-Packages\\");
  EXPECT_NE(find<QTreeView>("lstAircraft"), nullptr);
}

TEST_F(BoxTest, AFolderIsPickedInTheTree) {
  showMain();
  inDialog(app.frmDirSelect, [] {
    auto* tree = find<QTreeWidget>("Dir1");
    ASSERT_NE(tree, nullptr);
    ASSERT_NE(tree->currentItem(), nullptr);
    EXPECT_EQ(tree->currentItem()->text(0), "FS");
    QTreeWidgetItem* root = tree->currentItem()->parent();
    ASSERT_NE(root, nullptr);
    QStringList names;
    for (int i = 0; i < root->childCount(); ++i) names << root->child(i)->text(0);
    EXPECT_EQ(names, (QStringList{"FS", "Hangar", "Packs", "Temp"}));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                      tree->visualItemRect(root->child(2)).center());
    settle();
    EXPECT_EQ(find<QLineEdit>("txtDir")->text(), "C:\\Packs\\");
    click("btnOK");
  });
  EXPECT_EQ(chooseFolder(app, app.frmMain, "C:\\FS\\", "title"), "C:\\Packs\\");

  inDialog(app.frmDirSelect,
           [] { QTest::keyClick(find<QWidget>("frmDirSelect"), Qt::Key_Escape); });
  EXPECT_EQ(chooseFolder(app, app.frmMain, "C:\\FS\\", "title"), std::nullopt);
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
