set(ROOM_TESTS
    bankmanager_test.cpp
    exposurearithmetic_test.cpp
    history_test.cpp
    triggerdata_test.cpp
)
