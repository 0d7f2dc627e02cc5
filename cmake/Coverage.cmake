# The coverage preset: counts in every object, written also where the program ends by _exit, and a target that
# runs every test and reports on the folders in which something is decided.

find_program(NOCTRA_GCOVR gcovr)
if(NOT NOCTRA_GCOVR)
    message(FATAL_ERROR "gcovr is not installed: scripts/install-deps --coverage")
endif()

target_compile_options(noctra_options INTERFACE --coverage -fprofile-update=atomic)
target_link_options(noctra_options INTERFACE --coverage -Wl,--wrap=_exit,--undefined=__wrap__exit)
add_library(noctra_coverage_at_exit STATIC ${PROJECT_SOURCE_DIR}/tests/support/CoverageAtExit.cpp)
set_target_properties(noctra_coverage_at_exit PROPERTIES POSITION_INDEPENDENT_CODE ON)
target_link_libraries(noctra_options INTERFACE noctra_coverage_at_exit)

add_custom_target(coverage
    COMMAND ${PROJECT_SOURCE_DIR}/scripts/lib/report-coverage ${PROJECT_BINARY_DIR} app engine pwmsafe panel
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} USES_TERMINAL VERBATIM)
