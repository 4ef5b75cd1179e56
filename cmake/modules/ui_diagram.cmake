# (Included after ui.cmake, whose library it uses.)
# quilmark-diagram-dev: a developer's tool that draws the airport diagram and the trip kit
# of a simulator folder's airports into image files, for looking at them.
add_executable(quilmark-diagram-dev ${CMAKE_SOURCE_DIR}/tools/diagram_dev/main.cpp)
target_link_libraries(quilmark-diagram-dev PRIVATE quilmark_ui quilmark_test_support)
target_compile_options(quilmark-diagram-dev PRIVATE ${QUILMARK_WARNINGS})
