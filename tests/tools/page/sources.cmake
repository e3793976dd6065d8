list(APPEND ROOM_TESTS requestguard_test.cpp pageserver_test.cpp pagestreams_test.cpp)
# Their cameras use the service's port, and a lost one must be found at the same port again.
set(ROOM_TEST_PROPERTIES RESOURCE_LOCK live_tuning_port)
