include(${CMAKE_CURRENT_LIST_DIR}/sources_analyzer.cmake)
set(ROOM_TESTS ${ANALYZER_TESTS})
