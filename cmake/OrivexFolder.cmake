# One CMake target per folder. A folder sees the headers of the folders it names and of no other, so an include that
# points up or sideways does not compile.
#
#   orivex_folder(<name> SOURCES <cpp>... HEADERS <h>... [DEPENDS <folder or library>...] [USES <private library>...]
#                 [SEES <folder>...])
#
# SEES: a backend, which links all of OrivexSDK and whose users do, sees only these folders of it.
# The target is orivex_<name>, and the libraries of the system are PkgConfig::ORIVEX_<name>, so that a host that has this
# project as a subproject may have targets of the short names; inside, the short names do.
#
# Public headers lie in <folder>/include/orivex/<name>/, sources and private headers in <folder>/src/.

set(ORIVEX_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)

function(orivex_compile_options target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
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
  cmake_parse_arguments(ARG "" "KIND" "SOURCES;HEADERS;DEPENDS;USES;SEES" ${ARGN})
  if(NOT ARG_KIND)
    set(ARG_KIND OBJECT)
  endif()
  list(TRANSFORM ARG_SOURCES PREPEND src/)
  list(TRANSFORM ARG_HEADERS PREPEND include/orivex/${name}/)
  orivex_resolve(ARG_DEPENDS ${ARG_DEPENDS})
  orivex_resolve(ARG_USES ${ARG_USES})
  set(target orivex_${name})
  add_library(${target} ${ARG_KIND} ${ARG_SOURCES})
  add_library(Orivex::${name} ALIAS ${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS include FILES ${ARG_HEADERS})
  target_include_directories(${target} PRIVATE src)
  target_link_libraries(${target} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_USES})
  if(ARG_SEES)
    target_link_libraries(${target} INTERFACE OrivexSDK)
    if(ARG_KIND STREQUAL SHARED)
      target_link_libraries(${target} PRIVATE $<LINK_ONLY:OrivexSDK>)
    endif()
  endif()
  foreach(folder IN LISTS ARG_SEES)
    target_include_directories(${target} PRIVATE $<TARGET_PROPERTY:orivex_${folder},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
  orivex_compile_options(${target})
endfunction()
