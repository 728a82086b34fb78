# Installs the libraries, the headers of hosts, a CMake package and pkg-config files, in three components for
# distributions: what programs run with, what hosts are built with, and the kit for hosts' own tests, which stands for a
# device and so brings the interfaces to devices. The programs are a fourth, "tools", and a fifth is "documentation".
#
# The folders are parts of one library: they lend their headers to the installation and are not exported.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/OrivexSDK)
file(RELATIVE_PATH pc_to_include ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_FULL_INCLUDEDIR})

install(TARGETS orivex_export orivex_models orivex_platform orivex_session orivex_sdk FILE_SET host COMPONENT development)
install(TARGETS orivex_platform orivex_testing FILE_SET HEADERS COMPONENT testing)

# Installs a library with what finds it.
function(orivex_package name export component description requires)
  install(TARGETS ${name} EXPORT ${export}
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE COMPONENT ${component}
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  configure_file(cmake/package/Library.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT ${component})
endfunction()

orivex_package(OrivexSDK OrivexSDK development "${PROJECT_DESCRIPTION}" "")
orivex_package(OrivexTesting OrivexTesting testing "A device in memory with virtual time, to test hosts of OrivexSDK" OrivexSDK)
if(TARGET OrivexGtk)
  install(TARGETS orivex_gtk FILE_SET host COMPONENT development)
  orivex_package(OrivexGtk OrivexSDK development "OrivexSDK on GTK 4 and WebKitGTK" "OrivexSDK gtk4 libadwaita-1")
endif()

if(TARGET OrivexGlib)
  install(TARGETS OrivexGlib
    LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
    FILE_SET HEADERS COMPONENT development)
  set(name orivex-glib)
  set(description "OrivexSDK for C and every language with GObject introspection")
  set(requires gtk4)
  configure_file(cmake/package/Library.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
  install(FILES ${ORIVEX_TYPELIB} DESTINATION ${CMAKE_INSTALL_LIBDIR}/girepository-1.0 COMPONENT introspection)
  install(FILES ${ORIVEX_GIR} DESTINATION ${CMAKE_INSTALL_DATADIR}/gir-1.0 COMPONENT development)
  if(ORIVEX_VAPI)
    install(FILES ${ORIVEX_VAPI} DESTINATION ${CMAKE_INSTALL_DATADIR}/vala/vapi COMPONENT development)
  endif()
endif()

install(EXPORT OrivexSDK NAMESPACE Orivex:: FILE OrivexSDKTargets.cmake DESTINATION ${package_dir}
  COMPONENT development)
install(EXPORT OrivexTesting NAMESPACE Orivex:: FILE OrivexTestingTargets.cmake DESTINATION ${package_dir}
  COMPONENT testing)
configure_package_config_file(cmake/package/OrivexSDKConfig.cmake.in OrivexSDKConfig.cmake
  INSTALL_DESTINATION ${package_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(OrivexSDKConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/OrivexSDKConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/OrivexSDKConfigVersion.cmake
  DESTINATION ${package_dir} COMPONENT development)

# For the authors of chat pages: what an editor knows the messages by, and the page that tries each.
install(DIRECTORY page DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/liborivex-doc COMPONENT documentation)
