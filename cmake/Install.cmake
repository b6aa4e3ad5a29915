# `cmake --install`: headers under include/zutarnex, the libraries and the plug-in side by side, the tool, a CMake
# package and pkg-config files. Nothing in it names the prefix, so the installed tree can be moved.
include(CMakePackageConfigHelpers)

set(ZUTARNEX_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/zutarnex)
set(ZUTARNEX_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

set_target_properties(zutarnex_saxreader PROPERTIES EXPORT_NAME saxreader OUTPUT_NAME zutarnex-saxreader)
install(TARGETS zutarnex zutarnex_saxreader EXPORT zutarnexTargets
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/zutarnex)
install(TARGETS saxengine LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}) # where libzutarnex.so's RUNPATH finds it
file(RELATIVE_PATH bin_to_lib /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
set_target_properties(zutarnex_tool PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
install(TARGETS zutarnex_tool RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(EXPORT zutarnexTargets NAMESPACE zutarnex:: DESTINATION ${ZUTARNEX_CMAKE_DIR})
configure_package_config_file(cmake/zutarnexConfig.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/package/zutarnexConfig.cmake
                              INSTALL_DESTINATION ${ZUTARNEX_CMAKE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/package/zutarnexConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/package/zutarnexConfig.cmake
              ${CMAKE_CURRENT_BINARY_DIR}/package/zutarnexConfigVersion.cmake cmake/BoostHeaders.cmake
        DESTINATION ${ZUTARNEX_CMAKE_DIR})

file(RELATIVE_PATH ZUTARNEX_PKGCONFIG_TO_PREFIX /${ZUTARNEX_PKGCONFIG_DIR} /)
string(REGEX REPLACE "/$" "" ZUTARNEX_PKGCONFIG_TO_PREFIX ${ZUTARNEX_PKGCONFIG_TO_PREFIX})
foreach(pc zutarnex zutarnex-saxreader)
    configure_file(cmake/${pc}.pc.in ${CMAKE_CURRENT_BINARY_DIR}/package/${pc}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/package/${pc}.pc DESTINATION ${ZUTARNEX_PKGCONFIG_DIR})
endforeach()
