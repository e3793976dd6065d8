set(ROOM_TESTS
    exactsum_test.cpp
    gridmeasures_test.cpp
    histmeasures_test.cpp
    iterators_test.cpp
    statsstore_test.cpp
)
