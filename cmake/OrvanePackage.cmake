# A Debian package of all that is installed; scripts/package builds and tries it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME orvane-view-qt4)
set(CPACK_PACKAGE_CONTACT "The orvaneViewQt4 developers <orvane@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Qt widgets over a live X3D scene, with a workbench")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Render views, scene tree, node editor, route graph, code editor, log view and
lookup table painter for Qt programs, with a complete small scene runtime, the
headers to build with, and orvane-workbench, which shows all of it.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Our own libraries are in the package that is being made.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${PROJECT_BINARY_DIR}/lib")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libgl1-mesa-dri, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "qtbase5-dev, libqt5opengl5-dev, qttools5-dev-tools")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA "${PROJECT_SOURCE_DIR}/cmake/triggers")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_STRIP_FILES ON)
# Debian keeps what people read in small.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/compress-documents.cmake")
include(CPack)
