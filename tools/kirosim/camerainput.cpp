// What a camera is in a group, from text.

#include "tools/kirosim/camerainput.h"

using tuningfile::YamlEntry;

namespace kirosim
{

namespace
{

constexpr DOUBLE CalibrationGainMax = 1e4;
constexpr DOUBLE CalibrationTimeMax = 1e9;

using Calibration         = std::optional<AECAlgoDCCalibrationInfo>;
using AbsoluteCalibration = decltype(AECAlgoDCCalibrationInfo::u.absolute);
using RelativeCalibration = decltype(AECAlgoDCCalibrationInfo::u.relative);

const SceneTable<AbsoluteCalibration>& AbsoluteTable()
{
    constexpr UINT16 shortMax = 65535;
    using T                   = AbsoluteCalibration;
    static const SceneTable<T> table(
        "a calibration", "member of a calibration",
        {{"gain", Number(&T::gain, 0.0, CalibrationGainMax), "linear", "gain of the measurement"},
         {"averageLuma", Whole(&T::averageLuma, 0, shortMax), "luma", "mean luma that gain and time gave"},
         {"exposureTime", Whole(&T::exposureTime, 0, shortMax), "any, the same for both modules",
          "time of the measurement"},
         {"CCT", Whole(&T::CCT, 0, CCTMax), "K", "colour of the measurement's light; only logged"}});
    return table;
}

const SceneTable<RelativeCalibration>& RelativeTable()
{
    static const CHAR timeUnit[] = "any, the same for both modules";
    using T                      = RelativeCalibration;
    static const SceneTable<T> table(
        "a calibration", "member of a calibration",
        {{"brightnessRatio", Number(&T::brightnessRatio, 0.0, CalibrationGainMax), "linear",
          "signal of the slave over the master's at these exposures"},
         {"slaveGain", Number(&T::slaveGain, 0.0, CalibrationGainMax), "linear", "gain of the slave's measurement"},
         {"slaveExposureTime", Number(&T::slaveExposureTime, 0.0, CalibrationTimeMax), timeUnit,
          "time of the slave's measurement"},
         {"masterGain", Number(&T::masterGain, 0.0, CalibrationGainMax), "linear", "gain of the master's measurement"},
         {"masterExposureTime", Number(&T::masterExposureTime, 0.0, CalibrationTimeMax), timeUnit,
          "time of the master's measurement"},
         {"CCT", Whole(&T::CCT, 0, CCTMax), "K", "colour of the measurement's light; only logged"}});
    return table;
}

VOID ReadAbsolute(const SceneText& rText, const YamlEntry& rEntry, Calibration& rCalibration)
{
    AbsoluteCalibration absolute{};
    AbsoluteTable().Read(rText, rEntry.value, absolute);
    rCalibration             = AECAlgoDCCalibrationInfo{};
    rCalibration->version    = 1;
    rCalibration->u.absolute = absolute;
}

VOID ReadRelative(const SceneText& rText, const YamlEntry& rEntry, Calibration& rCalibration)
{
    RelativeCalibration relative{};
    RelativeTable().Read(rText, rEntry.value, relative);
    rCalibration             = AECAlgoDCCalibrationInfo{};
    rCalibration->u.relative = relative;
}

const SceneTable<Calibration>& CalibrationTable()
{
    static const SceneTable<Calibration> table(
        "a calibration", "kind of calibration",
        {{"absolute", {ReadAbsolute, {.type = SceneType::Map, .members = AbsoluteTable}}, "", "one module by itself"},
         {"relative",
          {ReadRelative, {.type = SceneType::Map, .members = RelativeTable}},
          "",
          "two modules in front of one scene"}});
    return table;
}

const SceneTable<CCTSensitivity>& CCTSensitivityTable()
{
    static const SceneTable<CCTSensitivity> table(
        "a point {CCT, factor}", "member of a point",
        {{"CCT", Number(&CCTSensitivity::CCT, CCTMin, CCTMax), "K", "colour of the light"},
         {"factor", Number(&CCTSensitivity::factor, 1e-3, 1e3), "linear", "factor on the sensor's sensitivity"}});
    return table;
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

SceneChoices<StatsAlgoRole> RoleChoices()
{
    return {{"none", StatsAlgoRoleDefault}, {"master", StatsAlgoRoleMaster}, {"slave", StatsAlgoRoleSlave}};
}

SceneValue<CameraSetup> CalibrationValue()
{
    return OrNone(NewMap(&CameraSetup::calibration, CalibrationTable),
                  [](CameraSetup& rSetup) { rSetup.calibration.reset(); });
}

SceneValue<CameraSetup> SensitivityByCCTValue()
{
    return List(&CameraSetup::byCCT, "points {CCT, factor}", CCTSensitivityTable,
                {&CCTSensitivity::CCT, false, "points must stand in ascending CCT"});
}

}  // namespace kirosim
