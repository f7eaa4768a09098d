# API pages of the public headers, by the target "docs", where Debian's doxygen is installed.
find_program(ORVANE_DOXYGEN doxygen)
if(ORVANE_DOXYGEN)
    configure_file(docs/Doxyfile.in Doxyfile @ONLY)
    add_custom_target(docs COMMAND ${ORVANE_DOXYGEN} "${PROJECT_BINARY_DIR}/Doxyfile"
        COMMENT "API pages in ${PROJECT_BINARY_DIR}/api/index.html" VERBATIM)
endif()
