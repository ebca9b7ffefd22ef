# The one place for compiler flags, and the two functions by which a folder becomes a library or a test program.

find_package(fmt REQUIRED)
find_package(TBB REQUIRED)
find_package(ZLIB REQUIRED)
find_package(Threads REQUIRED)

find_program(ORB_CCACHE ccache)
if(ORB_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${ORB_CCACHE})
endif()

add_library(orb_flags INTERFACE)
target_compile_features(orb_flags INTERFACE cxx_std_20)
target_compile_options(orb_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion
                       $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict> -Werror=return-type)
target_link_libraries(orb_flags INTERFACE Threads::Threads)
if(ORB_WERROR)
  target_compile_options(orb_flags INTERFACE -Werror)
endif()
if(ORB_SANITIZE)
  target_compile_options(orb_flags INTERFACE -fsanitize=${ORB_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(orb_flags INTERFACE -fsanitize=${ORB_SANITIZE})
endif()
set(CMAKE_CXX_EXTENSIONS OFF)

# What nearly every source includes, compiled once, and for the tests once more with what they include: they compile in
# two thirds of the time. An include that is missing in src doesn't show in a build of ORB_PRECOMPILED, half of whose time
# goes there: the others do without.
add_compile_options("SHELL:$<$<CXX_COMPILER_ID:Clang>:-Xclang -fno-pch-timestamp>") # ccache asks for it
set(often_included <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <map> <memory> <numeric> <optional> <set> <span> <string>
    <utility> <vector> <fmt/format.h>)
file(WRITE ${PROJECT_BINARY_DIR}/generated/precompiled.cpp "")

# orb_precompiled(NAME header...): the object library orb_NAME, whose precompiled headers others use.
function(orb_precompiled name)
  add_library(orb_${name} OBJECT ${PROJECT_BINARY_DIR}/generated/precompiled.cpp)
  target_link_libraries(orb_${name} PRIVATE orb_flags fmt::fmt)
  target_precompile_headers(orb_${name} PRIVATE ${often_included} ${ARGN})
endfunction()
if(ORB_PRECOMPILED)
  orb_precompiled(precompiled)
endif()
# What is looked at is what the libraries do: the tests themselves aren't optimised.
if(ORB_TESTS)
  find_package(GTest REQUIRED)
  orb_precompiled(precompiled_tests <gtest/gtest.h>)
  target_link_libraries(orb_precompiled_tests PRIVATE GTest::gtest)
  target_compile_options(orb_precompiled_tests PRIVATE -O0)
endif()

# orb_headers(TARGET NAME FOLDER VISIBILITY [PART]): the folder's headers, or those of its subfolder PART, as "NAME/...", and no other folder's: they are reached
# through a folder that holds one link, so that an include of a layer above doesn't compile. The target
# all_verify_interface_header_sets compiles alone each header that no .cpp file includes as its first line.
function(orb_headers target name folder visibility)
  set(reached ${PROJECT_BINARY_DIR}/headers/${name})
  file(MAKE_DIRECTORY ${reached})
  file(CREATE_LINK ${folder} ${reached}/${name} SYMBOLIC)
  target_include_directories(${target} ${visibility} ${reached})
  cmake_path(APPEND folder ${ARGN} OUTPUT_VARIABLE part)
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${folder} ${part}/*.h)
  foreach(header ${headers})
    string(REGEX REPLACE "h$" "cpp" source ${header})
    if(EXISTS ${folder}/${source})
      list(REMOVE_ITEM headers ${header})
    endif()
  endforeach()
  list(TRANSFORM headers PREPEND ${reached}/${name}/)
  add_library(${target}_headers INTERFACE)
  target_sources(${target}_headers INTERFACE FILE_SET HEADERS BASE_DIRS ${reached} FILES ${headers})
  target_link_libraries(${target}_headers INTERFACE $<TARGET_PROPERTY:${target},LINK_LIBRARIES>)
  set_target_properties(${target}_headers PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# orb_library(NAME lib...): all .cpp files of the current folder as the static library orb_NAME.
function(orb_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(orb_${name} STATIC ${sources})
  orb_headers(orb_${name} ${name} ${CMAKE_CURRENT_SOURCE_DIR} PUBLIC)
  target_link_libraries(orb_${name} PUBLIC orb_flags ${ARGN})
  if(ORB_PRECOMPILED)
    get_target_property(usual orb_precompiled COMPILE_OPTIONS)
    get_target_property(options orb_${name} COMPILE_OPTIONS)
    if(options STREQUAL usual)
      target_precompile_headers(orb_${name} REUSE_FROM orb_precompiled)
    else()
      target_precompile_headers(orb_${name} PRIVATE ${often_included})
    endif()
  endif()
endfunction()

# orb_version_header(TARGET): "program_version.h" with version and commit, for TARGET alone. Written anew after a commit and
# after a change of a source; as it is touched only when its text changes, little is compiled.
function(orb_version_header target)
  set(header ${PROJECT_BINARY_DIR}/generated/program_version.h)
  set(script ${PROJECT_SOURCE_DIR}/cmake/write_version.cmake)
  file(GLOB_RECURSE watched CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/src/*.cpp ${PROJECT_SOURCE_DIR}/src/*.h)
  # grows with each commit, checkout and reset; in a worktree it lies elsewhere
  execute_process(COMMAND git rev-parse --path-format=absolute --git-path logs/HEAD WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
                  OUTPUT_VARIABLE moves OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE no_git)
  if(no_git EQUAL 0 AND EXISTS ${moves})
    list(APPEND watched ${moves})
  endif()
  add_custom_command(OUTPUT ${header} DEPENDS ${script} ${watched} COMMENT "Version and commit"
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${PROJECT_SOURCE_DIR} -DVERSION=${PROJECT_VERSION} -DHEADER=${header} -P ${script})
  target_sources(${target} PRIVATE ${header})
  target_include_directories(${target} PRIVATE ${PROJECT_BINARY_DIR}/generated)
endfunction()

# orb_test(NAME lib...): all .cpp files of tests/NAME as one GoogleTest program.
function(orb_test name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE orb_flags ${ARGN} GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE ORB_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  target_compile_options(test_${name} PRIVATE -O0)
  if(ORB_SANITIZE)
    target_compile_definitions(test_${name} PRIVATE ORB_SANITIZED)
  endif()
  target_precompile_headers(test_${name} REUSE_FROM orb_precompiled_tests)
  set(environment)
  if(ORB_SANITIZE)
    set(environment ENVIRONMENT LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/leaks_of_libraries.txt:print_suppressions=0)
  endif()
  gtest_discover_tests(test_${name} PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60 ${environment})
endfunction()

# The tests of the window program: all .cpp files of tests/desktop as one program. Each suite runs by itself, on a screen
# that nobody sees.
function(orb_desktop_tests)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/desktop/*.cpp)
  add_executable(test_desktop ${sources})
  target_link_libraries(test_desktop PRIVATE orb_desktop Qt6::Test GTest::gtest)
  target_include_directories(test_desktop PRIVATE ${PROJECT_SOURCE_DIR}/tests ${CMAKE_CURRENT_SOURCE_DIR}/desktop)
  target_compile_definitions(test_desktop PRIVATE ORB_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                             ORB_DESKTOP_PROGRAM="$<TARGET_FILE:orb-desktop>")
  add_dependencies(test_desktop orb-desktop)
  foreach(source ${sources})
    get_filename_component(name ${source} NAME_WE)
    if(name MATCHES "(.*)_test$")
      add_test(NAME desktop.${CMAKE_MATCH_1} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/desktop/under_xvfb
               $<TARGET_FILE:test_desktop> --gtest_filter=${CMAKE_MATCH_1}.*)
      set_tests_properties(desktop.${CMAKE_MATCH_1} PROPERTIES TIMEOUT 300)
    endif()
  endforeach()
endfunction()
