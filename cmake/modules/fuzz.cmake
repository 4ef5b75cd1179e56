# The fuzz targets (fuzz/): built with clang in build/fuzz as a project of their own, and
# a short smoke run of each in the tests. Without clang's fuzzer runtime (Debian package
# libclang-rt-14-dev) they are left out, and one test says so and is skipped.
include(ExternalProject)

set(QUILMARK_FUZZ_TARGETS airport_section boundary_section magdec scenery_cfg config_file
    database_file fs2004)
set(QUILMARK_FUZZ_SMOKE_SECONDS 4 CACHE STRING "Seconds each fuzz target runs in the tests")

find_program(QUILMARK_CLANGXX NAMES clang++ clang++-14)
set(fuzz_probe_ok FALSE)
if(QUILMARK_CLANGXX)
    set(probe_dir ${CMAKE_BINARY_DIR}/fuzz-probe)
    file(WRITE ${probe_dir}/probe.cpp
         "#include <cstddef>\n#include <cstdint>\n"
         "extern \"C\" int LLVMFuzzerTestOneInput(const uint8_t*, size_t) { return 0; }\n")
    execute_process(COMMAND ${QUILMARK_CLANGXX} -fsanitize=fuzzer,address,undefined
                            ${probe_dir}/probe.cpp -o ${probe_dir}/probe
                    RESULT_VARIABLE probe_result OUTPUT_QUIET ERROR_QUIET)
    if(probe_result EQUAL 0)
        set(fuzz_probe_ok TRUE)
    endif()
endif()

if(NOT fuzz_probe_ok)
    set(fuzz_missing "clang++ with libFuzzer, ASan and UBSan not found (Debian packages clang-14 and libclang-rt-14-dev); the fuzz targets are left out")
    message(STATUS "fuzz: ${fuzz_missing}")
    add_test(NAME fuzz_smoke_skipped COMMAND sh -c "echo '${fuzz_missing}'; exit 77")
    set_tests_properties(fuzz_smoke_skipped PROPERTIES SKIP_RETURN_CODE 77)
    return()
endif()

set(QUILMARK_FUZZ_DIR ${CMAKE_BINARY_DIR}/fuzz)
ExternalProject_Add(quilmark_fuzz
    SOURCE_DIR ${CMAKE_SOURCE_DIR}/fuzz
    BINARY_DIR ${QUILMARK_FUZZ_DIR}
    CMAKE_GENERATOR Ninja
    CMAKE_ARGS -DCMAKE_CXX_COMPILER=${QUILMARK_CLANGXX} -DCMAKE_BUILD_TYPE=RelWithDebInfo
               -DFUZZ_WARNINGS_AS_ERRORS=${QUILMARK_WARNINGS_AS_ERRORS}
    BUILD_ALWAYS TRUE
    INSTALL_COMMAND "")

foreach(target ${QUILMARK_FUZZ_TARGETS})
    add_test(NAME fuzz_smoke_${target}
             COMMAND bash ${CMAKE_SOURCE_DIR}/fuzz/run_target.sh ${QUILMARK_FUZZ_DIR} ${target}
                     ${QUILMARK_FUZZ_SMOKE_SECONDS} ${CMAKE_BINARY_DIR}/fuzz-smoke/corpus/${target}
                     ${CMAKE_BINARY_DIR}/fuzz-smoke/artifacts)
    set_tests_properties(fuzz_smoke_${target} PROPERTIES TIMEOUT 120)
endforeach()
