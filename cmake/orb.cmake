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
target_compile_options(orb_flags INTERFACE -Wall -Wextra -Wshadow -Wconversion -Wno-sign-conversion -Wno-restrict -Werror=return-type)
target_compile_definitions(orb_flags INTERFACE ORB_VERSION="${PROJECT_VERSION}")
target_link_libraries(orb_flags INTERFACE Threads::Threads)
if(ORB_SANITIZE)
  target_compile_options(orb_flags INTERFACE -fsanitize=${ORB_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(orb_flags INTERFACE -fsanitize=${ORB_SANITIZE})
endif()
set(CMAKE_CXX_EXTENSIONS OFF)

# orb_headers(TARGET NAME FOLDER VISIBILITY): the folder's headers as "NAME/...", and no other folder's: they are reached
# through a folder that holds one link, so that an include of a layer above doesn't compile.
function(orb_headers target name folder visibility)
  set(reached ${PROJECT_BINARY_DIR}/headers/${name})
  file(MAKE_DIRECTORY ${reached})
  file(CREATE_LINK ${folder} ${reached}/${name} SYMBOLIC)
  target_include_directories(${target} ${visibility} ${reached})
endfunction()

# orb_library(NAME lib...): all .cpp files of the current folder as the static library orb_NAME.
function(orb_library name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  add_library(orb_${name} STATIC ${sources})
  orb_headers(orb_${name} ${name} ${CMAKE_CURRENT_SOURCE_DIR} PUBLIC)
  target_link_libraries(orb_${name} PUBLIC orb_flags ${ARGN})
endfunction()

# orb_test(NAME lib...): all .cpp files of tests/NAME as one GoogleTest program.
function(orb_test name)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_link_libraries(test_${name} PRIVATE ${ARGN} GTest::gtest_main)
  target_include_directories(test_${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(test_${name} PRIVATE ORB_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  gtest_discover_tests(test_${name} PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60)
endfunction()
