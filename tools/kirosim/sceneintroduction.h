/// @file
/// What stands in front of the reference of scenes.
#pragma once

namespace kirosim
{

constexpr char SceneIntroduction[] = R"(# Scenes

A scene is a YAML file that tells `kirosim` what its camera sees: the light over space and time, the sensor that looks
at it, and what the user does meanwhile. Nothing is required, so a scene says only what it is about:

```yaml
# Someone switches a lamp on after 2 s, and asks for a brighter picture after 5 s.
name: lamp
lux: 20
frames: 240
pattern: {kind: natural, textureEV: 1.0}
sensor: {regionNoise: 0.01}
light: [{time: 2, ev: 3}]
events:
  - {time: 0, antibanding: off}
  - {time: 5, ev: 6}
variants:
  dark: {lux: 2}
  slowly: {light: [{time: 1, ev: 0}, {time: 4, ev: 3, ramp: true}]}
```

```
kirosim run --no-live --tuning examples/tunings/phone.yaml --scene lamp.yaml
kirosim run --no-live --tuning examples/tunings/phone.yaml --scene lamp.yaml --variant slowly
kirosim variants --scene lamp.yaml
kirosim run --no-live --quiet --tuning examples/tunings/phone.yaml --scene lamp.yaml --variant all --seed 1..3 \
    --json --csv '{scene}-{variant}-{seed}.csv'
```

- A variant is a run of its own: the scene, but for what the variant names. A list takes the place of the scene's, and
  the maps `calibration`, `detectors`, `flash` and `start` begin anew; of other maps, what is not named stays.
- `--scene`, `--variant` and `--seed` may come again: each scene runs in each variant with each seed, one after the
  other on one tuning. `all` is the scene as it is (`plain`) and all its variants. `--json` prints a line for each run,
  in their order. A run that fails says so on stderr; the others go on, and the exit status is the worst.
- Anchors and merge keys of YAML spare repetition: `flash: {<<: *flash, maxCurrent: 450}`.
- A slip is refused with file, line and column, and with what was expected. Limits belong to their range.
- `kirosim schema` prints this page, `kirosim schema --json > scene.schema.json` a JSON Schema with which an editor
  completes, explains and checks a scene while it is typed.
)";

}  // namespace kirosim
