# What every target shares: standard, warnings, and where header-only packages are found.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_package(OpenMP REQUIRED COMPONENTS CXX)
if(WIN32)
  # By the compiler's own switch, which takes the static runtime; the module found the one that needs a DLL.
  set_target_properties(OpenMP::OpenMP_CXX PROPERTIES INTERFACE_LINK_LIBRARIES "" INTERFACE_LINK_OPTIONS -fopenmp)
endif()

# Warnings and flags of our own code; never exported.
add_library(numcore_flags INTERFACE)
target_compile_options(
  numcore_flags
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wdouble-promotion
            $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
            $<$<BOOL:${NUMCORE_WERROR}>:-Werror>
            # g++ 12 finds overlaps in std::string's own code (its bug 105651).
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
            # The same bits on every instruction set: fused operations only where they are written as such.
            -ffp-contract=off)
if(WIN32)
  # g++ for Windows does not align the stack for 32-byte vectors; unaligned moves are safe.
  target_compile_options(numcore_flags INTERFACE -Wa,-muse-unaligned-vector-move)
endif()

# Header-only packages live in /usr/include, which a cross-compiler must not see as a whole:
# link the few that are used into the build tree.
function(numcore_header_package target)
  set(shim ${CMAKE_BINARY_DIR}/packages)
  file(MAKE_DIRECTORY ${shim})
  foreach(name IN LISTS ARGN)
    find_path(NUMCORE_HAVE_${name} ${name} PATHS /usr/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH REQUIRED)
    if(NOT EXISTS ${shim}/${name})
      file(CREATE_LINK ${NUMCORE_HAVE_${name}}/${name} ${shim}/${name} SYMBOLIC)
    endif()
  endforeach()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${shim})
endfunction()

# One OBJECT library per subsystem, linked into the shared library and into the unit tests.
function(numcore_subsystem name)
  add_library(numcore_${name} OBJECT ${ARGN})
  target_include_directories(numcore_${name} PUBLIC ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)
  target_compile_definitions(numcore_${name} PRIVATE NUMCORE_BUILDING)
  target_link_libraries(numcore_${name} PRIVATE numcore_flags OpenMP::OpenMP_CXX)
  set_property(GLOBAL APPEND PROPERTY NUMCORE_SUBSYSTEMS numcore_${name})
endfunction()
