# The full-size world (tools/full_world) and the bench tools (bench/). None runs in the
# tests; all build with everything else.
#   cmake --build build --target full_world      # writes build/full-world/FS2002 once
#   cmake --build build --target bench           # and runs quilmark-bench on it
#   cmake --build build --target process_bench   # whole processes, under Xvfb
set(QUILMARK_FULL_WORLD ${CMAKE_BINARY_DIR}/full-world/FS2002)
set(QUILMARK_FULL_WORLD_4 ${CMAKE_BINARY_DIR}/full-world-4/FS2002)

add_executable(quilmark-full-world ${CMAKE_SOURCE_DIR}/tools/full_world/main.cpp
                                   ${CMAKE_SOURCE_DIR}/tools/full_world/full_world.cpp)
target_link_libraries(quilmark-full-world PRIVATE quilmark_test_support)
target_compile_options(quilmark-full-world PRIVATE ${QUILMARK_WARNINGS})

add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/full-world/stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${CMAKE_BINARY_DIR}/full-world
    COMMAND quilmark-full-world ${QUILMARK_FULL_WORLD}
    COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/full-world/stamp
    DEPENDS quilmark-full-world
    COMMENT "Generating the full-size world")
add_custom_target(full_world DEPENDS ${CMAKE_BINARY_DIR}/full-world/stamp)

# Four times the world, for how the first run grows with it.
add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/full-world-4/stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${CMAKE_BINARY_DIR}/full-world-4
    COMMAND quilmark-full-world ${QUILMARK_FULL_WORLD_4} --factor 4
    COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/full-world-4/stamp
    DEPENDS quilmark-full-world
    COMMENT "Generating the world four times the full size")
add_custom_target(full_world_4 DEPENDS ${CMAKE_BINARY_DIR}/full-world-4/stamp)

add_executable(quilmark-bench ${CMAKE_SOURCE_DIR}/bench/quilmark_bench.cpp
                              ${CMAKE_SOURCE_DIR}/bench/world_files.cpp)
target_link_libraries(quilmark-bench PRIVATE quilmark_core)
target_compile_options(quilmark-bench PRIVATE ${QUILMARK_WARNINGS})
target_compile_definitions(quilmark-bench PRIVATE QUILMARK_FULL_WORLD_DIR="${QUILMARK_FULL_WORLD}")

add_custom_target(bench
    COMMAND quilmark-bench --world ${QUILMARK_FULL_WORLD}
    DEPENDS quilmark-bench full_world
    USES_TERMINAL)

# The QPainter redraw, once the Qt library is defined (cmake/modules/ui.cmake).
function(quilmark_bench_add_qt)
    if(TARGET quilmark_ui)
        target_sources(quilmark-bench PRIVATE ${CMAKE_SOURCE_DIR}/bench/qt_redraw_bench.cpp)
        target_link_libraries(quilmark-bench PRIVATE quilmark_ui)
        target_compile_definitions(quilmark-bench PRIVATE QUILMARK_BENCH_QT)
    endif()
endfunction()
cmake_language(DEFER CALL quilmark_bench_add_qt)

# Whole processes as a user starts them, beside cat and a program that merely reads the
# same files into memory; the desktop program's forms run under an X server with a window
# manager, as in the screenshots.
add_executable(quilmark-read-files ${CMAKE_SOURCE_DIR}/bench/read_files.cpp)
target_compile_options(quilmark-read-files PRIVATE ${QUILMARK_WARNINGS})

add_executable(quilmark-bench-desktop ${CMAKE_SOURCE_DIR}/bench/qt_desktop_driver.cpp)
# The simulator's module is the tests' stand-in, so that the chart opens without a message.
target_link_libraries(quilmark-bench-desktop PRIVATE quilmark_ui quilmark_test_support)
target_compile_options(quilmark-bench-desktop PRIVATE ${QUILMARK_WARNINGS})

add_executable(quilmark-process-bench ${CMAKE_SOURCE_DIR}/bench/process_bench.cpp
                                      ${CMAKE_SOURCE_DIR}/bench/world_files.cpp)
target_link_libraries(quilmark-process-bench PRIVATE quilmark_core)
target_compile_options(quilmark-process-bench PRIVATE ${QUILMARK_WARNINGS})
target_compile_definitions(quilmark-process-bench PRIVATE
    QUILMARK_TOOL_PATH="$<TARGET_FILE:quilmark-tool>"
    QUILMARK_DESKTOP_DRIVER_PATH="$<TARGET_FILE:quilmark-bench-desktop>"
    QUILMARK_READ_FILES_PATH="$<TARGET_FILE:quilmark-read-files>")

add_custom_target(process_bench
    COMMAND bash ${CMAKE_SOURCE_DIR}/tests/ui/under_window_manager.sh
            $<TARGET_FILE:quilmark-process-bench> --world ${QUILMARK_FULL_WORLD}
            --world4 ${QUILMARK_FULL_WORLD_4}
    DEPENDS quilmark-process-bench quilmark-tool quilmark-read-files quilmark-bench-desktop
            full_world full_world_4
    USES_TERMINAL)
