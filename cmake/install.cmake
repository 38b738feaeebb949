# What a host project gets: libraries, headers, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/Velmora)

install(TARGETS velmora velmora_logging ostrine EXPORT VelmoraTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS velmora_simulated
        RUNTIME DESTINATION ${CMAKE_INSTALL_LIBDIR}/velmora-simulated
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/velmora-simulated
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}/velmora-simulated)
install(DIRECTORY include/velmora DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES logging/propertyconfiguratorex.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/logging)
install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(EXPORT VelmoraTargets NAMESPACE Velmora:: DESTINATION ${package_folder})

configure_package_config_file(cmake/VelmoraConfig.cmake.in ${CMAKE_BINARY_DIR}/VelmoraConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/VelmoraConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/VelmoraConfig.cmake ${CMAKE_BINARY_DIR}/VelmoraConfigVersion.cmake
        DESTINATION ${package_folder})

configure_file(cmake/velmora.pc.in ${CMAKE_BINARY_DIR}/velmora.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/velmora.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
