# marlopad_library(NAME SOURCES… LINK LIBS…): one folder, one static library, whose headers are included from
# the repository's root.
function(marlopad_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE marlopad_flags)
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR})
endfunction()

# marlopad_test(NAME LINK LIBS… [SOURCES…]): NAME.cpp in the calling folder becomes one CTest test.
function(marlopad_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${arg_LINK} marlopad_flags)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/isolated $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

# marlopad_window_test(NAME LINK LIBS… [SOURCES…]): as marlopad_test, on a virtual X display with a window manager.
function(marlopad_window_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${arg_LINK} marlopad_flags)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/underx $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()

# marlopad_wayland_test(NAME LINK LIBS… [SOURCES…]): as marlopad_test, on a Wayland compositor, where no window is ever
# active, as there are no keys and no pointer.
function(marlopad_wayland_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${name}.cpp ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE Qt6::Test ${arg_LINK} marlopad_flags)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/underwayland $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
endfunction()
