# The compiler, its warnings, and what each kind of build adds.

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 14)
  message(FATAL_ERROR
    "GCC below 14 silently miscompiles everyday coroutines (double frees). "
    "Use clang 19: cmake -DCMAKE_CXX_COMPILER=clang++-19")
endif()

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

include(CheckPIESupported)
check_pie_supported()

find_program(CORVANE_CCACHE ccache)
if(CORVANE_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # Precompiled headers need the two relaxed checks.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    "${CMAKE_COMMAND};-E;env;CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime;${CORVANE_CCACHE}")
  set(CMAKE_C_COMPILER_LAUNCHER "${CORVANE_CCACHE}")
endif()

find_program(CORVANE_LLD NAMES ld.lld-19 ld.lld)
if(CORVANE_LLD)
  add_link_options("-fuse-ld=${CORVANE_LLD}")
endif()

option(CORVANE_WARNINGS_AS_ERRORS "Treat warnings as errors" OFF)
option(CORVANE_HARDENING "Add hardening flags" OFF)
set(CORVANE_SANITIZERS "" CACHE STRING "Comma-separated sanitizers, for example address,undefined,float-cast-overflow")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
  -Wimplicit-fallthrough -Wno-missing-field-initializers)
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,Clang>:-fpch-instantiate-templates>)
if(CORVANE_WARNINGS_AS_ERRORS)
  add_compile_options(-Werror)
endif()

if(CORVANE_HARDENING)
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong -fstack-clash-protection
    -fcf-protection -ftrivial-auto-var-init=zero)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  add_link_options(-Wl,-z,relro,-z,now -Wl,-z,noexecstack -Wl,--as-needed)
endif()

if(CORVANE_SANITIZERS)
  # The vptr check knows only types whose run-time information this build exports; gtkmm's control blocks are not
  # among them.
  add_compile_options(-fsanitize=${CORVANE_SANITIZERS} -fno-sanitize=vptr -fno-omit-frame-pointer
    -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${CORVANE_SANITIZERS})
endif()
