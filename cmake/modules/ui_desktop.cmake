# (Included after ui.cmake, whose targets it extends.)
# The desktop program. The forms are in quilmark_ui (files named qt_*.cpp); this adds the
# executable that starts them.
add_executable(quilmark ${CMAKE_SOURCE_DIR}/app/main.cpp)
target_link_libraries(quilmark PRIVATE quilmark_ui)
target_compile_options(quilmark PRIVATE ${QUILMARK_WARNINGS})

# Pictures of the forms for the documentation: scripts/screenshots.sh runs this under Xvfb.
add_executable(quilmark-screenshots ${CMAKE_SOURCE_DIR}/tools/screenshots/main.cpp)
# The aircraft in the chart's picture comes from the tests' fake module.
target_link_libraries(quilmark-screenshots PRIVATE quilmark_ui quilmark_test_support)
target_compile_options(quilmark-screenshots PRIVATE ${QUILMARK_WARNINGS})

# The forms' tests walk the flows on the generated sample world.
target_link_libraries(quilmark_ui_tests PRIVATE quilmark_test_support)
target_compile_definitions(quilmark_ui_tests
                           PRIVATE QUILMARK_SAMPLE_WORLD_DIR="${CMAKE_BINARY_DIR}/sample-world/FS2002")
add_dependencies(quilmark_ui_tests sample_world)

# PNG, SVG and PDF charts of KSEA at levels 9 and 14, written by quilmark-tool.
add_test(NAME chart_sample_images
         COMMAND bash ${CMAKE_SOURCE_DIR}/scripts/chart_samples.sh ${CMAKE_BINARY_DIR}/chart-samples)
set_tests_properties(chart_sample_images PROPERTIES
                     ENVIRONMENT "QUILMARK_BUILD=${CMAKE_BINARY_DIR};QT_QPA_PLATFORM=offscreen")

# The forms' tests that hang on a window manager (where a window lands, which one is on
# top) run again in an X server of their own with openbox; on the offscreen platform they
# report themselves skipped.
add_test(NAME ui_window_manager
         COMMAND bash ${CMAKE_SOURCE_DIR}/tests/ui/under_window_manager.sh
                 $<TARGET_FILE:quilmark_ui_tests> --gtest_filter=UnderWindowManager.*)
set_tests_properties(ui_window_manager PROPERTIES SKIP_RETURN_CODE 77)
