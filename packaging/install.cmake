# What `cmake --install` lays down, in four components:
#   headers   interface, tuning store, schema and platform declarations, under include/kirocore; package files
#   library   com.pelto.stats.kirocore.so.0
#   desk      the stand-in of the framework's utility library; left out on a device, which has the real one
#   programs  kirosim, kirotune, their manual pages and their completion for bash; kirolab with its corpora and scenes
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# The headers of the store that a host sees through parameters/tuningsetmanager.h; the others are the store's own.
set(STORE_HEADERS modeentry moduledata modulereference parameterdataapi parameterlogging parametermodetable parametermodule
    parametersetmanager parametersync plist tablemodule tuningmode tuningsetmanager versionunion)
list(TRANSFORM STORE_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/parameters/)
list(TRANSFORM STORE_HEADERS APPEND .h)

set(header_dir ${CMAKE_INSTALL_INCLUDEDIR}/kirocore)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/kirocore)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/interface ${PROJECT_SOURCE_DIR}/schema DESTINATION ${header_dir} COMPONENT headers
        FILES_MATCHING PATTERN *.h PATTERN *.def)
install(FILES ${STORE_HEADERS} DESTINATION ${header_dir}/parameters COMPONENT headers)
install(FILES ${PROJECT_SOURCE_DIR}/parameters/live/parameterctvalue.h
              ${PROJECT_SOURCE_DIR}/parameters/live/verniercustomhandler.h
        DESTINATION ${header_dir}/parameters/live COMPONENT headers)
install(FILES ${PROJECT_SOURCE_DIR}/platform/tavotypes.h ${PROJECT_SOURCE_DIR}/platform/tavocommonutils.h
        DESTINATION ${header_dir}/platform COMPONENT headers)
install(FILES ${PROJECT_SOURCE_DIR}/platform/tavodesk.h DESTINATION ${header_dir}/platform COMPONENT desk)

# On a desk the utility library lies beside the core, and programs find both from where they stand.
set_target_properties(kirocore PROPERTIES INSTALL_RPATH "$ORIGIN")
set_target_properties(kirosim kirotune PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
target_compile_features(kirocore INTERFACE cxx_std_20)

# No link without version: hosts name the file as it is on a device.
install(TARGETS kirocore EXPORT kirocoreTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_SKIP
        INCLUDES DESTINATION ${header_dir})
install(TARGETS tavocommonutils EXPORT kirocoreDeskTargets LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT desk
        NAMELINK_SKIP INCLUDES DESTINATION ${header_dir})
install(TARGETS kirosim kirotune RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)
install(DIRECTORY ${PROJECT_BINARY_DIR}/share/ DESTINATION ${CMAKE_INSTALL_DATADIR} COMPONENT programs)

# The lab's corpora name scenes beside them, in the source tree and installed.
set(lab_dir ${CMAKE_INSTALL_DATADIR}/kirolab)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/lab/kirolab ${PROJECT_SOURCE_DIR}/lab/corpora DESTINATION ${lab_dir}/lab
        COMPONENT programs PATTERN __pycache__ EXCLUDE)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/scenes ${PROJECT_SOURCE_DIR}/examples/panoramas
        ${PROJECT_SOURCE_DIR}/examples/tunings DESTINATION ${lab_dir}/examples COMPONENT programs)
install(PROGRAMS ${PROJECT_SOURCE_DIR}/lab/bin/kirolab DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT programs)

install(EXPORT kirocoreTargets NAMESPACE kirocore:: DESTINATION ${package_dir} COMPONENT headers)
install(EXPORT kirocoreDeskTargets NAMESPACE kirocore:: DESTINATION ${package_dir} COMPONENT desk)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/kirocoreConfig.cmake.in ${PROJECT_BINARY_DIR}/kirocoreConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/kirocoreConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/kirocoreConfig.cmake ${PROJECT_BINARY_DIR}/kirocoreConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT headers)

# Relative to where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH prefix_from_pc /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" prefix_from_pc ${prefix_from_pc})
configure_file(${CMAKE_CURRENT_LIST_DIR}/kirocore.pc.in ${PROJECT_BINARY_DIR}/kirocore.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/kirocore.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT headers)
