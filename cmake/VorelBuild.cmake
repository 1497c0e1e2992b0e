# Compiler settings, the installation tree and the few functions with which each folder says what it holds.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# "Dev" keeps the debugger useful and the simulator quick enough for thousand-device chains.
set(CMAKE_CXX_FLAGS_DEV "-Og -g1")
set(CMAKE_EXE_LINKER_FLAGS_DEV "")
set(CMAKE_SHARED_LINKER_FLAGS_DEV "")
set(CMAKE_MODULE_LINKER_FLAGS_DEV "")

find_program(VOREL_CCACHE ccache)
if(VOREL_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VOREL_CCACHE})
endif()

add_library(vorel-options INTERFACE)
target_compile_options(vorel-options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 sees overlapping copies in every optimised assignment of a text literal (PR 105651).
    target_compile_options(vorel-options INTERFACE $<$<CONFIG:Release>:-Wno-restrict>)
endif()
target_include_directories(vorel-options INTERFACE
    ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR})
if(VOREL_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
if(VOREL_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link,address,undefined
        -fno-sanitize-recover=all)
    add_link_options(-fsanitize=address,undefined)
endif()

# The build folder holds a complete installation, laid out as `cmake --install` lays it out.
set(VOREL_TREE ${PROJECT_BINARY_DIR}/vorel)
set(VOREL_SYSTEM_DIR ${VOREL_TREE}/System)
set(VOREL_INSTALL_ROOT ${CMAKE_INSTALL_LIBDIR}/vorel)

# vorel_library(name SOURCES ... [DEPENDS ...]): one floor of the house, as a static library.
function(vorel_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC vorel-options ${arg_DEPENDS})
endfunction()

# vorel_test(name SOURCES ... [DEPENDS ...] [ENVIRONMENT ...]): one test program, one CTest entry.
function(vorel_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS;ENVIRONMENT" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE
        VOREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}" VOREL_TREE="${VOREL_TREE}")
    target_link_libraries(${name} PRIVATE vorel-options ${arg_DEPENDS} GTest::gmock GTest::gtest_main)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
    if(arg_ENVIRONMENT)
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "${arg_ENVIRONMENT}")
    endif()
endfunction()

# vorel_benchmark(name SOURCES ... [DEPENDS ...])
function(vorel_benchmark name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_compile_definitions(${name} PRIVATE
        VOREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}" VOREL_TREE="${VOREL_TREE}")
    target_link_libraries(${name} PRIVATE vorel-options ${arg_DEPENDS} benchmark::benchmark_main)
endfunction()

# vorel_fuzzer(name SOURCES ... [DEPENDS ...]): a libFuzzer target; its corpus lies in fuzz/corpus/<name>.
function(vorel_fuzzer name)
    cmake_parse_arguments(arg "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE vorel-options ${arg_DEPENDS})
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()

# vorel_copy(folder FILE ...): files of an installation, below the folder of that name in the build
# folder's installation. A copy is renewed when its source changes.
function(vorel_copy folder)
    set(copies)
    foreach(file IN LISTS ARGN)
        set(copy ${VOREL_TREE}/${folder}/${file})
        add_custom_command(OUTPUT ${copy}
            COMMAND ${CMAKE_COMMAND} -E copy ${CMAKE_CURRENT_SOURCE_DIR}/${file} ${copy}
            DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${file})
        list(APPEND copies ${copy})
        get_filename_component(subfolder ${file} DIRECTORY)
        install(FILES ${file} DESTINATION ${VOREL_INSTALL_ROOT}/${folder}/${subfolder})
    endforeach()
    add_custom_target(vorel-${folder} ALL DEPENDS ${copies})
endfunction()

# vorel_driver(name SOURCES ...): a driver module NAME.VOR beside the library. It exports its two
# entry points and nothing else, and can be unloaded.
function(vorel_driver name)
    cmake_parse_arguments(arg "" "DIRECTORY" "SOURCES;DEPENDS" ${ARGN})
    add_library(${name} MODULE ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE vorel-options ${arg_DEPENDS})
    target_link_options(${name} PRIVATE
        -Wl,--version-script=${PROJECT_SOURCE_DIR}/drivers/Module.map)
    set_target_properties(${name} PROPERTIES PREFIX "" SUFFIX ".VOR"
        LINK_DEPENDS ${PROJECT_SOURCE_DIR}/drivers/Module.map)
    if(arg_DIRECTORY)
        set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${arg_DIRECTORY})
    else()
        set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${VOREL_SYSTEM_DIR})
        install(TARGETS ${name} LIBRARY DESTINATION ${VOREL_INSTALL_ROOT}/System)
        set_property(GLOBAL APPEND PROPERTY VOREL_DRIVERS ${name})
    endif()
endfunction()
