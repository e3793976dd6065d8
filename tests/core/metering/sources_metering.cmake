set(METERING_TESTS calculator_test.cpp metering_test.cpp)
