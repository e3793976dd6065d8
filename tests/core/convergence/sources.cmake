set(ROOM_TESTS
    drc_test.cpp
    events_test.cpp
    settle_test.cpp
    speedlaw_test.cpp
    stretch_test.cpp
)
