# What a program that uses the library finds: headers, exported targets of the build tree and of the install tree.
include(CMakePackageConfigHelpers)

install(TARGETS orvaneRuntime orvaneEmbedded EXPORT OrvaneTargets)
install(DIRECTORY opensg/OpenSG DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY runtime/Orvane runtime/Relayne runtime/SAI DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
# Helpers of the library's own sources, which no other header includes, stay here.
set(private_headers QorCodePatterns.h QorEditedValue.h QorGraphLabel.h QorMFieldEdit.h QorPixels.h QorPlaceSearch.h
    QorSmoothNormal.h QorSpinBoxKeys.h QorTypeFilter.h)
list(TRANSFORM private_headers REPLACE "(.+)" "PATTERN;\\1;EXCLUDE")
install(DIRECTORY view/qt4/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvaneViewQt4 FILES_MATCHING
    PATTERN icons EXCLUDE ${private_headers} PATTERN "*.h")

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneViewQt4)
configure_package_config_file(cmake/OrvaneViewQt4Config.cmake.in OrvaneViewQt4Config.cmake
    INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(OrvaneViewQt4ConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/OrvaneViewQt4Config.cmake" "${PROJECT_BINARY_DIR}/OrvaneViewQt4ConfigVersion.cmake"
    DESTINATION ${package_dir})

install(EXPORT OpenSGTargets NAMESPACE OpenSG:: DESTINATION ${package_dir})
install(EXPORT OrvaneTargets NAMESPACE Orvane:: DESTINATION ${package_dir})
export(EXPORT OpenSGTargets NAMESPACE OpenSG:: FILE "${PROJECT_BINARY_DIR}/OpenSGTargets.cmake")
export(EXPORT OrvaneTargets NAMESPACE Orvane:: FILE "${PROJECT_BINARY_DIR}/OrvaneTargets.cmake")

# The same for programs that ask pkg-config. The files count from where they lie, so that the tree can be moved.
file(RELATIVE_PATH pc_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
foreach(name orvaneViewQt4 orvaneEmbedded)
    configure_file(cmake/${name}.pc.in ${name}.pc @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/${name}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

# What desktops look for.
install(FILES cmake/desktop/orvane-workbench.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES cmake/desktop/orvane-workbench.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES cmake/desktop/orvane-view-qt4.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)

# What people read.
install(FILES docs/man/orvane-workbench.1 docs/man/orvane-inspect.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples/scenes DESTINATION ${CMAKE_INSTALL_DOCDIR})

# All that is installed, without examples and tests.
add_custom_target(installed DEPENDS orvane-workbench orvane-inspect)
if(TARGET orvaneDesigner)
    add_dependencies(installed orvaneDesigner)
endif()
