# The full-size world (tools/full_world) and the bench tool (bench/). Neither runs in the
# tests; both build with everything else.
#   cmake --build build --target full_world   # writes build/full-world/FS2002 once
#   cmake --build build --target bench        # and runs quilmark-bench on it
set(QUILMARK_FULL_WORLD ${CMAKE_BINARY_DIR}/full-world/FS2002)

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

add_executable(quilmark-bench ${CMAKE_SOURCE_DIR}/bench/quilmark_bench.cpp)
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
