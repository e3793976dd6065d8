set(ROOM_TESTS
    gridmeasures_test.cpp
    histmeasures_test.cpp
    iterators_test.cpp
    statsstore_test.cpp
)
