set(SUPPORT_SOURCES
    parameterfilebuilder.cpp
    privatenetwork.cpp
    recordwriter.cpp
    statslogcapture.cpp
    testcontext.cpp
)
