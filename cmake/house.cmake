# What every target of the house shares, and the one function that furnishes a folder.

add_library(house_options INTERFACE)
target_compile_features(house_options INTERFACE cxx_std_20)
set(CMAKE_CXX_EXTENSIONS OFF)
target_include_directories(house_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_definitions(house_options INTERFACE
  KAVREL_VERSION="${PROJECT_VERSION}" $<$<NOT:$<CONFIG:Release>>:KAVREL_CHECKED>)
target_compile_options(house_options INTERFACE
  -ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion $<$<CXX_COMPILER_ID:GNU>:-Wshadow;-Werror>
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)  # g++ 12 sees overlaps in std::string at -O3 where there are none (PR 105651)

# What reaches users: code that loads anywhere, checked returns and copies, tables of the linker that nobody can write to.
target_compile_options(house_options INTERFACE
  $<$<CONFIG:Release>:-fPIE;-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
target_link_options(house_options INTERFACE $<$<CONFIG:Release>:-pie;-Wl,-z,relro,-z,now>)

# Test code runs once: what counts is how soon it is compiled.
set(TEST_FLAGS -O1;-g1 CACHE STRING "Compile options of test code, behind those of the build type")

if(BUILD_TESTING)
  enable_testing()
  find_package(GTest REQUIRED)
  include(GoogleTest)
endif()
if(BUILD_BENCH)
  find_package(benchmark REQUIRED)
endif()

# subsystem(name [PROGRAM program] USES libraries...)
#
# Library `name` from name/*.cpp; with PROGRAM also the executable from name/main.cpp. Its tests are tests/name/*.cpp, its
# benchmarks bench/name_*.cpp, its fuzz targets fuzz/name_*.cpp; each is found by where it stands.
function(subsystem name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PROGRAM" "USES")

  file(GLOB sources CONFIGURE_DEPENDS ${name}/*.cpp)
  list(REMOVE_ITEM sources ${PROJECT_SOURCE_DIR}/${name}/main.cpp)
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PRIVATE house_options PUBLIC ${arg_USES})

  if(arg_PROGRAM)
    add_executable(${arg_PROGRAM} ${name}/main.cpp)
    target_link_libraries(${arg_PROGRAM} PRIVATE house_options ${name})
    install(TARGETS ${arg_PROGRAM} COMPONENT ${name})
  endif()

  file(GLOB tests CONFIGURE_DEPENDS tests/${name}/*.cpp)
  if(BUILD_TESTING AND tests)
    add_executable(${name}_tests ${tests})
    # Tests with a main() of their own bring it as tests/name/main.cpp.
    if(EXISTS ${PROJECT_SOURCE_DIR}/tests/${name}/main.cpp)
      set(test_main GTest::gtest)
    else()
      set(test_main GTest::gtest_main)
    endif()
    target_link_libraries(${name}_tests PRIVATE house_options ${name} Eigen3::Eigen ${test_main})
    target_compile_options(${name}_tests PRIVATE ${TEST_FLAGS})
    target_compile_definitions(${name}_tests PRIVATE
      TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data" EXAMPLES="${PROJECT_SOURCE_DIR}/examples")
    if(arg_PROGRAM)
      target_compile_definitions(${name}_tests PRIVATE PROGRAM_PATH="$<TARGET_FILE:${arg_PROGRAM}>")
      add_dependencies(${name}_tests ${arg_PROGRAM})
    endif()
    gtest_discover_tests(${name}_tests TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 600)
  endif()

  file(GLOB benches CONFIGURE_DEPENDS bench/${name}_*.cpp)
  if(BUILD_BENCH AND benches)
    add_executable(${name}_bench ${benches})
    target_link_libraries(${name}_bench PRIVATE house_options ${name} benchmark::benchmark_main)
  endif()

  file(GLOB targets CONFIGURE_DEPENDS fuzz/${name}_*.cpp)
  if(BUILD_FUZZ)
    foreach(target ${targets})
      cmake_path(GET target STEM stem)
      add_executable(fuzz_${stem} ${target})
      target_link_libraries(fuzz_${stem} PRIVATE house_options ${name})
      target_link_options(fuzz_${stem} PRIVATE -fsanitize=fuzzer)
    endforeach()
  endif()
endfunction()
