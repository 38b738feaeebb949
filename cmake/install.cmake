# What a host project gets: libraries, headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Velmora)

install(TARGETS velmora velmora_logging ostrine EXPORT VelmoraTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
if(TARGET velmora_log_writer)
  install(TARGETS velmora_log_writer LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} NAMELINK_SKIP)  # found by its soname
endif()
# Always below lib/, where the report program looks for its sibling.
install(TARGETS velmora_simulated
        RUNTIME DESTINATION lib/velmora-simulated
        LIBRARY DESTINATION lib/velmora-simulated
        ARCHIVE DESTINATION lib/velmora-simulated)
# Installed libraries find those that they need in their own folder.
file(RELATIVE_PATH libraries_from_simulated /lib/velmora-simulated /${CMAKE_INSTALL_LIBDIR})
set_target_properties(velmora velmora_logging ostrine PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(velmora_simulated PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_simulated}")
install(DIRECTORY include/velmora DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES logging/propertyconfiguratorex.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/logging)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(EXPORT VelmoraTargets NAMESPACE Velmora:: DESTINATION ${package_folder})

configure_package_config_file(cmake/VelmoraConfig.cmake.in ${CMAKE_BINARY_DIR}/VelmoraConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VelmoraConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/VelmoraConfig.cmake ${CMAKE_BINARY_DIR}/VelmoraConfigVersion.cmake
        DESTINATION ${package_folder})

# The tree can be moved, so the file tells where things are from where it stands itself.
file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pkgconfig ${prefix_from_pkgconfig})
configure_file(cmake/velmora.pc.in ${CMAKE_BINARY_DIR}/velmora.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/velmora.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
