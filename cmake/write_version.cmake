# cmake -DSOURCE=FOLDER -DVERSION=1.2.3 -DHEADER=FILE -P write_version.cmake
# Writes version and commit of the sources in FOLDER as a header; one that would be the same isn't touched. The commit is
# empty where FOLDER is not the top of a git checkout, so that a copy of the sources that lies in somebody else's checkout
# doesn't name their commit.
set(commit "")
set(ENV{GIT_OPTIONAL_LOCKS} 0)
find_program(git git)
if(git)
  execute_process(COMMAND ${git} rev-parse --show-toplevel WORKING_DIRECTORY ${SOURCE}
                  OUTPUT_VARIABLE top OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  file(REAL_PATH ${SOURCE} here)
  if(top STREQUAL here)
    execute_process(COMMAND ${git} describe --always --dirty WORKING_DIRECTORY ${SOURCE}
                    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
endif()
file(CONFIGURE OUTPUT ${HEADER} @ONLY CONTENT [[// Written by cmake/write_version.cmake.
#define ORB_PROGRAM_VERSION "@VERSION@"
#define ORB_PROGRAM_COMMIT "@commit@"
]])
