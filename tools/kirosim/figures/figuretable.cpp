#include "tools/kirosim/figures/figuretable.h"

#include <iterator>

#include <fmt/format.h>

namespace kirosim
{

namespace
{

constexpr CHAR Jumps[] = "start, step, event";
constexpr CHAR Moves[] = "ramp, turn, still";
constexpr CHAR Every[] = "start, step, event, ramp, turn, still";

/// In the order of FigureId.
constexpr FigureRow FigureRows[] = {
    {"settle", "frames", Jumps, OverRun::Worst,
     "Decisions until the picture stays within 5 percent of its target for good: 0 if the first decision behind the "
     "change is such a one. The target is the mean of the stretch's last 10 frames. `null` if the picture does not "
     "stay there up to the end of the stretch; not given while the user holds the exposure."},
    {"unsettled", "stretches", "run alone", OverRun::Count, "Starts, steps and events whose `settle` is `null`."},
    {"overshoot", "EV", Jumps, OverRun::Worst,
     "How far the exposure goes beyond where it is in the stretch's last 10 frames, seen from where it came from; 0 if "
     "that is no more than the sensor's next exposure time, one line longer."},
    {"finalError", "EV", "start, step, event, still", OverRun::Worst,
     "Distance of the exposure from its target at the end, mean of the last 10 frames: too bright or too dark, beyond "
     "the half line of the sensor by which exposure times are rounded. Not given while the user holds the exposure."},
    {"ripple", "EV", "still", OverRun::Worst, "Highest over lowest exposure while nothing changes."},
    {"reversals", "times", Every, OverRun::Frames,
     "How often the exposure turns back: a change of at least 0.01 EV from a frame to the next against the direction "
     "of the last such one."},
    {"kick", "EV", Moves, OverRun::Worst,
     "The largest change of the exposure from one frame to the next, less the largest change of the light in the ten "
     "frames up to it: what one sees as a jump. Starts, steps and events are left out, where jumps are wanted."},
    {"lag", "EV", "ramp", OverRun::Worst,
     "Mean distance of the exposure from the one that has moved one for one with the light since the ramp began. "
     "Not given for a ramp in which the exposure meets a limit, or which it begins at one."},
    {"distance", "EV", "ramp, turn", OverRun::Worst,
     "Mean distance of the exposure from the metered target while the light or the camera moves."},
    {"swing", "EV", "still", OverRun::Worst,
     "Brightest over darkest picture while the scene stands still, with all that light, noise and exposure do."},
    {"rippleLeft", "EV", "still", OverRun::Worst,
     "Swing of the picture, peak to peak, at the frequency of the scene's `ripple` alone. Given with a ripple."},
    {"rippleAdded", "EV", "still", OverRun::Worst,
     "The same less the light's own swing: above 0 the exposure makes the ripple worse. Given with a ripple."},
    {"clipped", "percent", Every, OverRun::Frames, "Mean share of the picture's samples at full scale."},
    {"black", "percent", Every, OverRun::Frames, "Mean share of the picture's samples below 1/256 of full scale."},
    {"lost", "percent", Every, OverRun::Frames,
     "Clipped and black samples together beyond the least that any one exposure could have of that light: 0 is the "
     "best possible exposure for keeping everything, which need not be the best looking one."},
    {"noise", "EV", Every, OverRun::Frames,
     "Gain above the least that reaches the same exposure, with the sensor's longest time: the price in noise of "
     "shorter times."},
    {"motion", "EV", Every, OverRun::Frames,
     "Time above the least that reaches the same exposure, with the sensor's highest gain: the price in motion blur "
     "of lower gain."},
    {"pinned", "frames", Every, OverRun::Frames,
     "Frames whose exposure is at a limit of the sensor, or of tuning and settings."},
    {"banding", "percent", "still", OverRun::Worst,
     "Largest difference between rows by a lamp that flickers, share of the mean. Given with a lamp."},
    {"detectorDelay", "frames", "step, turn, ramp", OverRun::Worst,
     "From the first frame of the change until a scene change detector leaves its rest; `null` if it does not up to "
     "the next change. Given for each watched detector that rests before."},
    {"monitorDelay", "frames", "step, turn, ramp", OverRun::Worst,
     "From the first frame of the change until a flag for capture decisions changes. Given for each flag that does "
     "up to the next change."},
    {"delayFound", "frames", "run alone", OverRun::Frames,
     "From the first frame whose exposure is 1 EV from that of one in the second before it until the host's watch "
     "knows the sensor's true pipeline delay: 0 if it did before, `null` if it does not in the run. Given if the host "
     "was told a wrong one and the exposure has changed so."},
    {"falseAlarms", "times", "run alone", OverRun::Frames,
     "How often the host's watch comes to believe in a pipeline delay that is not the sensor's."},
    {"flashError", "EV", "flash", OverRun::Worst, "Distance of the near part's luma from its target in a picture."},
    {"pairDifference", "EV", "pair", OverRun::Worst,
     "Distance of the pictures of two cameras from each other, mean of the last 10 frames of a stretch between "
     "changes of roles, tuning, light or its colour."}};

static_assert(std::size(FigureRows) == static_cast<size_t>(FigureId::Count));

const CHAR* WordsOf(OverRun overRun)
{
    switch (overRun)
    {
    case OverRun::Worst:
        return "the worst one";
    case OverRun::Count:
        return "their number";
    default:
        return "over all frames";
    }
}

constexpr CHAR FigureIntroduction[] = R"(# Figures of merit

How well a camera was exposed, in numbers: `kirosim run --json` has them as `figures`, the report of a run as a table.
They are measured against what the simulation knows: the light as it is, and the exposure that the sensor applied.
Of all of them a lower value is the better one.

```
kirosim run --no-live --quiet --json --tuning examples/tunings/phone.yaml --scene examples/scenes/natural.yaml \
    --variant step+2
```

Each is an object `{"figure", "of", "at", "value", "unit"}`:

- `of` is a stretch of the run: `start` (the first frames, or a new session), `step` (of the light, a cut, an object that
  appears or goes), `event` (the user has asked for something), `ramp` (of the light), `turn` (the camera or an object
  moves, or a cut fades) or `still` (from a second behind any of these on, if it lasts for a second more), each up to the
  next change; `flash` for a picture with flash; `pair` for two cameras. `run` is the whole of it. What watches the
  scene stands behind a comma, and so does the second camera of two: `step, detector 1`, `step, camera 2`.
- `at` is the time of the change in the scene, in seconds: the same for every tuning. A run has 0.
- `value` is `null` for what was never reached.

An exposure counts as of the frame whose statistics have decided it, as the sensor applied it later on; pictures of
brackets and with flash are left out. A run that repeats its scene has the figures of its last full round.

The summary that `kirosim run` prints counts otherwise, from decisions alone: its frames to settle end where the decided
exposure stays within 5 percent of its own last value, on target or not, and its ripple, distance and swing are those of
the last 100 frames, whatever changes in them. It says if light or view does. `settle` ends at the target, so it may be
longer, and `ripple` and `swing` leave out all but stretches that stand still. The summary of a report therefore leaves
numbers to the figures.

| Figure | Unit | Stretches | Of a run | Meaning |
|---|---|---|---|---|
)";

}  // namespace

const FigureRow& RowOf(FigureId id)
{
    return FigureRows[static_cast<size_t>(id)];
}

std::string FigureReference()
{
    std::string text = FigureIntroduction;
    for (const FigureRow& rRow : FigureRows)
    {
        text += fmt::format("| `{}` | {} | {} | {} | {} |\n", rRow.pName, rRow.pUnit, rRow.pStretches,
                            WordsOf(rRow.overRun), rRow.pDefinition);
    }
    return text;
}

}  // namespace kirosim
