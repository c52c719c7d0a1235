# Build options and the flags they mean. The presets in CMakePresets.json set them.

option(LANTERNFOLD_TESTS "Build the tests and the replay of the fuzz corpora" ON)
option(LANTERNFOLD_BENCHMARKS "Build the benchmarks" OFF)
option(LANTERNFOLD_WERROR "Treat warnings as errors" OFF)
option(LANTERNFOLD_FUZZ "Build the fuzz targets with libFuzzer (clang only)" OFF)
option(LANTERNFOLD_COVERAGE "Instrument for coverage" OFF)
set(LANTERNFOLD_SANITIZERS "" CACHE STRING "Sanitizers to build with, for example address,undefined")

add_library(LanternfoldFlags INTERFACE)
target_include_directories(LanternfoldFlags INTERFACE "${CMAKE_SOURCE_DIR}")
# A record is built by naming the members that differ from their defaults, so leaving others out is
# no mistake.
target_compile_options(LanternfoldFlags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wimplicit-fallthrough -Wunused -Wno-missing-field-initializers)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Asio 1.22 looks for the coroutines of the technical specification there, and has none without.
  target_compile_definitions(LanternfoldFlags INTERFACE ASIO_HAS_CO_AWAIT=1)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # With full optimisation it takes an empty optional for a value that was never set. Builds for
  # development keep the warning.
  target_compile_options(LanternfoldFlags INTERFACE $<$<CONFIG:Release>:-Wno-maybe-uninitialized>)
endif()
if(LANTERNFOLD_WERROR)
  target_compile_options(LanternfoldFlags INTERFACE -Werror)
endif()
if(LANTERNFOLD_SANITIZERS)
  # Without the check of virtual tables: it asks the kernel through a pipe whether memory can be
  # read, and takes the refusals of the tests without a free descriptor or `write` for an answer.
  target_compile_options(LanternfoldFlags INTERFACE
    -fsanitize=${LANTERNFOLD_SANITIZERS} -fno-sanitize=vptr -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(LanternfoldFlags INTERFACE -fsanitize=${LANTERNFOLD_SANITIZERS})
endif()
if(LANTERNFOLD_FUZZ)
  target_compile_options(LanternfoldFlags INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(LANTERNFOLD_COVERAGE)
  target_compile_options(LanternfoldFlags INTERFACE --coverage)
  target_link_options(LanternfoldFlags INTERFACE --coverage)
endif()

find_program(LANTERNFOLD_CCACHE ccache)
if(LANTERNFOLD_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${LANTERNFOLD_CCACHE}")
endif()
