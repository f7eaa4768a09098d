# What a program that uses the library finds: headers, exported targets of the build tree and of the install tree.
include(CMakePackageConfigHelpers)

install(TARGETS orvaneRuntime orvaneEmbedded EXPORT OrvaneTargets)
install(DIRECTORY opensg/OpenSG DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "*.h")
install(DIRECTORY runtime/Orvane runtime/Relayne runtime/SAI DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
    FILES_MATCHING PATTERN "*.h")
install(DIRECTORY view/qt4/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvaneViewQt4 FILES_MATCHING PATTERN "*.h")

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

install(FILES cmake/orvane-workbench.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples/scenes DESTINATION ${CMAKE_INSTALL_DOCDIR})
