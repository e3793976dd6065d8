set(ROOM_TESTS
    contextmanager_test.cpp
    corefunctions_test.cpp
    frame_test.cpp
    scenechangedetector_test.cpp
    shortblend_test.cpp
)
