# tvmsp_component(NAME <target> DIR <folder under src> [DEPS <targets>...])
# One subsystem folder: every .cpp below DIR except program entry files (main_*.cpp). A folder with no
# sources yet is an interface target, so that its dependants link the same either way.
# Its tests are the .cpp files below tests/DIR, built as test_<target>.
function(tvmsp_component)
  cmake_parse_arguments(ARG "" "NAME;DIR" "DEPS" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${ARG_DIR}/*.cpp")
  list(FILTER sources EXCLUDE REGEX "/main_[^/]*\\.cpp$")
  if(sources)
    add_library(${ARG_NAME} STATIC ${sources})
    target_include_directories(${ARG_NAME} PUBLIC "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(${ARG_NAME} PUBLIC ${ARG_DEPS})
  else()
    add_library(${ARG_NAME} INTERFACE)
    target_include_directories(${ARG_NAME} INTERFACE "${CMAKE_SOURCE_DIR}/src")
    target_link_libraries(${ARG_NAME} INTERFACE ${ARG_DEPS})
  endif()
  set_property(GLOBAL APPEND PROPERTY TVMSP_COMPONENTS "${ARG_NAME}|${ARG_DIR}")
endfunction()

# tvmsp_group(NAME <target> COMPONENTS <targets>...): a Layout folder as one library target.
function(tvmsp_group)
  cmake_parse_arguments(ARG "" "NAME" "COMPONENTS" ${ARGN})
  add_library(${ARG_NAME} INTERFACE)
  target_link_libraries(${ARG_NAME} INTERFACE ${ARG_COMPONENTS})
endfunction()

# One GoogleTest executable per component with tests; the suites of each file named *Corpus*Test.cpp
# run as a test of their own with the label "corpus", so that ctest spreads the long corpus walks over
# the cores; the others run as one test with the label "unit".
function(tvmsp_component_tests component dir)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tests/${dir}/*.cpp")
  if(NOT sources)
    return()
  endif()
  set(name test_${component})
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE ${component} testsupport GTest::gtest_main GTest::gmock)
  add_test(NAME ${name} COMMAND ${name} --gtest_filter=-*Corpus*)
  set_tests_properties(${name} PROPERTIES LABELS unit)
  set(corpus_sources ${sources})
  list(FILTER corpus_sources INCLUDE REGEX "Corpus[^/]*Test\\.cpp$")
  foreach(source IN LISTS corpus_sources)
    # BatchIndependenceCorpusTest.cpp holds the suites BatchIndependenceCorpus*.
    get_filename_component(suite ${source} NAME_WE)
    string(REGEX REPLACE "Test$" "" suite ${suite})
    add_test(NAME ${name}.${suite} COMMAND ${name} --gtest_filter=${suite}*)
    set_tests_properties(${name}.${suite} PROPERTIES LABELS corpus)
  endforeach()
endfunction()
