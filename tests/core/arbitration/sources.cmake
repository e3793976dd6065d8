set(ROOM_TESTS
    controlhistory_test.cpp
    lut_test.cpp
    range_test.cpp
    rangeconflict_test.cpp
    table_test.cpp
)
