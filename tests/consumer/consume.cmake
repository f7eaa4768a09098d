# Builds and runs the consumer against the build tree, or against an installed tree when INSTALLED is set.
# BUILD_DIR: the project's build tree. WORK_DIR: a folder of our own. FLAGS: what the libraries were compiled with.
function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}")
    endif()
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(package_dir "${BUILD_DIR}")
if(INSTALLED)
    run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${WORK_DIR}/tree")
    file(GLOB package_dir "${WORK_DIR}/tree/lib*/cmake/OrvaneViewQt4" "${WORK_DIR}/tree/lib/*/cmake/OrvaneViewQt4")
endif()
run(${CMAKE_COMMAND} -S "${SOURCE_DIR}" -B "${WORK_DIR}/build" -G Ninja "-DOrvaneViewQt4_DIR=${package_dir}"
    "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/build")
run("${WORK_DIR}/build/consumer")
