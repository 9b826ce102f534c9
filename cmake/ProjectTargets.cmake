# What every target of this project shares: one place for warnings, sanitizers and the test wrapper.
include(GoogleTest)

add_library(project_options INTERFACE)
target_compile_options(project_options INTERFACE
    -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2)
# Qt's own headers are system headers, so the strict set only judges our code.
if(SPB_WERROR)
    target_compile_options(project_options INTERFACE -Werror)
endif()
if(SPB_SANITIZE)
    set(sanitize -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(project_options INTERFACE ${sanitize})
    target_link_options(project_options INTERFACE ${sanitize})
endif()
if(SPB_FUZZ)
    target_compile_options(project_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined)
    target_link_options(project_options INTERFACE -fsanitize=address,undefined)
endif()
target_compile_definitions(project_options INTERFACE QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING)

# Headers are included by their path below src/, or below the source folder for tools/. Each library
# shows only its own, through a folder of links, so who doesn't link a library can't include from it:
# an include upwards finds no file.
function(project_show_headers name scope)
    set(shown ${CMAKE_BINARY_DIR}/include/${name})
    file(REMOVE_RECURSE ${shown})
    file(RELATIVE_PATH room ${CMAKE_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
    if(room MATCHES "^\\.\\./")
        file(RELATIVE_PATH room ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    file(MAKE_DIRECTORY ${shown})
    foreach(source ${ARGN})
        if(source MATCHES "\\.h$")
            get_filename_component(folder ${shown}/${room}/${source} DIRECTORY)
            file(MAKE_DIRECTORY ${folder})
            file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${source} ${shown}/${room}/${source} SYMBOLIC)
        endif()
    endforeach()
    target_include_directories(${name} ${scope} ${shown})
    set_property(GLOBAL APPEND PROPERTY project_rooms ${name})
endfunction()

# project_add_library(name SOURCES ... LINK ... [PRIVATE_LINK ...]): one library, one folder; static,
# or of headers alone. What stands behind LINK is seen by those who link it, too.
function(project_add_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    if("${arg_SOURCES}" MATCHES "\\.cpp")
        add_library(${name} STATIC ${arg_SOURCES})
        target_link_libraries(${name} PUBLIC project_options ${arg_LINK} PRIVATE ${arg_PRIVATE_LINK})
        project_show_headers(${name} PUBLIC ${arg_SOURCES})
    else()
        add_library(${name} INTERFACE ${arg_SOURCES})
        target_link_libraries(${name} INTERFACE project_options ${arg_LINK})
        project_show_headers(${name} INTERFACE ${arg_SOURCES})
    endif()
endfunction()

# project_add_test(name SOURCES ... LINK ...): a GoogleTest program, each test a ctest entry.
function(project_add_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE ${arg_LINK} GTest::gtest GTest::gmock test_main)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    gtest_discover_tests(${name}
        DISCOVERY_MODE PRE_TEST
        DISCOVERY_TIMEOUT 60
        PROPERTIES
        TIMEOUT 120
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
endfunction()

# project_add_fuzzer(name SOURCES ... LINK ...): a libFuzzer program; it writes its own seeds.
function(project_add_fuzzer name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINK} fuzz_support)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set_property(GLOBAL APPEND PROPERTY spb_fuzzers ${name})
endfunction()
