include(core/extension/sources_sync_monitor.cmake)
add_room(kiro_core_extension ${EXTENSION_SYNC_SOURCES})
