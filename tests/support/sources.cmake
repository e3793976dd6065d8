list(APPEND SUPPORT_SOURCES statslogcapture.cpp)
