set(EXTENSION_SYNC_TESTS
    camsync_test.cpp
)
