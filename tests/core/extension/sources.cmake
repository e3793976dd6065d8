include(${CMAKE_CURRENT_LIST_DIR}/sources_sync_monitor.cmake)
set(ROOM_TESTS
    ${EXTENSION_SYNC_TESTS}
    flashcurrent_test.cpp
    inlinecalibration_test.cpp
)
