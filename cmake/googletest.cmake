# velto_gtest: GoogleTest and GoogleMock with a main function, from Debian in either case.
add_library(velto_gtest INTERFACE)

if(WIN32)
    # Debian has no mingw build of it, but its sources.
    set(CMAKE_POLICY_DEFAULT_CMP0077 NEW) # its options heed the next line
    set(INSTALL_GTEST OFF)
    add_subdirectory(/usr/src/googletest "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
    foreach(target gtest gmock gmock_main)
        target_compile_options(${target} PRIVATE -w)
    endforeach()
    target_link_libraries(velto_gtest INTERFACE gmock_main)
else()
    find_package(GTest REQUIRED)
    target_link_libraries(velto_gtest INTERFACE GTest::gmock_main)
endif()
