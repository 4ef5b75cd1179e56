# The Qt side: the QPainter surface, image export, printing and the desktop forms in one
# static library, and its test binary. Sources are the files named qt_*.cpp under src/,
# which the core leaves out.
find_package(Qt6 REQUIRED COMPONENTS Core Gui Widgets Svg PrintSupport)

file(GLOB QUILMARK_UI_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/*/qt_*.cpp)
add_library(quilmark_ui STATIC ${QUILMARK_UI_SOURCES})
target_link_libraries(quilmark_ui PUBLIC quilmark_core quilmark_net Qt6::Core Qt6::Gui Qt6::Widgets Qt6::Svg
                                         Qt6::PrintSupport)
target_compile_options(quilmark_ui PRIVATE ${QUILMARK_WARNINGS})
set_target_properties(quilmark_ui PROPERTIES AUTOMOC ON)

# Tests of the Qt side: tests/ui/*_qtest.cpp (a name the core test glob, *_test.cpp,
# does not match) and their main, which starts a QApplication on the offscreen platform.
find_package(GTest REQUIRED)
include(GoogleTest)
file(GLOB QUILMARK_UI_TEST_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/ui/*_qtest.cpp)
add_executable(quilmark_ui_tests ${QUILMARK_UI_TEST_SOURCES}
                                 ${CMAKE_SOURCE_DIR}/tests/ui/ui_test_main.cpp)
target_link_libraries(quilmark_ui_tests PRIVATE quilmark_ui GTest::gtest)
target_compile_options(quilmark_ui_tests PRIVATE ${QUILMARK_WARNINGS})
# Sample charts that the export tests write for a person to look at; not part of the tree.
target_compile_definitions(quilmark_ui_tests
                           PRIVATE QUILMARK_CHART_SAMPLES_DIR="${CMAKE_BINARY_DIR}/chart-samples")
gtest_discover_tests(quilmark_ui_tests DISCOVERY_TIMEOUT 60
                     PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen")
