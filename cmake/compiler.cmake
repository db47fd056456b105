# Warnings, sanitizers and the compiler cache: one place for every target.
find_program(CCACHE ccache)
if(CCACHE)
    # What the cache needs to know that headers read ahead are as good as their text.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
    add_compile_options(
        $<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess> "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
endif()

add_library(marlopad_flags INTERFACE)
target_compile_options(marlopad_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
target_compile_definitions(marlopad_flags INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
    QT_DISABLE_DEPRECATED_BEFORE=0x060400 QT_NO_FOREACH)
target_include_directories(marlopad_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)

if(MARLOPAD_SANITIZE)
    set(sanitize -fsanitize=${MARLOPAD_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(marlopad_flags INTERFACE ${sanitize} -g1)
    target_link_options(marlopad_flags INTERFACE ${sanitize} -fuse-ld=lld)
endif()

if(MARLOPAD_SANITIZE MATCHES address)

    # So much freed memory waits before any is used again. The usual 256 MiB are more than a processor's cache holds, so
    # that nearly every allocation of a busy test comes to cold memory, or to a page that was never touched.
    set(MARLOPAD_TEST_ENVIRONMENT ASAN_OPTIONS=quarantine_size_mb=8)

    # At its end a program looks for leaks, with ptrace(). Where a container forbids that, one without leaks fails too,
    # and the tests go without.
    include(CheckCXXSourceRuns)
    set(CMAKE_REQUIRED_FLAGS -fsanitize=address)
    check_cxx_source_runs("int main() {}" MARLOPAD_CAN_FIND_LEAKS)
    unset(CMAKE_REQUIRED_FLAGS)
    if(NOT MARLOPAD_CAN_FIND_LEAKS)
        string(APPEND MARLOPAD_TEST_ENVIRONMENT :detect_leaks=0)
    endif()
endif()

if(MARLOPAD_SANITIZE STREQUAL "thread")
    set(MARLOPAD_TEST_ENVIRONMENT TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/threads/races.supp)
endif()

if(MARLOPAD_FUZZ)
    # What is counted as reached while a fuzzer looks for inputs.
    target_compile_options(marlopad_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(CMAKE_UNITY_BUILD)
    # Sources that are compiled as one are no headers to each other, and their names do not hide each other.
    target_compile_options(marlopad_flags INTERFACE
        -Wno-shadow $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
endif()

# Test programs are not optimised, which takes half the time to compile; what they test is. Nor do they check every use
# of a pointer by themselves, which takes another third: AddressSanitizer sees what is not there.
add_library(marlopad_library_flags INTERFACE)
add_library(marlopad_test_flags INTERFACE)
if(MARLOPAD_SANITIZE)
    target_compile_options(marlopad_library_flags INTERFACE -O1)
endif()
if(MARLOPAD_SANITIZE MATCHES undefined)
    target_compile_options(marlopad_test_flags INTERFACE -fno-sanitize=null,alignment,object-size,vptr)
endif()
# Where in a line of the cache a function is linked changes the speed of its loops by up to a third. It shall not.
target_compile_options(marlopad_library_flags INTERFACE $<$<CONFIG:Release>:-falign-functions=64>)
