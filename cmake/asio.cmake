# velto_asio: the standalone asio headers, for the network code around the library. The library itself
# never uses them.
add_library(velto_asio INTERFACE)
target_compile_definitions(velto_asio INTERFACE ASIO_STANDALONE)

if(WIN32)
    # The headers lie among those of the building machine, which a cross compiler must not see: show it
    # these alone.
    set(velto_asio_dir "${CMAKE_BINARY_DIR}/asio")
    file(MAKE_DIRECTORY "${velto_asio_dir}")
    foreach(entry asio asio.hpp)
        if(NOT EXISTS "/usr/include/${entry}")
            message(FATAL_ERROR "/usr/include/${entry} is missing: install libasio-dev")
        endif()
        file(CREATE_LINK "/usr/include/${entry}" "${velto_asio_dir}/${entry}" SYMBOLIC)
    endforeach()
    target_include_directories(velto_asio SYSTEM INTERFACE "${velto_asio_dir}")
    target_compile_definitions(velto_asio INTERFACE _WIN32_WINNT=0x0A00)
    target_link_libraries(velto_asio INTERFACE ws2_32 mswsock)
else()
    find_package(Threads REQUIRED)
    target_link_libraries(velto_asio INTERFACE Threads::Threads)
endif()
