# What `cmake --install` puts where, and the Debian package made of it.
#
#   bin/gritwell                      the command-line host
#   lib/gritwell/GritwellPlugin.so    the plug-in (outside lib/ proper: it is
#                                     loaded by path, never linked)
#   lib/libgritwell.so*, .a           the library, shared and static
#   include/gritwell/gritwell.h       its one public header
#   lib/cmake/Gritwell/               find_package(Gritwell) -> Gritwell::gritwell
#   lib/pkgconfig/gritwell.pc         pkg-config gritwell
#   lib/python3/dist-packages/        the Python module (Debian's site folder
#                                     for the system interpreter under /usr)
include(CMakePackageConfigHelpers)

set(GRITWELL_PYTHON_INSTALL_DIR "lib/python3/dist-packages" CACHE STRING
    "Where the Python module is installed, under the prefix")

install(TARGETS gritwell RUNTIME DESTINATION bin)
install(TARGETS GritwellPlugin LIBRARY DESTINATION lib/gritwell)
install(TARGETS gritwell_shared gritwell_static EXPORT GritwellTargets
        LIBRARY DESTINATION lib ARCHIVE DESTINATION lib)
install(FILES ${PROJECT_SOURCE_DIR}/include/gritwell/gritwell.h DESTINATION include/gritwell)
install(EXPORT GritwellTargets NAMESPACE Gritwell:: DESTINATION lib/cmake/Gritwell)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/GritwellConfig.cmake.in
  ${CMAKE_BINARY_DIR}/GritwellConfig.cmake INSTALL_DESTINATION lib/cmake/Gritwell)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/GritwellConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/GritwellConfig.cmake ${CMAKE_BINARY_DIR}/GritwellConfigVersion.cmake
        DESTINATION lib/cmake/Gritwell)
configure_file(${CMAKE_CURRENT_LIST_DIR}/gritwell.pc.in ${CMAKE_BINARY_DIR}/gritwell.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/gritwell.pc DESTINATION lib/pkgconfig)
if(GRITWELL_BUILD_PYTHON)
  install(TARGETS gritwell_python LIBRARY DESTINATION ${GRITWELL_PYTHON_INSTALL_DIR})
endif()

# cpack -G DEB: one package with all of the above under /usr. Its library
# dependencies come from dpkg-shlibdeps, which reads the installed files.
set(CPACK_PACKAGE_NAME gritwell)
set(CPACK_PACKAGE_VENDOR "Gritwell")
set(CPACK_PACKAGE_CONTACT "Gritwell developers <gritwell@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "procedural texture generators: plug-in, command, C++ library and Python module")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The module is built for one interpreter's minor version.
if(GRITWELL_BUILD_PYTHON)
  math(EXPR python_next_minor "${Python3_VERSION_MINOR} + 1")
  set(python_version ${Python3_VERSION_MAJOR}.${Python3_VERSION_MINOR})
  set(CPACK_DEBIAN_PACKAGE_DEPENDS
      "python3 (>= ${python_version}), python3 (<< ${Python3_VERSION_MAJOR}.${python_next_minor}), python3-numpy")
endif()
# Without the build's debugging sections: a third of the size, the same code.
set(CPACK_STRIP_FILES TRUE)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_GENERATOR DEB)
include(CPack)
