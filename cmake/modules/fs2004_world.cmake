# The full-size FS2004 world (tools/full_world/fs2004_world.cpp), for the benchmarks beside
# the FS2002 one. It runs in no test.
#   cmake --build build --target full_world_fs2004   # writes build/full-world-fs2004/FS2004
set(QUILMARK_FULL_WORLD_FS2004 ${CMAKE_BINARY_DIR}/full-world-fs2004/FS2004)
add_executable(quilmark-full-world-fs2004 ${CMAKE_SOURCE_DIR}/tools/full_world/fs2004_world.cpp)
target_link_libraries(quilmark-full-world-fs2004 PRIVATE quilmark_test_support)
target_compile_options(quilmark-full-world-fs2004 PRIVATE ${QUILMARK_WARNINGS})
add_custom_command(
    OUTPUT ${CMAKE_BINARY_DIR}/full-world-fs2004/stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${CMAKE_BINARY_DIR}/full-world-fs2004
    COMMAND quilmark-full-world-fs2004 ${QUILMARK_FULL_WORLD_FS2004}
    COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/full-world-fs2004/stamp
    DEPENDS quilmark-full-world-fs2004
    COMMENT "Generating the full-size FS2004 world")
add_custom_target(full_world_fs2004 DEPENDS ${CMAKE_BINARY_DIR}/full-world-fs2004/stamp)
