# The simulator link's Windows side, cross-compiled with MinGW-w64: the bridges a Linux user
# runs in the simulator's Wine prefix (quilmark-bridge.exe, 64-bit, and quilmark-bridge32.exe,
# 32-bit, the one a 32-bit prefix can run), and for the tests a mock FSUIPC module of each
# width and the client with the Win32 transport. Then the tests that run them under Wine.
find_program(QUILMARK_MINGW_CXX x86_64-w64-mingw32-g++)
find_program(QUILMARK_MINGW32_CXX i686-w64-mingw32-g++)
if(NOT QUILMARK_MINGW_CXX)
    message(STATUS "link: x86_64-w64-mingw32-g++ not found (Debian package g++-mingw-w64-x86-64);"
                   " quilmark-bridge.exe and the Wine tests are left out")
    return()
endif()

set(LINK_WINDOWS_DIR ${CMAKE_BINARY_DIR}/link-windows)
set(LINK_SRC ${CMAKE_SOURCE_DIR}/src/link)
set(LINK_TOOLS ${CMAKE_SOURCE_DIR}/tools/bridge)
file(GLOB LINK_WINDOWS_HEADERS CONFIGURE_DEPENDS ${LINK_SRC}/*.h ${LINK_TOOLS}/*.h)
set(LINK_WINDOWS_FLAGS -std=c++20 -O2 -static -s ${QUILMARK_WARNINGS} -I${CMAKE_SOURCE_DIR}/src
    -I${LINK_TOOLS})

# quilmark_windows_exe(NAME [COMPILER cxx] SOURCES... [LIBS libs...]); the 64-bit compiler
# unless another is given.
function(quilmark_windows_exe name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "COMPILER" "LIBS")
    if(NOT arg_COMPILER)
        set(arg_COMPILER ${QUILMARK_MINGW_CXX})
    endif()
    set(output ${LINK_WINDOWS_DIR}/${name}.exe)
    add_custom_command(
        OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${LINK_WINDOWS_DIR}
        COMMAND ${arg_COMPILER} ${LINK_WINDOWS_FLAGS} -o ${output} ${arg_UNPARSED_ARGUMENTS}
                ${arg_LIBS}
        DEPENDS ${arg_UNPARSED_ARGUMENTS} ${LINK_WINDOWS_HEADERS}
        COMMENT "Cross-compiling ${name}.exe"
        VERBATIM)
    set(LINK_WINDOWS_OUTPUTS ${LINK_WINDOWS_OUTPUTS} ${output} PARENT_SCOPE)
endfunction()

set(LINK_BRIDGE_SOURCES
    ${LINK_TOOLS}/bridge_main.cpp ${LINK_TOOLS}/win32_transport.cpp
    ${LINK_SRC}/bridge_server.cpp ${LINK_SRC}/net_bridge_loop.cpp ${LINK_SRC}/request_list.cpp)
set(LINK_MOCK_SOURCES ${LINK_TOOLS}/mock_module.cpp ${LINK_SRC}/request_list.cpp)
quilmark_windows_exe(quilmark-bridge ${LINK_BRIDGE_SOURCES} LIBS -lws2_32)
quilmark_windows_exe(quilmark-mock-module ${LINK_MOCK_SOURCES})
# The bridges that installing puts in share/quilmark (data/CMakeLists.txt), one line each.
list(APPEND QUILMARK_BRIDGE_EXECUTABLES ${LINK_WINDOWS_DIR}/quilmark-bridge.exe)
quilmark_windows_exe(link-win32-check
    ${CMAKE_SOURCE_DIR}/tests/link/win32_client_check.cpp ${LINK_TOOLS}/win32_transport.cpp
    ${LINK_SRC}/fsuipc.cpp ${LINK_SRC}/request_list.cpp)
# FS2002 and FSUIPC are 32-bit programs, and many keep them in a 32-bit prefix, which runs
# only a 32-bit bridge.
if(QUILMARK_MINGW32_CXX)
    quilmark_windows_exe(quilmark-bridge32 COMPILER ${QUILMARK_MINGW32_CXX}
        ${LINK_BRIDGE_SOURCES} LIBS -lws2_32)
    quilmark_windows_exe(quilmark-mock-module32 COMPILER ${QUILMARK_MINGW32_CXX}
        ${LINK_MOCK_SOURCES})
    list(APPEND QUILMARK_BRIDGE_EXECUTABLES ${LINK_WINDOWS_DIR}/quilmark-bridge32.exe)
else()
    message(STATUS "link: i686-w64-mingw32-g++ not found (Debian package g++-mingw-w64-i686);"
                   " quilmark-bridge32.exe is left out")
endif()
add_custom_target(quilmark_link_windows ALL DEPENDS ${LINK_WINDOWS_OUTPUTS})

# The native side of the Wine tests.
add_executable(link_bridge_check ${CMAKE_SOURCE_DIR}/tests/link/bridge_check.cpp)
target_include_directories(link_bridge_check PRIVATE ${LINK_TOOLS})
target_link_libraries(link_bridge_check PRIVATE quilmark_net)
target_compile_options(link_bridge_check PRIVATE ${QUILMARK_WARNINGS})

# The tests share one Wine prefix in the build directory, made by whichever runs first
# (about 10 to 60 s), so they take turns. bridge32 skips, with its reason, where the
# machine's Wine runs no 32-bit programs.
set(LINK_WINE_MODES end-to-end malformed)
if(QUILMARK_MINGW32_CXX)
    list(APPEND LINK_WINE_MODES bridge32)
endif()
foreach(mode ${LINK_WINE_MODES})
    add_test(NAME link_wine_${mode}
             COMMAND bash ${CMAKE_SOURCE_DIR}/tests/link/wine_bridge_test.sh ${mode}
                     ${LINK_WINDOWS_DIR} $<TARGET_FILE:link_bridge_check>
                     ${CMAKE_BINARY_DIR}/link-wine-prefix)
    set_tests_properties(link_wine_${mode} PROPERTIES
        TIMEOUT 420 SKIP_RETURN_CODE 77 RESOURCE_LOCK quilmark_wine_prefix)
endforeach()
