# What users get, and in which packages: the library with its header, and the simulator.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(velto_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/VeltoAPI64")

install(TARGETS VeltoAPI64 EXPORT VeltoAPI64Targets
        RUNTIME COMPONENT library
        LIBRARY COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE COMPONENT development)
install(FILES include/velto/velto.h DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/velto"
        COMPONENT development)
install(EXPORT VeltoAPI64Targets NAMESPACE VeltoAPI64:: DESTINATION "${velto_package_dir}"
        COMPONENT development)

write_basic_package_version_file(VeltoAPI64ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
file(WRITE "${CMAKE_CURRENT_BINARY_DIR}/VeltoAPI64Config.cmake"
     "include(\"\${CMAKE_CURRENT_LIST_DIR}/VeltoAPI64Targets.cmake\")\n")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/VeltoAPI64Config.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/VeltoAPI64ConfigVersion.cmake"
        DESTINATION "${velto_package_dir}" COMPONENT development)

configure_file(cmake/VeltoAPI64.pc.in VeltoAPI64.pc @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/VeltoAPI64.pc"
        DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)

if(WIN32)
    # `lib /def:VeltoAPI64.def /machine:x64` makes an import library for Microsoft's linker.
    install(FILES src/api/velto.def DESTINATION "${CMAKE_INSTALL_LIBDIR}" RENAME VeltoAPI64.def
            COMPONENT development)
else()
    install(TARGETS veltosim COMPONENT simulator)
    install(FILES sim/veltosim.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT simulator)
endif()

set(CPACK_PACKAGE_NAME VeltoAPI64)
set(CPACK_PACKAGE_VENDOR "VeltoAPI64")
set(CPACK_PACKAGE_CONTACT "maintainers@veltoapi64.invalid")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Client library of a broadcast video server")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_STRIP_FILES ON)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
    set(CPACK_PACKAGE_FILE_NAME "VeltoAPI64-${PROJECT_VERSION}-windows-x64")
else()
    set(CPACK_GENERATOR DEB)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
    set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
    set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libveltoapi64-1)
    set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libveltoapi64-dev)
    set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
    set(CPACK_DEBIAN_SIMULATOR_PACKAGE_NAME veltosim)
    set(CPACK_DEBIAN_SIMULATOR_PACKAGE_SECTION video)
endif()
include(CPack)
cpack_add_component(library DESCRIPTION "Client library of a broadcast video server")
cpack_add_component(development DEPENDS library
                    DESCRIPTION "Header and build files of VeltoAPI64")
cpack_add_component(simulator DESCRIPTION "Simulated broadcast video server")
