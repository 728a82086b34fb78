# Installs what a host needs: the libraries, the headers of every folder, a CMake package and pkg-config files.
#
# The folders are parts of one library: they lend their headers to the installation and are not exported.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/OrivexSDK)
file(RELATIVE_PATH pc_to_include ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})

foreach(folder models platform session media voice sdk)
  install(TARGETS orivex_${folder} FILE_SET HEADERS)
endforeach()

# Installs a target under its public name, with the headers that are its own.
function(orivex_package target name description requires)
  # Under the same name where this project is a subproject of the host.
  if(NOT TARGET Orivex::${name})
    add_library(Orivex::${name} ALIAS ${target})
  endif()
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
  get_target_property(header_sets ${target} INTERFACE_HEADER_SETS)
  if(header_sets)
    set(headers FILE_SET HEADERS)
  endif()
  install(TARGETS ${target} EXPORT OrivexSDK ${headers} INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

  get_target_property(library ${target} OUTPUT_NAME)
  if(NOT library)
    set(library ${target})
  endif()
  configure_file(cmake/package/Library.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

orivex_package(OrivexSDK OrivexSDK "${PROJECT_DESCRIPTION}" "")
orivex_package(orivex_testing OrivexTesting "A device in memory with virtual time, to test hosts of OrivexSDK" OrivexSDK)
# A host's compiler may differ from ours, and an archive of intermediate code suits one compiler only.
set_target_properties(orivex_testing PROPERTIES INTERPROCEDURAL_OPTIMIZATION OFF)
if(TARGET orivex_gtk)
  orivex_package(orivex_gtk OrivexGtk "OrivexSDK on GTK 4 and WebKitGTK" "OrivexSDK gtk4 libadwaita-1")
endif()

install(EXPORT OrivexSDK NAMESPACE Orivex:: FILE OrivexSDKTargets.cmake DESTINATION ${package_dir})
configure_package_config_file(cmake/package/OrivexSDKConfig.cmake.in OrivexSDKConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(OrivexSDKConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/OrivexSDKConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/OrivexSDKConfigVersion.cmake
  DESTINATION ${package_dir})
