# What every target of the project has in common.

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1")

add_compile_options(-Wall -Wextra -Wpedantic)
if(ORVANE_WERROR)
    add_compile_options(-Werror)
endif()
if(ORVANE_SANITIZE)
    add_compile_options(-fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    # The code of the checks gives rise to warnings that the plain build has not.
    add_compile_options(-Wno-error)
    # One copy of every type's information across the libraries, or dynamic casts look foreign.
    add_compile_options($<$<CXX_COMPILER_ID:Clang>:-shared-libasan>)
    add_link_options(-fsanitize=${ORVANE_SANITIZE} $<$<CXX_COMPILER_ID:Clang>:-shared-libasan>)
endif()

# orvane_library(TARGET ALIAS Name::Space SOURCES ... [PUBLIC libs] [PRIVATE libs])
# A shared library with a versioned SONAME, exported to the build tree and the install tree unless NO_INSTALL.
function(orvane_library target)
    cmake_parse_arguments(ARG "NO_INSTALL" "ALIAS" "SOURCES;PUBLIC;PRIVATE" ${ARGN})
    add_library(${target} SHARED ${ARG_SOURCES})
    # Before 1.0 each minor version may break what was built against the one before, as the package's version file says.
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} INSTALL_RPATH "$ORIGIN")
    set(export_set OrvaneTargets)
    if(ARG_ALIAS)
        add_library(${ARG_ALIAS} ALIAS ${target})
        if(ARG_ALIAS MATCHES "^OpenSG::")
            set(export_set OpenSGTargets)
        endif()
    endif()
    if(NOT ARG_NO_INSTALL)
        install(TARGETS ${target} EXPORT ${export_set} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
            RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
    endif()
    target_link_libraries(${target} PUBLIC ${ARG_PUBLIC} PRIVATE ${ARG_PRIVATE})
    target_compile_features(${target} PUBLIC cxx_std_17)
endfunction()

# Settings of everything that uses Qt: no silent conversion between bytes and text.
function(orvane_use_qt target)
    set_target_properties(${target} PROPERTIES AUTOMOC ON AUTOUIC ON)
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII)
endfunction()

# orvane_test(NAME SOURCES ... [LIBS ...] [GL] [LAUNCHER program] [LABELS ...])
# A Qt Test program. It runs on the offscreen platform; with GL it runs on the X display. A launcher is given the
# program to run.
function(orvane_test name)
    cmake_parse_arguments(ARG "GL" "LAUNCHER" "SOURCES;LIBS;LABELS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    orvane_use_qt(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} Qt5::Test)
    add_test(NAME ${name} COMMAND ${ARG_LAUNCHER} $<TARGET_FILE:${name}>)
    set(environment "ORVANE_SOURCE_DIR=${PROJECT_SOURCE_DIR}" "ORVANE_BIN_DIR=${PROJECT_BINARY_DIR}/bin")
    if(ARG_GL)
        list(APPEND ARG_LABELS gl)
        list(APPEND environment "QT_QPA_PLATFORM=xcb")
        if(ORVANE_SANITIZE)
            # The GL driver is unloaded before the search for leaks, so that its own cannot be told by name.
            list(APPEND environment "ASAN_OPTIONS=detect_leaks=0")
        endif()
    else()
        # Without a display the offscreen platform makes no GL context, with one it makes a useless one.
        list(APPEND environment "QT_QPA_PLATFORM=offscreen" "DISPLAY=")
    endif()
    set_tests_properties(${name} PROPERTIES
        TIMEOUT 300
        LABELS "${ARG_LABELS}"
        ENVIRONMENT "${environment}")
    if(ARG_GL)
        # These look at what the screen shows: one at a time, or they cover each other's windows.
        set_tests_properties(${name} PROPERTIES RESOURCE_LOCK display)
    endif()
endfunction()
