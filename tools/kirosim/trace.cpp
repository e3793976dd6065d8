#include "tools/kirosim/trace.h"

#include <fmt/format.h>

namespace kirosim
{

std::string CsvHeader()
{
    return "frame,time_s,scene_lux,lux_index,luma,target_short,target_safe,target_long,exposure_short,exposure_safe,"
           "exposure_long,gain_short,time_ns_short,gain_safe,time_ns_safe,gain_long,time_ns_long,adrc_gain,dark_boost,"
           "predictive_gain,brightness_settled,settled,fps,metering_skipped,picture_ev,banding\n";
}

std::string CsvLine(const FrameRecord& rRecord)
{
    const KiroHostFrame&         rFrame    = rRecord.decided;
    const KIROConvergenceOutput& rConv     = rFrame.convergence;
    const UINT64*                pTargets  = rFrame.metering.exposures;
    const auto&                  rShort    = rFrame.arbitration[AECAlgoExposureShort];
    const KIROExposureSetType&   rShortSet = rShort.exposureSet;
    const KIROExposureSetType&   rSafeSet  = rFrame.arbitration[AECAlgoExposureSafe].exposureSet;
    const KIROExposureSetType&   rLongSet  = rFrame.arbitration[AECAlgoExposureLong].exposureSet;
    return fmt::format("{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{},{}\n", rRecord.frame,
                       rRecord.time, rRecord.truth.lux, rFrame.luxIndex, rFrame.luma, pTargets[AECAlgoExposureShort],
                       pTargets[AECAlgoExposureSafe], pTargets[AECAlgoExposureLong], rShortSet.exposure,
                       rSafeSet.exposure, rLongSet.exposure, rShortSet.gain, rShortSet.time, rSafeSet.gain,
                       rSafeSet.time, rLongSet.gain, rLongSet.time, rConv.compensationADRC, rConv.compensationDarkBoost,
                       rConv.predictiveGain, rConv.bBrightnessSettle, rConv.bSettle, rShort.FPS,
                       rFrame.metering.bIsMeteringSkipped, rRecord.truth.pictureEV, rRecord.truth.banding);
}

std::string TableHeader()
{
    return fmt::format("{:>6} {:>7} {:>10} {:>8} {:>8} {:>11} {:>7} {:>9} {:>6} {:>6} {:>7}\n", "frame", "time s",
                       "scene lux", "lux idx", "luma", "exposure us", "gain", "time us", "adrc", "dark", "settled");
}

std::string TableLine(const FrameRecord& rRecord)
{
    constexpr DOUBLE             nsPerUs = 1000.0;
    const KiroHostFrame&         rFrame  = rRecord.decided;
    const KIROConvergenceOutput& rConv   = rFrame.convergence;
    const KIROExposureSetType&   rSafe   = rFrame.arbitration[AECAlgoExposureSafe].exposureSet;
    return fmt::format(
        "{:>6} {:>7.2f} {:>10.1f} {:>8.1f} {:>8.1f} {:>11.0f} {:>7.2f} {:>9.0f} {:>6.2f} {:>6.2f} {:>7}\n",
        rRecord.frame, rRecord.time, rRecord.truth.lux, rFrame.luxIndex, rFrame.luma,
        static_cast<DOUBLE>(rSafe.exposure) / nsPerUs, rSafe.gain, static_cast<DOUBLE>(rSafe.time) / nsPerUs,
        rConv.compensationADRC, rConv.compensationDarkBoost,
        (rConv.bSettle == TRUE)             ? "yes"
        : (rConv.bBrightnessSettle == TRUE) ? "bright"
                                            : "");
}

}  // namespace kirosim
