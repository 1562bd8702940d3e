# The service library as the program links it: eight shared objects, all of them recorded as needed even where no symbol
# of one is used, as the framework may move its functions between them.
set(orvex_service_sonames
  liborvex.so.0 liborvex_core.so.0 liborvex_extend.so.0 liborvex_log.so.0
  liborvex_adv.so.0 liborvex_scene.so.0 liborvex_scene_c.so.0 libvemulabelmgr.so)

add_library(orvex_service INTERFACE)
if(ORVEX_SERVICE_DIR)
  list(TRANSFORM orvex_service_sonames PREPEND "${ORVEX_SERVICE_DIR}/" OUTPUT_VARIABLE orvex_service_libraries)
else()
  set(orvex_service_libraries ${local_service_libraries})
endif()
target_link_libraries(orvex_service INTERFACE
  -Wl,--push-state,--no-as-needed ${orvex_service_libraries} -Wl,--pop-state)
