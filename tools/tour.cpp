// skyvault-tour: takes a user's road through the program, on a made-up simulator in a temporary
// folder, with the real windows. Tells every stage, leaves a picture of it, and ends with 1 when
// something is not as it should be.
//
//   skyvault-tour [FOLDER FOR PICTURES]
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QHeaderView>
#include <QInputDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "core/app.h"
#include "platform/desktop/file_settings_store.h"
#include "platform/desktop/keychain_secrets.h"
#include "platform/desktop/process_environment.h"
#include "platform/desktop/qt_clipboard.h"
#include "platform/desktop/qt_pictures.h"
#include "platform/desktop/system_clock.h"
#include "platform/disk/drive_file_system.h"
#include "platform/mail/curl_mail_engine.h"
#include "platform/mail/curl_web.h"
#include "platform/x11/x11_screen.h"
#include "platform/zip/libzip_zipit.h"
#include "sample/sample_files.h"
#include "sample/sample_settings.h"
#include "sample/sample_simulator.h"
#include "tour_addons.h"
#include "tour_mail.h"
#include "tour_pictures.h"
#include "tour_scenery.h"
#include "tour_user.h"
#include "ui/events.h"
#include "ui/qt/qt_windowing.h"
#include "ui/qt/theme.h"
#include "ui/startup.h"

namespace skv::tour {
namespace {

namespace fs = std::filesystem;

// The tour opens no other programs.
class NoShell : public Shell {
 public:
  int open(std::string_view) override { return 33; }
  bool hasProgramFor(std::string_view) override { return true; }
  Outcome editText(std::string_view) override { return {}; }
};

// The made-up simulator, and none that this machine may have.
class OneSimulator : public SimulatorFinder {
 public:
  explicit OneSimulator(std::string folder) : folder_(std::move(folder)) {}
  std::vector<std::string> find() const override { return {folder_}; }

 private:
  const std::string folder_;
};

class Tour {
 public:
  Tour(const sample::SampleSimulator& sample, fs::path pictures)
      : sample_(sample), user_(std::move(pictures)) {
    user_.expectAnyTime("Left over in the archive", "OK");
  }

  // Before the start: it asks for the folders and goes on with them.
  void expectFirstStart() {
    user_.stage("The first start");
    user_.expect("frmSettings", [this](QWidget&) {
      require(User::text("txtFSRoot") == sample_.FSRoot, "the simulator is not found");
      user_.pressIn("txtFSRoot", Qt::Key_Tab);
      require(User::text("txtHangarDir") == sample_.HangarDir, "another Hangar is proposed");
      require(User::text("txtPacksDir") == sample_.PacksDir, "another Packages folder is proposed");
      user_.type("txtCentralPanel", sample_.PanelsDir);
      user_.type("txtSceneryLib", sample_.SceneryLib);
      user_.picture("first-start");
      user_.click("btnOK");
    });
  }

  void take() {
    user_.allAnswered();
    aircraftList();
    detailTabs();
    editAndRestore();
    renameAndSort();
    hangarView();
    installAircraft();
    toSimulator();
    toHangar();
    everyOtherArchive();
    AddonRoad(sample_, user_).take();
    PictureRoad(sample_, user_).take();
    settings();
    MailRoad(sample_, user_).take();
    SceneryRoad(sample_, user_).take();
    user_.press(Qt::Key_F, Qt::ControlModifier);
  }

 private:
  // ---- the stages

  void aircraftList() {
    user_.stage("The aircraft of the simulator");
    require(User::rows("lstAircraft") == 14, "lstAircraft has " + count("lstAircraft"));
    require(User::selectedRow("lstAircraft") == 1, "the last selected aircraft is not selected");
    require(User::rows("lstACVersions") == 5, "lstACVersions has " + count("lstACVersions"));
    user_.picture("aircraft");

    user_.stage("Another aircraft, its tenth variation");
    selectAircraft("Pelham P.40 Conveyor");
    require(User::rows("lstACVersions") == 12, "lstACVersions has " + count("lstACVersions"));
    user_.clickRow("lstACVersions", 10);
    require(User::text("txtACTitle") == "Pelham P.40 Conveyor Arctic Survey P4010",
            "the title is " + User::text("txtACTitle"));
    user_.picture("variation");
  }

  void detailTabs() {
    user_.stage("Its details, tab by tab");
    user_.clickTab("tabACInfo", "ATC");
    require(User::text("txtATCAirline") == "Arctic Survey", "no airline");
    user_.clickTab("tabACInfo", "UI");
    require(User::text("txtUIManufacturer") == "Pelham", "no manufacturer");
    user_.clickTab("tabACInfo", "Description");
    user_.picture("description");
    user_.clickTab("tabACInfo", "General");

    user_.stage("A panel that is an alias, and the panel it points at");
    selectAircraft("Halden H4 Tourer");
    user_.clickTab("tabAddon", "Panel");
    require(User::text("lblPNStatus") == "Alias: halden_h2\\panel.vfr",
            "the status is " + User::text("lblPNStatus"));
    require(User::cell("lstPanel", User::selectedRow("lstPanel"), 0) == "Halden H2 Trainer (vfr)",
            "the alias's panel is not selected");
    user_.picture("panel");
    user_.clickTab("tabAddon", "Sound");
    require(User::text("lblSNStatus") == "Alias: halden_h2\\sound",
            "the status is " + User::text("lblSNStatus"));
    user_.picture("sound");
    user_.clickTab("tabAddon", "Info");
  }

  void editAndRestore() {
    user_.stage("Editing the second variation of an aircraft");
    const fs::path folder = sample_.simulator / "aircraft/corvane_c410";
    const std::string original = sample::readFile(folder / "aircraft.cfg");
    selectAircraft("Corvane C-410 Swiftlet");
    user_.clickRow("lstACVersions", 2);
    user_.type("txtACTitle", "Corvane C-410 Nordlicht Übersee");
    user_.clickTab("tabACInfo", "ATC");
    user_.type("txtATCFlight", "4711");
    user_.clickTab("tabACInfo", "General");
    user_.picture("edit");
    user_.click("btnSaveACInfo");
    require(User::cell("lstACVersions", 2, 1) == "Corvane C-410 Nordlicht Übersee",
            "the list of variations has the old title");
    const std::string saved = sample::readFile(folder / "aircraft.cfg");
    require(saved.find("title=Corvane C-410 Nordlicht \xDC"
                       "bersee\r\n") != std::string::npos,
            "aircraft.cfg has no new title");
    require(saved.find("atc_flight_number=4711\r\n") != std::string::npos, "no new flight number");
    require(sample::readFile(folder / "Aircraft.preSKV.cfg") == original, "no true backup");
    user_.picture("saved");

    user_.stage("Back to the original");
    user_.expectBox("Are you sure to reset Aircraft.cfg to original?", "Yes");
    user_.expectBox("Aircraft reset to original version!", "OK");
    user_.click("btnACRestoreOriginal");
    user_.allAnswered();
    require(sample::readFile(folder / "aircraft.cfg") == original, "not the original");
    require(!fs::exists(folder / "Aircraft.preSKV.cfg"), "the backup is still there");
    require(!User::find("btnACRestoreOriginal").isEnabled(), "there is nothing more to restore");
  }

  void renameAndSort() {
    user_.stage("Another name in the list, and the list by names");
    const int row = User::rowOf("lstAircraft", "Tern T-3 Amphibian");
    user_.rename("lstAircraft", row, "A Tern");
    const std::string list = sample::readFile(sample_.simulator / "SKV_AC.lst");
    require(list.find("A Tern\1") != std::string::npos, "the new name is not saved");
    auto* header = User::find<QTreeView>("lstAircraft").header();
    QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                      {header->sectionViewportPosition(0) + 20, header->height() / 2});
    User::settle();
    require(User::cell("lstAircraft", 1, 0) == "A Tern", "the list is not sorted");
    user_.picture("sorted");
  }

  void hangarView() {
    user_.stage("The Hangar");
    user_.press(Qt::Key_H, Qt::ControlModifier);
    require(User::text("btnHangar") == "To FS2002...", "the view did not change");
    require(User::rows("lstAircraft") == 5, "lstAircraft has " + count("lstAircraft"));
    user_.picture("hangar");
  }

  void installAircraft() {
    user_.stage("Installing an aircraft from a ZIP, with gauges, sounds, effects and textures");
    user_.press(Qt::Key_F, Qt::ControlModifier);
    expectArchive("C22_HARROW.ZIP", "calder_harrow", true);
    installExpected("menu");
    require(User::text("btnHangar") == "To FS2002...", "the Hangar view does not show");
    const int row = User::selectedRow("lstAircraft");
    require(row == 6, "the new row is not selected");
    require(User::cell("lstAircraft", row, 0) == "Calder C-22 Harrow Aurelis Air OA-C22",
            "the new row is " + User::cell("lstAircraft", row, 0));
    const fs::path hangar = sample_.simulator / "SKV-Hangar";
    for (const char* file : {"Aircraft/calder_harrow/aircraft.cfg",
                             "Aircraft/calder_harrow/texture.isle/flight_fuse.bmp",
                             "Main/calder_harrow/Gauges/flight_gauges.gau",
                             "Main/calder_harrow/Sound/flight_callout.wav",
                             "Main/calder_harrow/Texture/flight_spin.bmp",
                             "Main/calder_harrow/Effects/fx_flight_smoke.fx"})
      require(fs::exists(hangar / file), std::string(file) + " did not arrive");
    require(workingFolderIsEmpty(), "the working folder is not empty");
    user_.picture("installed");

    user_.stage("The same name again is refused");
    expectArchive("C22_HARROW.ZIP", "calder_harrow");
    user_.expectBox("Aircraft 'calder_harrow' already exists!", "OK");
    installExpected();
    require(User::rows("lstAircraft") == 6, "lstAircraft has " + count("lstAircraft"));
  }

  void toSimulator() {
    user_.stage("To FS2002");
    user_.click("btnHangar");
    user_.allAnswered();
    for (const char* file : {"aircraft/calder_harrow/aircraft.cfg", "Gauges/flight_gauges.gau",
                             "Effects/fx_flight_smoke.fx"})
      require(fs::exists(sample_.simulator / file), std::string(file) + " did not arrive");
    user_.picture("transferred");
    user_.press(Qt::Key_F, Qt::ControlModifier);
    selectAircraft("Calder C-22 Harrow Aurelis Air OA-C22");
    user_.picture("in-the-simulator");
  }

  void toHangar() {
    user_.stage("To the Hangar");
    selectAircraft("Orléc O.7 Biplane");
    user_.click("btnHangar");
    user_.allAnswered();
    require(fs::exists(sample_.simulator / "SKV-Hangar/Aircraft/Orlec O7 Biplane/aircraft.cfg"),
            "the biplane did not arrive");
    user_.press(Qt::Key_H, Qt::ControlModifier);
    selectAircraft("Orléc O.7 Biplane");
    user_.picture("in-the-hangar");

    user_.stage("An aircraft that is packed away comes from its Package");
    selectAircraft("Pallas P8 Courier");
    user_.click("btnHangar");
    user_.allAnswered();
    require(fs::exists(sample_.simulator / "aircraft/pallas_p8/sound/gear.wav"),
            "the Package's files did not arrive");
    require(workingFolderIsEmpty(), "the working folder is not empty");
    user_.picture("from-a-package");
  }

  void everyOtherArchive() {
    user_.stage("Every other archive, in the layouts that authors choose");
    int number = 0;
    for (const sample::Download& archive : sample_.archives) {
      if (archive.file == "C22_HARROW.ZIP") continue;
      std::cout << "    " << archive.file << ": " << archive.layout << std::endl;
      const int before = User::rows("lstAircraft");
      expectArchive(archive.file, "tour" + std::to_string(++number));
      if (archive.title.empty()) user_.expectBox("No Aircraft.cfg found!", "OK");
      installExpected();
      require(User::rows("lstAircraft") == before + (archive.title.empty() ? 0 : 1),
              "lstAircraft has " + count("lstAircraft"));
      if (!archive.title.empty())
        require(User::cell("lstAircraft", User::selectedRow("lstAircraft"), 0) == archive.title,
                "the new row is " + User::cell("lstAircraft", User::selectedRow("lstAircraft"), 0));
      require(workingFolderIsEmpty(), "the working folder is not empty");
    }
    user_.picture("all-installed");
  }

  void settings() {
    user_.stage("The settings, with a wrong folder first");
    user_.expect("frmSettings", [this](QWidget&) {
      require(User::text("txtHangarDir") == sample_.HangarDir, "not the stored Hangar");
      user_.picture("settings");
      user_.type("txtFSRoot", "C:\\Downloads");
      user_.expectBox("'C:\\Downloads\\' is not the FS2002 folder!", "OK");
      user_.click("btnOK");
      user_.type("txtFSRoot", sample_.FSRoot);
      user_.click("btnOK");
    });
    user_.press(Qt::Key_F2);
    user_.allAnswered();
    require(!User::shows("frmSettings"), "the dialog is still there");
  }

  // ---- what stages share

  static std::string count(const char* list) { return std::to_string(User::rows(list)) + " rows"; }

  void selectAircraft(const std::string& name) {
    user_.clickRow("lstAircraft", User::rowOf("lstAircraft", name));
  }

  static void answer(QWidget& window, const std::string& text) {
    auto* field = window.findChild<QLineEdit*>();
    require(field != nullptr, "the input box has no field");
    field->selectAll();
    QTest::keyClicks(field, QString::fromStdString(text));
    QTest::keyClick(field, Qt::Key_Return);
  }

  // The file dialog and the question for a name will come.
  void expectArchive(const std::string& archive, const std::string& name, bool pictures = false) {
    user_.expect("openFile", [=, this](QWidget& window) {
      if (pictures) user_.picture("file-dialog");
      User::pickFile(window, archive);
    });
    user_.expect("inputBox", [=, this](QWidget& window) {
      const std::string offered = dynamic_cast<QInputDialog&>(window).textValue().toStdString();
      require(offered == archive.substr(0, archive.size() - 4), "the box offers " + offered);
      if (pictures) user_.picture("name");
      answer(window, name);
    });
  }

  void installExpected(const std::string& pictureName = {}) {
    user_.chooseMenu({"File", "Install Package/ZIP", "Aircraft"}, pictureName);
    user_.allAnswered();
    require(User::find("frmMain").isEnabled(), "the main window stays disabled");
    require(QApplication::overrideCursor() == nullptr, "the hourglass stays");
  }

  // What is hidden is not the program's to delete, in its working folder neither.
  bool workingFolderIsEmpty() const {
    for (const auto& entry :
         fs::recursive_directory_iterator(sample_.driveC / "Temp/SKVInstallTemp"))
      if (entry.is_regular_file() && !entry.path().filename().string().starts_with('.'))
        return false;
    return true;
  }

  const sample::SampleSimulator& sample_;
  User user_;
};

// One run of the program over the sample, and the tour in it. Answers whether all was well.
bool run(const sample::SampleSimulator& sample, const fs::path& config, const fs::path& pictures) {
  DriveFileSystem files(sample.drives.string());
  FileSettingsStore settings((config / "settings.ini").string());
  SystemClock clock;
  NoShell shell;
  LibzipEngine zip{CodePage(1252)};
  QtPictureReader pictureReader{files};
  QtClipboard clipboard;
  X11Screen screen;
  CurlMailSystem mail;
  KeychainSecrets secrets;
  CurlWeb web;
  OneSimulator simulators{sample.FSRoot};
  Outcome stored = sample::writeSettings(settings, sample, versionText(), clock.now());
  for (const char* folder : {"FSRoot", "HangarDir", "PacksDir", "PanelsDir", "SceneryLib"})
    if (stored.ok()) stored = settings.write("General", folder, "");
  require(stored.ok(), stored.description());

  ui::qt::QtWindowing windows(files, pictureReader);
  App app(Platform{files,
                   settings,
                   clock,
                   shell,
                   zip,
                   pictureReader,
                   clipboard,
                   screen,
                   mail,
                   secrets,
                   web,
                   simulators,
                   {"C:\\Program\\", "C:\\Temp"}},
          windows);
  connectEvents(app);
  bool closed = false;
  app.frmMain.closed = [&] {
    Form_Unload(app);
    closed = true;
    windows.quit();
  };
  bool well = false;
  windows.run([&] {
    try {
      windows.prepare(app.frmMain);
      Tour tour(sample, pictures);
      tour.expectFirstStart();
      Form_Load(app);
      User::settle();
      tour.take();
      User::find("frmMain").close();
      User::settle();
      require(closed, "the window does not close");
      FileSettingsStore again((config / "settings.ini").string());
      require(again.read("General", "LastACSelected", "") != "1", "the selected row is not kept");
      well = true;
    } catch (const std::exception& failure) {
      std::cerr << "WRONG: " << failure.what() << std::endl;
      windows.quit();
    }
  });
  return well;
}

}  // namespace
}  // namespace skv::tour

// Qt's offscreen windows tell each time that they cannot be raised. Nobody needs to know.
static void tellOfQt(QtMsgType, const QMessageLogContext&, const QString& message) {
  if (!message.startsWith(QLatin1String("This plugin does not support")))
    std::cerr << message.toStdString() << "\n";
}

int main(int argc, char** argv) {
  namespace fs = std::filesystem;
  qInstallMessageHandler(tellOfQt);
  if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr)
    qputenv("QT_QPA_PLATFORM", "offscreen");
  // The same pictures everywhere: not as the desktop of this machine is dressed.
  QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  QApplication application(argc, argv);
  skv::ui::qt::dress(application);

  // A tour that stands still ends all the same.
  alarm(600);
  std::string folder = (fs::temp_directory_path() / "skyvault-tour-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) {
    std::cerr << "no temporary folder\n";
    return 1;
  }
  bool well = false;
  try {
    const auto sample = skv::sample::makeSample(folder);
    fs::create_directories(sample.driveC / "Temp");
    fs::create_directories(fs::path(folder) / "config");
    const fs::path pictures = fs::absolute(argc > 1 ? argv[1] : "build/tour");
    well = skv::tour::run(sample, fs::path(folder) / "config", pictures);
  } catch (const std::exception& failure) {
    std::cerr << "WRONG: " << failure.what() << "\n";
  }
  fs::remove_all(folder);
  std::cout << (well ? "The tour is through; all is well." : "The tour has FAILED.") << std::endl;
  return well ? 0 : 1;
}
