# pvx_library(NAME DIR): a static library of every .cpp under DIR (recursively), with the source
# root on its include path so that headers are included as "app/project.h". A folder that has no
# sources yet still gives a library, so that the dependency lines need no change when it fills.
function(pvx_library name dir)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${dir}/*.cpp)
  set(placeholder ${CMAKE_BINARY_DIR}/pvx_placeholder.cpp)
  if(NOT EXISTS ${placeholder})
    file(WRITE ${placeholder} "// This library has no sources of its own yet.\n")
  endif()
  add_library(${name} STATIC ${sources} ${placeholder})
  target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
endfunction()

# pvx_test_folder(DIR LIBS...): one GoogleTest program per folder of tests/, named test_<folder>.
function(pvx_test_folder dir)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${dir}/*.cpp)
  if(NOT sources)
    return()
  endif()
  string(REPLACE "/" "_" name "test_${dir}")
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARGN} pvx_test_support GTest::gtest_main GTest::gmock)
  gtest_discover_tests(${name} WORKING_DIRECTORY ${CMAKE_SOURCE_DIR} DISCOVERY_TIMEOUT 60)
endfunction()
