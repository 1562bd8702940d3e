# What belongs to the programs alone lies in lib beside their directory, in the build tree as where they are installed: the
# modules of orvex_policy, and the stand-in in a place where neither the system nor orvex_policy looks by itself.
cmake_path(SET private_library_dir NORMALIZE "${CMAKE_INSTALL_BINDIR}/../lib")
set(stand_in_name orvex-policy-local)

# A run path is linked as it stands: one that CMake means to change later is padded with an empty entry, which would be the
# current directory. The programs of a build with the stand-in find it wherever the tree lies. Against the framework's own
# libraries there is no run path.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
if(ORVEX_SERVICE_DIR)
  set(CMAKE_INSTALL_RPATH "")
else()
  set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib/${stand_in_name}")
endif()
