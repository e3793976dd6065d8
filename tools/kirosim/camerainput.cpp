// What a camera is in a group, from text.

#include "tools/kirosim/camerainput.h"

#include "tools/kirosim/eventinput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

/// Where the members of a calibration go.
struct CalibrationMember
{
    const CHAR* pName;
    DOUBLE      maximum;
    DOUBLE      value;
};

template <size_t Count>
VOID ReadMembers(const SceneText& rText, const YamlEntry& rMap, CalibrationMember (&rMembers)[Count])
{
    std::vector<std::string_view> names;
    for (const CalibrationMember& rMember : rMembers)
    {
        names.emplace_back(rMember.pName);
    }
    for (const YamlEntry& rEntry : rText.Input().Map(rMap.value, "a calibration"))
    {
        bool isKnown = false;
        for (CalibrationMember& rMember : rMembers)
        {
            if (rEntry.name == rMember.pName)
            {
                isKnown       = true;
                rMember.value = rText.Number(rEntry, 0.0, rMember.maximum);
            }
        }
        if (!isKnown)
        {
            rText.Input().FailUnknown(rEntry, "member of a calibration", names);
        }
    }
}

AECAlgoDCCalibrationInfo ReadAbsolute(const SceneText& rText, const YamlEntry& rEntry)
{
    CalibrationMember members[] = {
        {"gain", 1e4, 0.0}, {"averageLuma", 65535.0, 0.0}, {"exposureTime", 65535.0, 0.0}, {"CCT", 1e5, 0.0}};
    ReadMembers(rText, rEntry, members);
    AECAlgoDCCalibrationInfo info{};
    info.version    = 1;
    info.u.absolute = {static_cast<FLOAT>(members[0].value), static_cast<UINT16>(members[1].value),
                       static_cast<UINT16>(members[2].value), static_cast<UINT32>(members[3].value)};
    return info;
}

AECAlgoDCCalibrationInfo ReadRelative(const SceneText& rText, const YamlEntry& rEntry)
{
    CalibrationMember members[] = {{"brightnessRatio", 1e4, 0.0},    {"slaveGain", 1e4, 0.0},
                                   {"slaveExposureTime", 1e9, 0.0},  {"masterGain", 1e4, 0.0},
                                   {"masterExposureTime", 1e9, 0.0}, {"CCT", 1e5, 0.0}};
    ReadMembers(rText, rEntry, members);
    AECAlgoDCCalibrationInfo info{};
    info.u.relative = {static_cast<FLOAT>(members[0].value), static_cast<FLOAT>(members[1].value),
                       static_cast<FLOAT>(members[2].value), static_cast<FLOAT>(members[3].value),
                       static_cast<FLOAT>(members[4].value), static_cast<UINT32>(members[5].value)};
    return info;
}

std::optional<AECAlgoDCCalibrationInfo> ReadCalibration(const SceneText& rText, const YamlEntry& rEntry)
{
    std::optional<AECAlgoDCCalibrationInfo> info;
    if (rEntry.value.IsScalar() && rEntry.value.Scalar() == "none")
    {
        return info;
    }
    for (const YamlEntry& rMember : rText.Input().Map(rEntry.value, "a calibration"))
    {
        if (rMember.name == "absolute")
        {
            info = ReadAbsolute(rText, rMember);
        }
        else if (rMember.name == "relative")
        {
            info = ReadRelative(rText, rMember);
        }
        else
        {
            rText.Input().FailUnknown(rMember, "kind of calibration", {"absolute", "relative"});
        }
    }
    return info;
}

std::vector<CCTSensitivity> ReadByCCT(const SceneText& rText, const YamlEntry& rEntry)
{
    std::vector<CCTSensitivity> points;
    for (const YAML::Node& rItem : rText.Items(rEntry, "points {CCT, factor}"))
    {
        CCTSensitivity point = {0.0, 1.0};
        for (const YamlEntry& rMember : rText.Input().Map(rItem, "a point {CCT, factor}"))
        {
            if (rMember.name == "CCT")
            {
                point.CCT = rText.Number(rMember, 1000.0, 1e5);
            }
            else if (rMember.name == "factor")
            {
                point.factor = rText.Number(rMember, 1e-3, 1e3);
            }
            else
            {
                rText.Input().FailUnknown(rMember, "member of a point", {"CCT", "factor"});
            }
        }
        if (!points.empty() && point.CCT <= points.back().CCT)
        {
            rText.Input().Fail(rItem, "points must stand in ascending CCT");
        }
        points.push_back(point);
    }
    return points;
}

}  // namespace

DOUBLE CameraSetup::SensitivityAt(DOUBLE CCT) const
{
    const CCTSensitivity* pBelow = nullptr;
    for (const CCTSensitivity& rPoint : byCCT)
    {
        if (rPoint.CCT >= CCT)
        {
            return (pBelow == nullptr) ? rPoint.factor
                                       : pBelow->factor + (rPoint.factor - pBelow->factor) * (CCT - pBelow->CCT) /
                                                              (rPoint.CCT - pBelow->CCT);
        }
        pBelow = &rPoint;
    }
    return (pBelow != nullptr) ? pBelow->factor : 1.0;
}

StatsAlgoRole ReadRole(const SceneText& rText, const YamlEntry& rEntry)
{
    constexpr StatsAlgoRole roles[] = {StatsAlgoRoleDefault, StatsAlgoRoleMaster, StatsAlgoRoleSlave};
    return roles[rText.Choice(rEntry, {"none", "master", "slave"})];
}

bool ReadCameraEntry(const SceneText& rText, const YamlEntry& rEntry, CameraSetup& rSetup)
{
    if (rEntry.name == "role")
    {
        rSetup.role = ReadRole(rText, rEntry);
    }
    else if (rEntry.name == "modes")
    {
        rSetup.modes = ReadModes(rText, rEntry);
    }
    else if (rEntry.name == "calibration")
    {
        rSetup.calibration = ReadCalibration(rText, rEntry);
    }
    else if (rEntry.name == "sensitivityByCCT")
    {
        rSetup.byCCT = ReadByCCT(rText, rEntry);
    }
    else
    {
        return false;
    }
    return true;
}

}  // namespace kirosim
