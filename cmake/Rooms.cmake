# corvetape_room(<name> FOLDER <folder> [USES <room>...] [LIBRARIES <target>...])
#
# One static library per folder of src/. USES are the rooms on lower floors that it may include; only the
# headers of those rooms, by their path below src/, are meant to be reached.
function(corvetape_room name)
    cmake_parse_arguments(ROOM "" "FOLDER" "USES;LIBRARIES" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${ROOM_FOLDER}/*.cpp)
    # Folders by subject inside a room; those of platform/ are rooms of their own.
    if(NOT ROOM_FOLDER STREQUAL platform)
        file(GLOB subjects CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/${ROOM_FOLDER}/*/*.cpp)
        list(APPEND sources ${subjects})
    endif()
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    if(sources)
        add_library(${name} STATIC ${sources})
        set(scope PUBLIC)
        target_link_libraries(${name} PRIVATE corvetape_options)
    else()
        add_library(${name} INTERFACE)
        set(scope INTERFACE)
    endif()
    target_include_directories(${name} ${scope} ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} ${scope} ${ROOM_USES} ${ROOM_LIBRARIES})
endfunction()

# corvetape_test(<name> FOLDER <folder> USES <room>... [LABELS <label>...] [TIMEOUT <seconds>] [SHARDS <n>])
#
# One test program per folder of tests/, made of all its sources. With shards its tests run as so many entries
# side by side, which is for tests that mostly wait; one without takes all slots of the run.
function(corvetape_test name)
    cmake_parse_arguments(TEST "" "FOLDER;TIMEOUT;SHARDS" "USES;LABELS;DEPENDS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${TEST_FOLDER}/*.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(test-${name} ${sources})
    target_include_directories(test-${name} PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(test-${name} PRIVATE ${TEST_USES} GTest::gmock GTest::gtest_main corvetape_options)
    # Only the sources that name a folder of the checkout are compiled with it, so that a compiler cache serves
    # all others to every checkout.
    foreach(source IN LISTS sources)
        file(STRINGS ${source} places REGEX "CORVETAPE_(SOURCE|BINARY)_DIR" LIMIT_COUNT 1)
        if(places)
            set_source_files_properties(${source} PROPERTIES COMPILE_DEFINITIONS
                "CORVETAPE_SOURCE_DIR=\"${CMAKE_SOURCE_DIR}\";CORVETAPE_BINARY_DIR=\"${CMAKE_BINARY_DIR}\"")
        endif()
    endforeach()
    if(TEST_DEPENDS)
        add_dependencies(test-${name} ${TEST_DEPENDS})
    endif()
    if(NOT TEST_TIMEOUT)
        set(TEST_TIMEOUT 600)
    endif()
    if(NOT TEST_SHARDS)
        add_test(NAME ${name} COMMAND test-${name})
        set_tests_properties(${name} PROPERTIES LABELS "${TEST_LABELS}" TIMEOUT ${TEST_TIMEOUT} PROCESSORS 4)
        return()
    endif()
    math(EXPR last "${TEST_SHARDS} - 1")
    foreach(shard RANGE ${last})
        add_test(NAME ${name}-${shard} COMMAND test-${name})
        set_tests_properties(${name}-${shard} PROPERTIES
            LABELS "${TEST_LABELS}" TIMEOUT ${TEST_TIMEOUT}
            ENVIRONMENT "GTEST_TOTAL_SHARDS=${TEST_SHARDS};GTEST_SHARD_INDEX=${shard}")
    endforeach()
endfunction()
