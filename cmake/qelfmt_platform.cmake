# Who answers the platform's names: the embedded host, or an installation of the platform itself.
set(QELFMT_PLATFORM host CACHE STRING "host: the embedded host; nx: the platform in UGII_BASE_DIR")
set_property(CACHE QELFMT_PLATFORM PROPERTY STRINGS host nx)

if(QELFMT_PLATFORM STREQUAL "host")
    set(QELFMT_PLATFORM_HEADERS "${CMAKE_SOURCE_DIR}/host/include")
    set(QELFMT_PLATFORM_LIBRARIES qelfmt-host)
elseif(QELFMT_PLATFORM STREQUAL "nx")
    set(UGII_BASE_DIR "$ENV{UGII_BASE_DIR}" CACHE PATH "Installation of the platform")
    if(NOT UGII_BASE_DIR)
        message(FATAL_ERROR "QELFMT_PLATFORM=nx needs the platform's installation: "
                            "set UGII_BASE_DIR, as a variable of CMake or of the environment.")
    endif()
    # The platform's names, file by file, and what is not certain about them: docs/platform.md.
    find_path(QELFMT_PLATFORM_HEADERS uf.h PATHS "${UGII_BASE_DIR}"
              PATH_SUFFIXES UGOPEN ugopen NO_DEFAULT_PATH)
    if(NOT QELFMT_PLATFORM_HEADERS)
        message(FATAL_ERROR "${UGII_BASE_DIR}: no uf.h in its UGOPEN folder: is the programming "
                            "interface installed?")
    endif()
    set(QELFMT_PLATFORM_LIBRARIES)
    # In this order: what follows is used by what stands before.
    set(QELFMT_PLATFORM_NAMES "opencpp;ugopenint;ufun;nxopencpp" CACHE STRING
        "Libraries of the platform, without prefix lib and ending")
    foreach(name IN LISTS QELFMT_PLATFORM_NAMES)
        find_library(QELFMT_PLATFORM_${name} NAMES ${name} lib${name} PATHS "${UGII_BASE_DIR}"
                     PATH_SUFFIXES UGOPEN ugopen NXBIN nxbin UGII ugii NO_DEFAULT_PATH)
        if(NOT QELFMT_PLATFORM_${name})
            message(FATAL_ERROR "${UGII_BASE_DIR}: library ${name} is not there. If it has another "
                                "name in this version, set QELFMT_PLATFORM_NAMES.")
        endif()
        list(APPEND QELFMT_PLATFORM_LIBRARIES "${QELFMT_PLATFORM_${name}}")
    endforeach()
    # Programs and tests here stand on the embedded host; with the platform there is the library alone.
    foreach(part QELFMT_TESTS QELFMT_BENCH QELFMT_FUZZ)
        set(${part} OFF CACHE BOOL "needs the embedded host" FORCE)
    endforeach()
else()
    message(FATAL_ERROR "QELFMT_PLATFORM=${QELFMT_PLATFORM}: choose host or nx.")
endif()
