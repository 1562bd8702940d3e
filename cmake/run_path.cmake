# What belongs to the programs alone is installed in lib beside their directory: the modules of orvex_policy, and the stand-in
# in a place where neither the system nor orvex_policy looks by itself.
cmake_path(SET private_library_dir NORMALIZE "${CMAKE_INSTALL_BINDIR}/../lib")
set(stand_in_name orvex-policy-local)

# A run path is linked as it stands: one that CMake means to change later is padded with an empty entry, which would be the
# current directory. The programs of a build with the stand-in find it in lib beside themselves, wherever the tree lies. Against
# the framework's own libraries there is no run path.
set(CMAKE_BUILD_WITH_INSTALL_RPATH ON)
if(ORVEX_SERVICE_DIR)
  set(CMAKE_INSTALL_RPATH "")
else()
  set(CMAKE_INSTALL_RPATH "$ORIGIN/../lib")
endif()

# install_program(TARGET RUN_PATH): with the system's programs. What is installed looks for the stand-in in another place, or in
# none, and so is linked once more: CMake could change the run path at that time, but would pad it until then.
function(install_program target run_path)
  set(installed ${target})
  if(NOT ORVEX_SERVICE_DIR)
    set(installed ${target}_installed)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    add_executable(${installed} $<TARGET_OBJECTS:${target}>)
    target_link_libraries(${installed} PRIVATE ${libraries})
    add_dependencies(${installed} ${target})
    set_target_properties(${installed} PROPERTIES
      LINKER_LANGUAGE CXX
      OUTPUT_NAME ${target}
      RUNTIME_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
      INSTALL_RPATH "${run_path}")
  endif()
  install(TARGETS ${installed} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()
