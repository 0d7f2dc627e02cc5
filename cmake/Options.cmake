# Compile options shared by every target, and the switches behind the presets.

set(NOCTRA_SANITIZE "" CACHE STRING "Value for -fsanitize, e.g. address,undefined or thread")
option(NOCTRA_WERROR "Treat warnings as errors" OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "Build type" FORCE)
endif()

set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
find_package(Threads REQUIRED)

add_library(noctra_options INTERFACE)
target_compile_features(noctra_options INTERFACE cxx_std_20)
target_include_directories(noctra_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(noctra_options INTERFACE -Wall -Wextra -Wpedantic)
if(NOCTRA_WERROR)
    target_compile_options(noctra_options INTERFACE -Werror)
endif()
if(NOCTRA_SANITIZE)
    target_compile_options(noctra_options INTERFACE
        -fsanitize=${NOCTRA_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(noctra_options INTERFACE -fsanitize=${NOCTRA_SANITIZE})
else()
    # What costs next to nothing: checked copies, guarded stacks, and no addresses left to be filled in
    # (and overwritten) while the program runs.
    target_compile_options(noctra_options INTERFACE
        $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=2 -fstack-protector-strong>)
    target_link_options(noctra_options INTERFACE $<$<NOT:$<CONFIG:Debug>>:-Wl,-z,relro,-z,now>)
endif()
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON) # the panel's library shares code with the program
