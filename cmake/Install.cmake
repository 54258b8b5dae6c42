# What `cmake --install` lays down. Everything finds everything else by relative paths: the tree may be moved.
include(CMakePackageConfigHelpers)

install(TARGETS rasterops EXPORT rasterops
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS rasterops-engine EXPORT rasterops
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS rasterops-cli RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
set_target_properties(rasterops-engine PROPERTIES EXPORT_NAME engine)

set(RASTEROPS_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/rasterops)
install(EXPORT rasterops FILE rasteropsTargets.cmake NAMESPACE rasterops:: DESTINATION ${RASTEROPS_CMAKE_DIR})
configure_package_config_file(cmake/rasteropsConfig.cmake.in ${PROJECT_BINARY_DIR}/rasteropsConfig.cmake
  INSTALL_DESTINATION ${RASTEROPS_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/rasteropsConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/rasteropsConfig.cmake ${PROJECT_BINARY_DIR}/rasteropsConfigVersion.cmake
  DESTINATION ${RASTEROPS_CMAKE_DIR})

# From the folder of the .pc file up to the prefix.
file(RELATIVE_PATH RASTEROPS_PC_TO_PREFIX
  ${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" RASTEROPS_PC_TO_PREFIX "${RASTEROPS_PC_TO_PREFIX}")
configure_file(cmake/rasterops.pc.in ${PROJECT_BINARY_DIR}/rasterops.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/rasterops.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# The command writes its own completion, from the catalogue.
set(RASTEROPS_COMPLETION ${PROJECT_BINARY_DIR}/completion/rasterops)
add_custom_command(OUTPUT ${RASTEROPS_COMPLETION}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/completion
  COMMAND rasterops-cli completion bash > ${RASTEROPS_COMPLETION}
  DEPENDS rasterops-cli
  VERBATIM)
add_custom_target(rasterops-completion ALL DEPENDS ${RASTEROPS_COMPLETION})
install(FILES ${RASTEROPS_COMPLETION} DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
