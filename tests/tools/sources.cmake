set(ROOM_TESTS
    binaryoutput_test.cpp
    files_test.cpp
    hostile_test.cpp
    roundtrip_test.cpp
    schematext_test.cpp
    textinput_test.cpp
)
