list(APPEND ROOM_TESTS commands_test.cpp framing_test.cpp ports_test.cpp threads_test.cpp transport_test.cpp triggervalues_test.cpp)
# They all use the service's port, and not every machine gives each program a network of its own.
set(ROOM_TEST_PROPERTIES RESOURCE_LOCK live_tuning_port)
