# Compile options shared by every target, and the switches behind the presets.

set(NOCTRA_SANITIZE "" CACHE STRING "Value for -fsanitize, e.g. address,undefined or thread")
option(NOCTRA_COVERAGE "Count which lines and branches are run" OFF)
option(NOCTRA_WERROR "Treat warnings as errors" OFF)
option(NOCTRA_FUZZ "Make the targets in tests/fuzz programs of libFuzzer (clang)" OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
find_package(Threads REQUIRED)

add_library(noctra_options INTERFACE)
target_compile_features(noctra_options INTERFACE cxx_std_20)
target_include_directories(noctra_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(noctra_options INTERFACE -Wall -Wextra -Wpedantic
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety>)
if(NOCTRA_WERROR)
    target_compile_options(noctra_options INTERFACE -Werror)
endif()
if(NOCTRA_SANITIZE)
    target_compile_options(noctra_options INTERFACE
        -fsanitize=${NOCTRA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(noctra_options INTERFACE -fsanitize=${NOCTRA_SANITIZE})
else()
    # What costs next to nothing, in what is handed out; what a compiler or a processor lacks is left out.
    # scripts/check-hardening looks at what has come of it, and of the linker's options below.
    include(CheckCXXCompilerFlag)
    foreach(flag -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
        string(MAKE_C_IDENTIFIER "NOCTRA_HAS${flag}" has)
        check_cxx_compiler_flag(${flag} ${has})
        if(${has})
            target_compile_options(noctra_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:${flag}>)
        endif()
    endforeach()
    target_compile_options(noctra_options INTERFACE
        "$<$<NOT:$<CONFIG:Debug>>:-fstack-protector-strong;-D_FORTIFY_SOURCE=2;-D_GLIBCXX_ASSERTIONS>")
endif()
target_link_options(noctra_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
if(NOCTRA_FUZZ)
    # Tells libFuzzer where inputs lead; only the targets are linked with the library.
    target_compile_options(noctra_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(NOCTRA_COVERAGE)
    include(cmake/Coverage.cmake)
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON) # the panel's library shares code with the program
