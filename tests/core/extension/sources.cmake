set(ROOM_TESTS
    camsync_test.cpp
    extension_test.cpp
    extensionmonitor_test.cpp
    flashcurrent_test.cpp
    generalizedmonitor_test.cpp
    inlinecalibration_test.cpp
)
