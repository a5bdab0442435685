# What every target of the house has in common, and the one way to build a room.

find_package(Threads REQUIRED)

add_library(vonta_flags INTERFACE)
target_compile_options(vonta_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    $<$<CXX_COMPILER_ID:Clang>:-w>   # clang builds the fuzz targets only; g++ is the one that judges
    -ffp-contract=off)   # a frame has one value, whatever the loop around it looks like
target_include_directories(vonta_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(vonta_flags INTERFACE Threads::Threads)

# vonta_room(NAME LINKS a b ...): the static library of folder NAME, made of its .cpp files. LINKS are the
# rooms that it may look at; what is missing there cannot be linked.
function(vonta_room name)
    cmake_parse_arguments(ROOM "" "" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    add_library(vonta_${name} STATIC ${sources})
    target_link_libraries(vonta_${name} PUBLIC vonta_flags)
    foreach(room ${ROOM_LINKS})
        target_link_libraries(vonta_${name} PUBLIC vonta_${room})
    endforeach()
endfunction()

# What the scripts build under the checkers: every test program, and those that have threads to race.
add_custom_target(tests_all)
add_custom_target(tests_threaded)

# vonta_tests(NAME [THREADED] [SERIAL] LINKS a b ...): one GoogleTest program of tests/NAME/*.cpp. SERIAL ones run
# alone: what they listen to has a clock.
function(vonta_tests name)
    cmake_parse_arguments(ROOM "THREADED;SERIAL" "" "LINKS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(test_${name} ${sources})
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
