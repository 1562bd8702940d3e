# What every target of the project is compiled with. Warnings become errors by CMAKE_COMPILE_WARNING_AS_ERROR, which the
# presets set and packagers need not.
add_library(orvex_common_options INTERFACE)
target_compile_features(orvex_common_options INTERFACE cxx_std_20)
target_compile_definitions(orvex_common_options INTERFACE _GLIBCXX_ASSERTIONS)
target_compile_options(orvex_common_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wformat=2 -Wcast-qual -Wcast-align
  -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wnull-dereference -Wundef
  # In C++20 GCC 12 sees an overlap in every literal that stands in front of a string made on the spot.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)

# Whatever is built resolves all its symbols at the start and cannot change them afterwards.
set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
target_link_options(orvex_common_options INTERFACE $<${optimised}:-Wl,-z,relro,-z,now>)

# The program and its stand-in: optimised builds are hardened as well.
add_library(orvex_compile_options INTERFACE)
target_link_libraries(orvex_compile_options INTERFACE orvex_common_options)
include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection orvex_has_cf_protection)
include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_FLAGS "-O2 -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
check_cxx_source_compiles("#include <cstdio>\nstatic_assert(__USE_FORTIFY_LEVEL == 3); int main() {}" orvex_has_fortify_3)
unset(CMAKE_REQUIRED_FLAGS)
target_compile_options(orvex_compile_options INTERFACE
  $<${optimised}:-fstack-protector-strong>
  $<${optimised}:-fstack-clash-protection>
  $<$<AND:${optimised},$<BOOL:${orvex_has_cf_protection}>>:-fcf-protection>
  $<${optimised}:-U_FORTIFY_SOURCE>
  $<${optimised}:-D_FORTIFY_SOURCE=$<IF:$<BOOL:${orvex_has_fortify_3}>,3,2>>)

# The tests' own code is compiled more often than it runs: it is not optimised, whatever the build type. The objects of the
# program that it is linked with are.
add_library(orvex_test_options INTERFACE)
target_link_libraries(orvex_test_options INTERFACE orvex_common_options)
target_compile_options(orvex_test_options INTERFACE $<${optimised}:-O0>)
