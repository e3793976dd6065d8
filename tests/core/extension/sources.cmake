set(ROOM_TESTS
    flashcurrent_test.cpp
    inlinecalibration_test.cpp
)
