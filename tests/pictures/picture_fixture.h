// A run of the program that shows an aircraft with two variations, and a scenery.
#pragma once

#include "aircraft/aircraft_views.h"
#include "support/program_fixture.h"

namespace skv::test {

// A picture of one colour.
inline Pixels plain(int width, int height, std::uint8_t grey = 128) {
  Pixels pixels{width, height, {}};
  pixels.rows.assign(pixels.rowBytes() * static_cast<std::size_t>(height), grey);
  return pixels;
}

class PictureTest : public ProgramTest {
 protected:
  PictureTest() {
    app.AppDir = "C:\\Program\\";
    app.SceneryLib = "C:\\Lib\\";
    writeAircraft("", "abc");
    put({textures + "wing.bmp", panel + "panel.cfg"});
    drive.write("C:\\FS\\SKV_AC.lst", line("Plane", plane));
    drive.write("C:\\FS\\SKV_PN.lst", line("Shared", other));
    open();
  }
  void writeAircraft(const std::string& texture, const std::string& second,
                     const std::string& type = "P-1") const {
    drive.write(plane + "aircraft.cfg",
                "[fltsim.0]\r\ntitle=One\r\ntexture=" + texture + "\r\nui_type=" + type +
                    "\r\n[fltsim.1]\r\ntitle=Two\r\ntexture=" + second + "\r\n");
  }
  void open() { mnuViewFSAircraft_Click(app); }
  void pointPanelAt(const std::string& alias) {
    drive.write(panel + "panel.cfg", "[fltsim]\r\nalias=" + alias + "\r\n");
    open();
  }
  // The areas of the scenery view, by their folders; the first is selected.
  void openSceneries(const std::vector<std::string>& folders, const std::string& library = "") {
    std::string cfg;
    for (std::size_t i = 0; i < folders.size(); ++i)
      cfg += "[Area.00" + std::to_string(i + 1) + "]\r\nTitle=A\r\nLayer=" + std::to_string(9 - i) +
             "\r\nLocal=" + folders[i] + "\r\nActive=TRUE\r\n";
    drive.write("C:\\FS\\Scenery.cfg", cfg);
    if (!library.empty()) drive.write("C:\\Lib\\SKV_SL.lst", coded(library));
    ui::raise(form.mnuViewFSScenery.click);
    select(form.lstScenery, 1);
  }
  void paste(ui::Image& image) {
    ui::raise(image.mouseDown, ui::MouseButton::right);
    clipboard.held = plain(40, 30);
    ui::raise(form.mnuPicClip.click);
    expectIdle();
  }
  // The size of the picture in a file, as "40x30".
  std::string sizeOf(const std::string& file) const {
    const auto picture = pictures.read(file);
    return picture.ok() ? std::to_string(picture.value().width) + "x" +
                              std::to_string(picture.value().height)
                        : picture.outcome().description();
  }
  bool offers(ui::Image& image) {
    ui::raise(image.mouseDown, ui::MouseButton::right);
    return form.mnuPicClip.enabled && form.mnuPicFile.enabled && form.mnuPicSnap.enabled;
  }

  const std::string plane = "C:\\FS\\aircraft\\plane\\", textures = plane + "texture\\",
                    panel = plane + "panel\\", other = "C:\\FS\\aircraft\\other\\panel\\";
  const std::string own = textures + "SKVscrn.jpg";
};

}  // namespace skv::test
