set(EXTENSION_SYNC_TESTS
    camsync_test.cpp
    extension_test.cpp
    extensionmonitor_test.cpp
    generalizedmonitor_test.cpp
)
