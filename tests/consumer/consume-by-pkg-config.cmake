# Builds and runs the consumer with the flags that pkg-config tells of an installed tree.
# BUILD_DIR: the project's build tree. WORK_DIR: a folder of our own. LIBDIR: as installed. CXX, FLAGS: the compiler and
# what the libraries were compiled with.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${WORK_DIR}/tree")
set(ENV{PKG_CONFIG_PATH} "${WORK_DIR}/tree/${LIBDIR}/pkgconfig")
execute_process(COMMAND pkg-config --cflags --libs orvaneViewQt4 orvaneEmbedded
    OUTPUT_VARIABLE told RESULT_VARIABLE status OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "pkg-config does not know the library")
endif()
separate_arguments(told UNIX_COMMAND "${told}")
separate_arguments(FLAGS UNIX_COMMAND "${FLAGS}")
run(${CXX} -std=c++17 -fPIC ${FLAGS} "${SOURCE_DIR}/main.cpp" -o "${WORK_DIR}/consumer" ${told}
    "-Wl,-rpath,${WORK_DIR}/tree/${LIBDIR}")
run("${WORK_DIR}/consumer")
