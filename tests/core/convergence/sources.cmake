set(ROOM_TESTS
    convergence_test.cpp
    drc_test.cpp
    events_test.cpp
    settle_test.cpp
    smoothnode_test.cpp
    stretch_test.cpp
)
