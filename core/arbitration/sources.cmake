add_room(kiro_core_arbitration
    core/arbitration/arbitrationutils.cpp
    core/arbitration/ckiroarbitrationhistory.cpp
    core/arbitration/ckiroarbitrationlut.cpp
    core/arbitration/ckiroarbitrationrange.cpp
    core/arbitration/ckiroarbitrationtable.cpp
    core/arbitration/ckiromodarbitration.cpp
)
