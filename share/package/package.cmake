# The Debian package: cmake --build --preset release --target package
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME fsskyvault)
set(CPACK_PACKAGE_VENDOR "FS Skyvault")
set(CPACK_PACKAGE_CONTACT "FS Skyvault <maintainers@fsskyvault.example.org>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR})
set(CPACK_OUTPUT_FILE_PREFIX "")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "add-on manager for Flight Simulator 2002")
set(CPACK_PACKAGE_DESCRIPTION
"Looks after the aircraft, panels, sounds and sceneries of one Flight
Simulator 2002 that is installed in a Wine prefix. It edits the details of
aircraft, installs add-ons from ZIP files in whatever layout their authors
chose, keeps a Hangar of aircraft and a library of sceneries beside the
simulator, and orders the simulator's scenery database.
.
Originals are kept before anything is changed, and nothing is deleted before
its copy is safe on the disk.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
# Qt reads WebP by a plug-in, which no library's name tells.
# The manual and folders open with the desktop's own programs. Who has no word processor gets a
# small one; not every one takes rich text by the name of ".doc". Qt's own words, such as those of the
# file dialog, are in German when its translations are there.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "xdg-utils, qt6-image-formats-plugins")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
    "ca-certificates, abiword | libreoffice-writer, qt6-translations-l10n, qt6-wayland")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS wine)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
