# What every target of the project shares: warnings, sanitizers, include root.

find_program(TESSARO_CCACHE ccache)
if(TESSARO_CCACHE)
    set(CMAKE_CXX_COMPILER_LAUNCHER "${TESSARO_CCACHE}")
endif()

# An optimised build is optimised over the borders of its files, where short work would else be mostly calls. The
# objects hold ordinary code as well, for add-ons that link the framework without this.
include(CheckIPOSupported)
check_ipo_supported(RESULT TESSARO_IPO OUTPUT ignored LANGUAGES CXX)
set(CMAKE_INTERPROCEDURAL_OPTIMIZATION_RELEASE ${TESSARO_IPO})
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    set(CMAKE_CXX_COMPILE_OPTIONS_IPO -flto=auto -ffat-lto-objects)
endif()

# tessaro_target(NAME): the project's compile options for one of its own targets.
function(tessaro_target name)
    target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${Tessaro_SOURCE_DIR}>")
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_compile_options(${name} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual -Woverloaded-virtual
        -Werror)
    # A function may be inlined in its own file although the code is relocatable.
    target_compile_options(${name} PRIVATE -fno-semantic-interposition)
    # GCC 12 sees overlapping and overlong copies in its own std::string when it optimises; there are none.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${name} PRIVATE -Wno-restrict -Wno-stringop-overread)
    endif()
    if(TESSARO_SANITIZE)
        target_compile_options(${name} PRIVATE
            -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
        target_link_options(${name} PRIVATE -fsanitize=address,undefined)
    endif()
endfunction()

# tessaro_add_test(NAME SOURCES...  [LIBRARIES ...]): one GoogleTest program per room. The program is in a
# bundle folder of its own, as an add-on does, so that the module linked into it finds its resources.
function(tessaro_add_test name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    tessaro_target(${name})
    target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gtest GTest::gmock GTest::gtest_main)
    target_precompile_headers(${name} REUSE_FROM test_prelude)
    set_target_properties(${name} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests/${name}.bundle")
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()
