set(SUPPORT_SOURCES
    parameterfilebuilder.cpp
    recordwriter.cpp
    statslogcapture.cpp
    testcontext.cpp
)
