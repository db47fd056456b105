# What most sources include is read ahead, once for the libraries and once for the tests, which are compiled with other
# flags; and apart for who knows Widgets, so that what needs Qt Core alone cannot come to know more. It is a choice: with
# everything that the toolkit's modules have, each source would take a second longer.
set(read_ahead_Core <QCoreApplication> <QDir> <QHash> <QMap> <QPointer> <QTimer>
    <algorithm> <functional> <memory> <vector>)
set(read_ahead_Widgets ${read_ahead_Core}
    <QApplication> <QComboBox> <QDialog> <QKeyEvent> <QLabel> <QLineEdit> <QMainWindow> <QMenu> <QPainter> <QPushButton>
    <QScreen> <QScrollBar>)
set(read_ahead_for_tests <QRandomGenerator> <QSignalSpy> <QTemporaryDir> <QTest>)

function(marlopad_read_ahead kind)
    foreach(module Core Widgets)
        set(name read_ahead_${module}_for_${kind})
        file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/${name}.cpp CONTENT "")
        add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/${name}.cpp)
        target_link_libraries(${name} PRIVATE Qt6::${module} marlopad_flags ${ARGN})
        target_precompile_headers(${name} PRIVATE ${read_ahead_${module}} ${read_ahead_for_${kind}})
        set_target_properties(${name} PROPERTIES AUTOMOC OFF AUTORCC OFF)
    endforeach()
endfunction()

marlopad_read_ahead(libraries marlopad_library_flags)
if(BUILD_TESTING AND NOT MARLOPAD_FUZZ)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
    target_link_libraries(marlopad_test_flags INTERFACE Qt6::Test)
    # They name each folder of tests, so what is read ahead would fit none; no test asks for them.
    target_compile_options(marlopad_test_flags INTERFACE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
    marlopad_read_ahead(tests marlopad_test_flags)
endif()

# Widgets is what is read ahead for TARGET if it knows them through LIBRARIES, otherwise Core.
function(marlopad_use_read_ahead target kind libraries)
    set(known Core)
    foreach(library ${libraries})
        string(REPLACE Qt6:: "" module ${library})
        if(library MATCHES "^marlopad_")
            get_target_property(module ${library} MARLOPAD_MODULE)
        endif()
        if(module STREQUAL Widgets)
            set(known Widgets)
        endif()
    endforeach()
    set_target_properties(${target} PROPERTIES MARLOPAD_MODULE ${known})
    target_precompile_headers(${target} REUSE_FROM read_ahead_${known}_for_${kind})
endfunction()

# For meta-objects only our own headers are read: the toolkit's say nothing that moc would write, and take it 97 % of its
# time.
get_target_property(moc Qt6::moc IMPORTED_LOCATION)
configure_file(${CMAKE_CURRENT_LIST_DIR}/moc.in ${CMAKE_BINARY_DIR}/moc @ONLY USE_SOURCE_PERMISSIONS)

# marlopad_library(NAME SOURCES… LINK LIBS…): one room, one static library, whose headers are included as
# "room/header.h".
function(marlopad_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE marlopad_flags marlopad_library_flags)
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    set_target_properties(${name} PROPERTIES AUTOMOC_EXECUTABLE ${CMAKE_BINARY_DIR}/moc)
    marlopad_use_read_ahead(${name} libraries "${arg_LINK}")
endfunction()

# marlopad_test_program(LINK LIBS…): the calling folder's tests are one program.
function(marlopad_test_program)
    cmake_parse_arguments(arg "" "" "LINK" ${ARGN})
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    add_executable(${folder}_tests ${CMAKE_SOURCE_DIR}/tests/testprogram.cpp)
    target_link_libraries(${folder}_tests PRIVATE ${arg_LINK} marlopad_flags marlopad_test_flags)
    target_include_directories(${folder}_tests PRIVATE ${CMAKE_SOURCE_DIR})
    set_target_properties(${folder}_tests PROPERTIES AUTOMOC_EXECUTABLE ${CMAKE_BINARY_DIR}/moc)
    marlopad_use_read_ahead(${folder}_tests tests "${arg_LINK}")
endfunction()

# ./test has three places for tests on each core: one that works takes two, one that mostly waits takes one. So three
# that work share two cores, as each of them waits now and then.
set(MARLOPAD_BUSY_TEST 2)

# marlopad_test(NAME [OF TEST] [ON x|wayland] [ENVIRONMENT VARIABLE=VALUE…]): one CTest test, labelled with its folder.
# NAME.cpp, which may stand in another folder, joins the program of this one; with OF it is another test's file, run once
# more. It runs without a screen, on a virtual X display with a window manager, or on a Wayland compositor, where no
# window is ever active, as there are no keys and no pointer.
function(marlopad_test file)
    cmake_parse_arguments(arg "" "OF;ON" "ENVIRONMENT" ${ARGN})
    get_filename_component(name ${file} NAME)
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    set(runner isolated)
    if(arg_ON)
        set(runner under${arg_ON})
    endif()
    if(NOT arg_OF)
        set(arg_OF ${name})
        target_sources(${folder}_tests PRIVATE ${file}.cpp)
    endif()
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/${runner} $<TARGET_FILE:${folder}_tests> ${arg_OF})
    list(PREPEND arg_ENVIRONMENT ${MARLOPAD_TEST_ENVIRONMENT})
    set_tests_properties(${name} PROPERTIES TIMEOUT 600 PROCESSORS ${MARLOPAD_BUSY_TEST} LABELS ${folder}
        ENVIRONMENT "${arg_ENVIRONMENT}")
endfunction()
