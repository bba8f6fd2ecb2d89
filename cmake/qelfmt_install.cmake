# What is built beside the programs (definitions, the manual page), what is installed and what is packed.
# Components: library (what programs run with), dev (what programs are built with), tools (the command,
# the shipped definitions, its manual page and completion).
include(CMakePackageConfigHelpers)

set(QELFMT_HEADERS "${CMAKE_INSTALL_INCLUDEDIR}/qelfmt")
set(QELFMT_SHARE "${CMAKE_BINARY_DIR}/share")

# --- targets as others see them ---------------------------------------------------------------------
# The folders of the headers are those of the source tree, so that they include one another as here.
target_include_directories(qelfmt INTERFACE
    "$<INSTALL_INTERFACE:${QELFMT_HEADERS}>" "$<INSTALL_INTERFACE:${QELFMT_HEADERS}/maker>")
target_link_libraries(qelfmt INTERFACE Boost::filesystem Boost::regex)
set(QELFMT_TARGETS qelfmt)
if(QELFMT_PLATFORM STREQUAL "host")
    target_include_directories(qelfmt-host INTERFACE
        "$<INSTALL_INTERFACE:${QELFMT_HEADERS}/platform>")
    target_include_directories(qelfmt-display INTERFACE "$<INSTALL_INTERFACE:${QELFMT_HEADERS}>")
    target_link_libraries(qelfmt-display INTERFACE qelfmt-host)
    target_link_libraries(qelfmt INTERFACE qelfmt-host)
    set_target_properties(qelfmt-host PROPERTIES EXPORT_NAME host)
    set_target_properties(qelfmt-display PROPERTIES EXPORT_NAME display)
    list(APPEND QELFMT_TARGETS qelfmt-host qelfmt-display)
    add_library(qelfmt::host ALIAS qelfmt-host)
    add_library(qelfmt::display ALIAS qelfmt-display)
endif()
add_library(qelfmt::qelfmt ALIAS qelfmt)
if(NOT WIN32)
    set_target_properties(${QELFMT_TARGETS} ${QELFMT_ON_DEMAND} PROPERTIES INSTALL_RPATH "\$ORIGIN")
endif()

install(TARGETS ${QELFMT_TARGETS} EXPORT qelfmt
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT library NAMELINK_COMPONENT dev
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT library
        ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}" COMPONENT dev)
if(QELFMT_ON_DEMAND) # nobody links them
    install(TARGETS ${QELFMT_ON_DEMAND} LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
            COMPONENT library NAMELINK_SKIP)
endif()

# --- headers ------------------------------------------------------------------------------------------
install(FILES api/trv_fmt.h DESTINATION "${QELFMT_HEADERS}" COMPONENT dev)
# Headers that only the sources of their folder include stay here.
set(QELFMT_PRIVATE_HEADERS
    content/attributes content/carrier content/new_object content/note_text content/owner_walk
    content/recompute_guard content/row_memo content/symbol_text
    definitions/field_list definitions/in_part_of definitions/pairwise definitions/point_text
    definitions/require
    drawing/hierarchy drawing/links_to drawing/owned_patterns drawing/sheet_of
    drawing/sheet_size drawing/sheet_view
    drawing/timer drawing/transformation drawing/with_base drawing/zone
    foundation/exception_report foundation/guarded_singleton foundation/info_lines
    udo/growth)
list(JOIN QELFMT_PRIVATE_HEADERS "|" private)
foreach(folder udo foundation definitions drawing content maker/base maker/lum maker/lumug)
    file(GLOB headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_SOURCE_DIR}"
         "${CMAKE_SOURCE_DIR}/${folder}/*.h")
    list(FILTER headers EXCLUDE REGEX "^(${private})\\.h$")
    install(FILES ${headers} DESTINATION "${QELFMT_HEADERS}/${folder}" COMPONENT dev)
endforeach()
if(QELFMT_PLATFORM STREQUAL "host")
    install(DIRECTORY host/include/ DESTINATION "${QELFMT_HEADERS}/platform" COMPONENT dev
            FILES_MATCHING PATTERN "*.h" PATTERN "*.hxx")
    install(FILES host/display/render.h host/display/display_list.h
            DESTINATION "${QELFMT_HEADERS}/display" COMPONENT dev)
endif()

# --- find_package and pkg-config -------------------------------------------------------------------
set(QELFMT_CMAKE "${CMAKE_INSTALL_LIBDIR}/cmake/qelfmt")
install(EXPORT qelfmt NAMESPACE qelfmt:: FILE qelfmt-targets.cmake DESTINATION "${QELFMT_CMAKE}"
        COMPONENT dev)
configure_package_config_file(cmake/package/qelfmt-config.cmake.in
    "${CMAKE_BINARY_DIR}/qelfmt-config.cmake" INSTALL_DESTINATION "${QELFMT_CMAKE}"
    NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${CMAKE_BINARY_DIR}/qelfmt-config-version.cmake"
    COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/qelfmt-config.cmake"
              "${CMAKE_BINARY_DIR}/qelfmt-config-version.cmake"
        DESTINATION "${QELFMT_CMAKE}" COMPONENT dev)
if(QELFMT_PLATFORM STREQUAL "host") # another platform has its own headers and libraries
    set(QELFMT_HOST_CFLAGS " -I\${includedir}/platform")
    set(QELFMT_HOST_LIBS " -lqelfmt-host")
endif()
file(RELATIVE_PATH QELFMT_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(cmake/package/qelfmt.pc.in "${CMAKE_BINARY_DIR}/qelfmt.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/qelfmt.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
        COMPONENT dev)
if(QELFMT_PLATFORM STREQUAL "host")
    install(DIRECTORY examples/ DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples" COMPONENT dev
            PATTERN __pycache__ EXCLUDE)
endif()

# The reference pages are installed when scripts/make-docs has made them here, as `make package` does.
install(DIRECTORY "${CMAKE_BINARY_DIR}/reference/html" DESTINATION "${CMAKE_INSTALL_DOCDIR}"
        COMPONENT dev OPTIONAL)
install(DIRECTORY "${CMAKE_BINARY_DIR}/reference/man/man3" DESTINATION "${CMAKE_INSTALL_MANDIR}"
        COMPONENT dev OPTIONAL)

# --- the command and what it needs ------------------------------------------------------------------
if(TARGET qelfmt_app)
    file(RELATIVE_PATH libraries "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
    set(places "\$ORIGIN/../lib" "\$ORIGIN/${libraries}")
    list(REMOVE_DUPLICATES places)
    set_target_properties(qelfmt_app PROPERTIES INSTALL_RPATH "${places}")
    install(TARGETS qelfmt_app DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT tools)

    # The library looks for definitions in share/qelfmt beside it, in the build tree as when installed.
    file(GLOB definitions CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/formats/*.yaml")
    file(GLOB_RECURSE art CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/formats/*.svg"
         "${CMAKE_SOURCE_DIR}/formats/example-site/*")
    add_custom_command(OUTPUT "${QELFMT_SHARE}/definitions.stamp"
        COMMAND ${CMAKE_COMMAND} -E rm -rf "${QELFMT_SHARE}/qelfmt"
        COMMAND qelfmt_app --quiet defs build ${definitions} -o "${QELFMT_SHARE}/qelfmt"
        COMMAND ${CMAKE_COMMAND} -E copy_directory "${CMAKE_SOURCE_DIR}/formats/example-site"
                "${QELFMT_SHARE}/qelfmt/formats/example-site"
        COMMAND ${CMAKE_COMMAND} -E copy "${CMAKE_SOURCE_DIR}/formats/qelfmt.schema.json"
                "${QELFMT_SHARE}/qelfmt/formats"
        COMMAND ${CMAKE_COMMAND} -E touch "${QELFMT_SHARE}/definitions.stamp"
        DEPENDS qelfmt_app ${definitions} ${art} formats/qelfmt.schema.json VERBATIM COMMENT "Shipped definitions")
    add_custom_target(shipped_definitions ALL DEPENDS "${QELFMT_SHARE}/definitions.stamp")
    install(DIRECTORY "${QELFMT_SHARE}/qelfmt/" DESTINATION "${CMAKE_INSTALL_DATADIR}/qelfmt"
            COMPONENT tools)
    install(FILES ${definitions} DESTINATION "${CMAKE_INSTALL_DATADIR}/qelfmt/formats"
            COMPONENT tools)

    # The verbs and options of the manual page are those that the command itself lists.
    add_custom_command(OUTPUT "${QELFMT_SHARE}/qelfmt.1"
        COMMAND "${CMAKE_SOURCE_DIR}/scripts/make-man" $<TARGET_FILE:qelfmt_app>
                "${CMAKE_SOURCE_DIR}/docs/man/qelfmt.1.in" "${QELFMT_SHARE}/qelfmt.1"
        DEPENDS qelfmt_app scripts/make-man docs/man/qelfmt.1.in VERBATIM COMMENT "Manual page")
    add_custom_target(manual_page ALL DEPENDS "${QELFMT_SHARE}/qelfmt.1")
    install(FILES "${QELFMT_SHARE}/qelfmt.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
            COMPONENT tools)
    install(FILES scripts/completion/qelfmt
            DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT tools)
endif()

# --- Debian packages ----------------------------------------------------------------------------------
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME qelfmt)
set(CPACK_PACKAGE_VENDOR "The qelfmt authors")
set(CPACK_PACKAGE_CONTACT "The qelfmt authors <qelfmt@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/package/debian.cmake")
set(CPACK_COMPONENTS_ALL library dev tools)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS OFF)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libqelfmt1)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_RECOMMENDS fonts-osifont)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SUGGESTS qelfmt)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA "${CMAKE_SOURCE_DIR}/cmake/package/triggers"
    "${CMAKE_SOURCE_DIR}/cmake/package/shlibs")
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libqelfmt-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
    "libqelfmt1 (= ${PROJECT_VERSION}), libboost-dev, libboost-filesystem-dev, libboost-regex-dev")
set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME qelfmt)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "libqelfmt1 (= ${PROJECT_VERSION}), fonts-osifont")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "qelfmt places frames, title blocks, revision tables and symbols on drawing
sheets, fills them and keeps them up to date with their definitions. These
are its libraries, with the embedded host that needs no CAD system.")
set(CPACK_COMPONENT_DEV_DESCRIPTION "Headers of the qelfmt libraries, CMake and pkg-config files, the reference
pages of the C interface and examples in C, C++ and Python.")
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "The command qelfmt with its shipped definitions (ISO and ASME sheets and
title blocks), manual page and completion.")
include(CPack)
