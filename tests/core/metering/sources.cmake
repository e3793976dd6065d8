include(${CMAKE_CURRENT_LIST_DIR}/sources_analyzer.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/sources_metering.cmake)
set(ROOM_TESTS ${ANALYZER_TESTS} ${METERING_TESTS})
