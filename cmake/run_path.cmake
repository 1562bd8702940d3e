# Programs in bin find the stand-in's libraries in lib beside them, and the libraries each other, wherever the tree lies. The
# run path is linked as it stands: one that CMake means to change later is padded with an empty entry, which would be the
# current directory. Against the framework's own libraries there is none.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
if(ORVEX_SERVICE_DIR)
  set(CMAKE_INSTALL_RPATH "")
else()
  set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib")
  # Of all the install rules this one comes first.
  install(CODE [[message(FATAL_ERROR
    "This build is linked with the stand-in for the service library and is not for installing. "
    "Configure one with -DORVEX_SERVICE_DIR=DIR, the directory of the framework's own libraries.")]])
endif()
