# How every folder is built: one object library a folder, the shared libraries made of them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# Programs stand in bin/ beside lib/, built as installed, so that a build tree that is moved still runs. CMake's own search
# paths of build trees end in an empty entry, which stands for the folder that a user is in: every library is looked for there.
if(NOT WIN32)
    set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
    set(CMAKE_INSTALL_RPATH "\$ORIGIN/../lib")
    set(CMAKE_INSTALL_RPATH_USE_LINK_PATH ON) # libraries in places of their own
endif()
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/lib")
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

find_program(CCACHE ccache)
if(CCACHE)
    set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE}")
endif()

add_library(qelfmt_flags INTERFACE)
if(MSVC)
    target_compile_options(qelfmt_flags INTERFACE /W4 /permissive- /Zc:__cplusplus /EHsc)
else()
    target_compile_options(qelfmt_flags INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor> -Werror
        # GCC 12 sees overlaps in std::string's own operator+ when it optimises fully.
        $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
endif()
target_include_directories(qelfmt_flags INTERFACE
    "${CMAKE_SOURCE_DIR}" "${CMAKE_SOURCE_DIR}/maker" "${CMAKE_SOURCE_DIR}/host")
if(QELFMT_PLATFORM STREQUAL "host")
    target_include_directories(qelfmt_flags INTERFACE "${QELFMT_PLATFORM_HEADERS}")
else() # headers that are not ours are not held to our warnings
    target_include_directories(qelfmt_flags SYSTEM INTERFACE "${QELFMT_PLATFORM_HEADERS}")
endif()
if(QELFMT_SANITIZE)
    target_compile_options(qelfmt_flags INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer
        -Wno-maybe-uninitialized) # the instrumented standard library raises it where nothing is amiss
    target_link_options(qelfmt_flags INTERFACE -fsanitize=address,undefined)
endif()

# qelfmt_objects(NAME DIR folder [EXCLUDE regex] [LIBS ...] [HIDDEN]): every source below the folder.
function(qelfmt_objects name)
    cmake_parse_arguments(ARG "HIDDEN" "DIR;EXCLUDE" "LIBS;ONLY;WITHOUT" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${ARG_DIR}/*.cpp")
    if(ARG_EXCLUDE)
        list(FILTER sources EXCLUDE REGEX "${ARG_EXCLUDE}")
    endif()
    list(TRANSFORM ARG_WITHOUT REPLACE "(.+)" "${CMAKE_SOURCE_DIR}/${ARG_DIR}/\\1.cpp")
    list(REMOVE_ITEM sources "" ${ARG_WITHOUT})
    if(ARG_ONLY)
        list(TRANSFORM ARG_ONLY REPLACE "(.+)" "${CMAKE_SOURCE_DIR}/${ARG_DIR}/\\1.cpp"
             OUTPUT_VARIABLE sources)
    endif()
    if(NOT sources)
        return()
    endif()
    add_library(${name} OBJECT ${sources})
    target_link_libraries(${name} PRIVATE qelfmt_flags ${ARG_LIBS})
    target_compile_definitions(${name} PRIVATE $<$<BOOL:${WIN32}>:QELFMT_BUILDING>)
    if(ARG_HIDDEN)
        set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden
                              VISIBILITY_INLINES_HIDDEN ON)
    endif()
endfunction()

# qelfmt_shared(NAME OBJECTS ... LIBS ...): lib<NAME>.so.1 of the object libraries that exist.
function(qelfmt_shared name)
    cmake_parse_arguments(ARG "" "" "OBJECTS;LIBS" ${ARGN})
    set(objects)
    foreach(object IN LISTS ARG_OBJECTS)
        if(TARGET ${object})
            list(APPEND objects $<TARGET_OBJECTS:${object}>)
        endif()
    endforeach()
    if(NOT objects)
        return()
    endif()
    add_library(${name} SHARED ${objects})
    set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION}
                          SOVERSION ${PROJECT_VERSION_MAJOR})
    target_link_libraries(${name} PRIVATE qelfmt_flags ${ARG_LIBS})
    if(NOT MSVC)
        target_link_options(${name} PRIVATE -Wl,--no-undefined)
    endif()
endfunction()

# qelfmt_test(NAME DIR folder [LIBS ...]): the GoogleTests of a folder below tests/, run as two ctest
# entries: "quick" without and "soak" with the tests whose names end in Soak. The library's objects
# are linked, not its shared library: registrations would stand twice.
function(qelfmt_test name)
    cmake_parse_arguments(ARG "NO_LIBRARY" "DIR" "LIBS" ${ARGN})
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${ARG_DIR}/*.cpp"
         "${CMAKE_SOURCE_DIR}/tests/${ARG_DIR}/*.c")
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    if(NOT ARG_NO_LIBRARY)
        foreach(folder IN LISTS QELFMT_FOLDERS)
            if(TARGET ${folder})
                target_sources(${name} PRIVATE $<TARGET_OBJECTS:${folder}>)
            endif()
        endforeach()
    endif()
    target_link_libraries(${name} PRIVATE qelfmt_flags qelfmt-host Boost::filesystem Boost::regex
                          GTest::gtest_main ${ARG_LIBS})
    target_compile_definitions(${name} PRIVATE QELFMT_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
                               QELFMT_BINARY_DIR="${CMAKE_BINARY_DIR}")
    add_test(NAME ${name} COMMAND ${name} --gtest_filter=-*Soak --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES LABELS quick TIMEOUT 600)
    add_test(NAME ${name}_soak COMMAND ${name} --gtest_filter=*Soak --gtest_brief=1)
    set_tests_properties(${name}_soak PROPERTIES LABELS soak TIMEOUT 14400)
endfunction()
