# One CMake target per folder. A folder sees the headers of the folders it names and of no other, so an include that
# points up or sideways does not compile.
#
#   orivex_folder(<name> SOURCES <cpp>... [HOST_HEADERS <h>...] [HEADERS <h>...] [DEPENDS <folder or library>...]
#                 [USES <private library>...])
#
# HOST_HEADERS are those that a host includes, by itself or through others. A folder is compiled once, and linked into the
# libraries that are shipped and into the tests, which reach what the libraries hide.
#
# The target is orivex_<name>, and the libraries of the system are PkgConfig::ORIVEX_<name>, so that a host that has this
# project as a subproject may have targets of the short names; inside, the short names do.
#
# Public headers lie in <folder>/include/orivex/<name>/, sources and private headers in <folder>/src/.

set(ORIVEX_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)

function(orivex_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_options(${target} PRIVATE ${ORIVEX_WARNINGS})
  if(ORIVEX_SANITIZE)
    target_compile_options(${target} PUBLIC -fsanitize=${ORIVEX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    # GCC 12 takes moved variants for uninitialized once a sanitizer is in between.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PUBLIC -Wno-maybe-uninitialized)
    endif()
    target_link_options(${target} PUBLIC -fsanitize=${ORIVEX_SANITIZE})
  endif()
endfunction()

# Sets `out` to the targets that are meant by short names; whatever else is among them stays as it is.
function(orivex_resolve out)
  set(resolved "")
  foreach(name IN LISTS ARGN)
    string(REPLACE "PkgConfig::" "PkgConfig::ORIVEX_" library "${name}")
    if(TARGET Orivex::${name})
      set(name Orivex::${name})
    elseif(TARGET ${library})
      set(name ${library})
    endif()
    list(APPEND resolved ${name})
  endforeach()
  set(${out} ${resolved} PARENT_SCOPE)
endfunction()

function(orivex_folder name)
  cmake_parse_arguments(ARG "" "" "SOURCES;HOST_HEADERS;HEADERS;DEPENDS;USES" ${ARGN})
  list(TRANSFORM ARG_SOURCES PREPEND src/)
  list(TRANSFORM ARG_HOST_HEADERS PREPEND include/orivex/${name}/)
  list(TRANSFORM ARG_HEADERS PREPEND include/orivex/${name}/)
  orivex_resolve(ARG_DEPENDS ${ARG_DEPENDS})
  orivex_resolve(ARG_USES ${ARG_USES})
  set(target orivex_${name})
  add_library(${target} OBJECT ${ARG_SOURCES})
  add_library(Orivex::${name} ALIAS ${target})
  target_sources(${target} PUBLIC
    FILE_SET host TYPE HEADERS BASE_DIRS include FILES ${ARG_HOST_HEADERS}
    FILE_SET HEADERS BASE_DIRS include FILES ${ARG_HEADERS})
  target_include_directories(${target} PRIVATE src)
  target_link_libraries(${target} PUBLIC Orivex::export ${ARG_DEPENDS} PRIVATE ${ARG_USES})
  orivex_compile_options(${target})
endfunction()

# Makes a shipped library of folders. What else a host's compiler needs of it is linked by the caller.
function(orivex_library name kind)
  add_library(${name} ${kind})
  add_library(Orivex::${name} ALIAS ${name})
  foreach(folder IN LISTS ARGN)
    # A host sees one library, not its parts: the folders stay out of the installed interface.
    target_link_libraries(${name} PUBLIC $<BUILD_INTERFACE:Orivex::${folder}>)
  endforeach()
  if(kind STREQUAL SHARED)
    target_link_options(${name} PRIVATE LINKER:--version-script=${PROJECT_SOURCE_DIR}/cmake/exports.map)
    set_target_properties(${name} PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  endif()
  # Until 1.0 each minor version may break what is linked against the one before.
  set_target_properties(${name} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
  orivex_compile_options(${name})
endfunction()

# What a test or a benchmark links of these folders: all, and nothing hidden.
function(orivex_parts name)
  add_library(${name} INTERFACE)
  foreach(folder IN LISTS ARGN)
    target_link_libraries(${name} INTERFACE Orivex::${folder})
    target_sources(${name} INTERFACE $<TARGET_OBJECTS:orivex_${folder}>)
  endforeach()
endfunction()
