# What every target of the house has in common, and the one way to build a room.

find_package(Threads REQUIRED)

add_library(vonta_flags INTERFACE)
target_compile_options(vonta_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    $<$<CXX_COMPILER_ID:Clang>:-w>   # clang builds the fuzz targets only; g++ is the one that judges
    -ffp-contract=off)   # a frame has one value, whatever the loop around it looks like
target_include_directories(vonta_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(vonta_flags INTERFACE Threads::Threads)

# The rooms by where they lie; a room inside another one's folder is a room of its own.
set_property(GLOBAL PROPERTY VONTA_ROOMS "")

# What room NAME at PLACE may include: itself, what it links, and what those may include.
function(vonta_note_room name place)
    set(seen ${place})
    foreach(room ${ARGN})
        get_property(below GLOBAL PROPERTY VONTA_SEEN_BY_${room})
        if(NOT below)
            message(FATAL_ERROR "${place} looks at '${room}', which is no room below it")
        endif()
        list(APPEND seen ${below})
    endforeach()
    list(REMOVE_DUPLICATES seen)
    set_property(GLOBAL PROPERTY VONTA_SEEN_BY_${name} "${seen}")
    set_property(GLOBAL APPEND PROPERTY VONTA_ROOMS ${place})
endfunction()

# vonta_room(NAME LINKS a b ...): the static library of the current folder, made of its .cpp files and those of its
# inner folders that are no rooms of their own. LINKS are the rooms that it may look at: what is missing there can
# neither be linked nor included, for the build reads every #include of the room first.
function(vonta_room name)
    cmake_parse_arguments(ROOM "" "" "LINKS" ${ARGN})
    file(RELATIVE_PATH place ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    vonta_note_room(${name} ${place} ${ROOM_LINKS})

    file(GLOB_RECURSE files CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
    file(GLOB_RECURSE inner ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
    foreach(list ${inner})
        get_filename_component(folder ${list} DIRECTORY)
        list(FILTER files EXCLUDE REGEX "^${folder}/")
    endforeach()
    set(sources ${files})
    list(FILTER sources INCLUDE REGEX "\\.cpp$")

    get_property(seen GLOBAL PROPERTY VONTA_SEEN_BY_${name})
    set(stamp ${CMAKE_CURRENT_BINARY_DIR}/arrows-of-${name})
    add_custom_command(OUTPUT ${stamp}
        COMMAND ${CMAKE_COMMAND} "-DROOT=${PROJECT_SOURCE_DIR}" "-DROOMS=$<JOIN:$<TARGET_PROPERTY:vonta_flags,VONTA_ROOMS>,|>"
                "-DSEEN=$<JOIN:${seen},|>" "-DPLACE=${place}" "-DSTAMP=${stamp}" -P ${PROJECT_SOURCE_DIR}/cmake/CheckArrows.cmake
        DEPENDS ${files} ${PROJECT_SOURCE_DIR}/cmake/CheckArrows.cmake VERBATIM)

    add_library(vonta_${name} STATIC ${sources} ${stamp})
    target_link_libraries(vonta_${name} PUBLIC vonta_flags)
    foreach(room ${ROOM_LINKS})
        target_link_libraries(vonta_${name} PUBLIC vonta_${room})
    endforeach()
endfunction()

# vonta_header_room(NAME HEADER LINKS a b ...): one header that lies in another room's folder and is seen by rooms
# below that one.
function(vonta_header_room name header)
    cmake_parse_arguments(ROOM "" "" "LINKS" ${ARGN})
    vonta_note_room(${name} ${header} ${ROOM_LINKS})
    add_library(vonta_${name} INTERFACE)
    foreach(room ${ROOM_LINKS})
        target_link_libraries(vonta_${name} INTERFACE vonta_${room})
    endforeach()
endfunction()

# Once, when all rooms are told: what lies where.
function(vonta_rooms_are_complete)
    get_property(rooms GLOBAL PROPERTY VONTA_ROOMS)
    set_property(TARGET vonta_flags PROPERTY VONTA_ROOMS "${rooms}")
endfunction()

# What the scripts build under the checkers: every test program, and those that have threads to race.
add_custom_target(tests_all)
add_custom_target(tests_threaded)

# A program that runs under the address checker keeps the libraries that it loads, so that their leaks can be told from
# ours.
function(vonta_keep_libraries target)
    if(CMAKE_CXX_FLAGS MATCHES "sanitize=address")
        target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests/support/KeepLibraries.cpp)
    endif()
endfunction()

# vonta_tests(NAME [THREADED] [SERIAL] LINKS a b ...): one GoogleTest program of tests/NAME/*.cpp. SERIAL ones run
# alone: what they listen to has a clock.
function(vonta_tests name)
    cmake_parse_arguments(ROOM "THREADED;SERIAL" "" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(test_${name} ${sources})
    vonta_keep_libraries(test_${name})
    target_link_libraries(test_${name} PRIVATE vonta_flags GTest::gtest_main)
    add_dependencies(tests_all test_${name})
    if(ROOM_THREADED)
        add_dependencies(tests_threaded test_${name})
    endif()
    foreach(room ${ROOM_LINKS})
        target_link_libraries(test_${name} PRIVATE vonta_${room})
    endforeach()
    gtest_discover_tests(test_${name} PROPERTIES LABELS ${name} TIMEOUT 300 RUN_SERIAL "$<BOOL:${ROOM_SERIAL}>"
                         ENVIRONMENT "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks.supp:print_suppressions=0"
                         DISCOVERY_TIMEOUT 60)
endfunction()
