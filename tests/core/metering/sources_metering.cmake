set(METERING_TESTS
    calculator_test.cpp
    externalmap_test.cpp
    flashrecord_test.cpp
    metering_test.cpp
    vectorprocessor_test.cpp
)
