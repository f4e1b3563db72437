# Install rules and the package configuration: after `cmake --install`, another project finds the
# library with find_package(krvaxservice) and links krvaxservice::krvaxservice.
include(CMakePackageConfigHelpers)

set(KORVI_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/krvaxservice)
set(KORVI_HEADER_DIR ${CMAKE_INSTALL_INCLUDEDIR}/krvaxservice)

set_target_properties(korvi_deps PROPERTIES EXPORT_NAME deps)
install(TARGETS krvaxservice korvi_deps EXPORT krvaxserviceTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
    RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(TARGETS korvictl RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

# Headers keep the paths the sources include them by ("model/Tuning.h"); the host stand-ins'
# headers (cutils/properties.h, sfxparamstorage/..., ...) go beside them, since the library's
# headers include them by their platform paths.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/ DESTINATION ${KORVI_HEADER_DIR}
    FILES_MATCHING PATTERN "*.h")
foreach(dir ${KORVI_PLATFORM_INCLUDES})
  if(IS_DIRECTORY ${dir})
    install(DIRECTORY ${dir}/ DESTINATION ${KORVI_HEADER_DIR} FILES_MATCHING PATTERN "*.h")
  endif()
endforeach()

install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR})
# The sample device root: an installed korvictl boots over a scratch copy of it by default.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/ DESTINATION ${CMAKE_INSTALL_DATADIR}/krvaxservice/data)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DOCDIR})

install(EXPORT krvaxserviceTargets NAMESPACE krvaxservice:: DESTINATION ${KORVI_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/krvaxserviceConfig.cmake.in
    ${PROJECT_BINARY_DIR}/krvaxserviceConfig.cmake
    INSTALL_DESTINATION ${KORVI_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/krvaxserviceConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/krvaxserviceConfig.cmake
    ${PROJECT_BINARY_DIR}/krvaxserviceConfigVersion.cmake
    DESTINATION ${KORVI_CMAKE_DIR})
