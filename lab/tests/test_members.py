"""Members by path, against the schema and the tuning that the programs have."""

from pathlib import Path

import pytest

from kirolab.errors import LabError
from kirolab.members import HeldValues, MemberWords, member_path, patch_of
from kirolab.programs import find_programs
from kirolab.space import read_space
from kirolab.tunings import TuningShelf

PHONE = Path(__file__).resolve().parents[2] / "examples/tunings/phone.yaml"
TOLERANCE = "Default/kirodbconvbase/data[2].value.tolerance"
VIDEO = "Default|Sensor.0|Usecase.Video/kirodbconvbase/data[0].value.trigger1Data[0].trigger2Data[0].trigger3Data[0]"


@pytest.fixture(scope="module")
def words() -> MemberWords:
    return MemberWords(find_programs())


@pytest.fixture(scope="module")
def held() -> HeldValues:
    with TuningShelf(find_programs()) as shelf:
        return HeldValues(find_programs(), shelf.read(str(PHONE)))


def test_kinds_and_ranges_come_from_the_schema(words: MemberWords) -> None:
    tolerance = member_path(TOLERANCE)
    assert (words.kind(tolerance), words.range(tolerance)) == ("integer", (0, 23))
    speed = member_path(f"{VIDEO}.triggerData.baseSpeed")
    low, high = words.range(speed) or (0, 0)
    assert words.kind(speed) == "number" and 0 < low < 0.01 and high == 1  # 0 itself is no speed
    assert words.kind(member_path(TOLERANCE.replace("tolerance", "convSameDirection"))) == "boolean"
    assert words.range(member_path(f"{VIDEO}.triggerData.baseCapping")) is None  # above 0, and no end


def test_a_mode_without_a_module_holds_that_of_the_mode_above(held: HeldValues) -> None:
    assert held.get(member_path(TOLERANCE)) == 4
    assert held.get(member_path(f"{VIDEO}.triggerData.baseSpeed")) == 0.25
    assert held.get(member_path("Default|Sensor.0|Usecase.Video/kiroconvergence/unitStepSize")) == 0.1


def test_a_patch_says_what_the_edits_say(tmp_path: Path) -> None:
    same_direction = TOLERANCE.replace("tolerance", "convSameDirection")
    values = {
        member_path(TOLERANCE): 3,
        member_path(same_direction): True,
        member_path(f"{VIDEO}.triggerData.baseSpeed"): 0.123457,
    }
    (tmp_path / "patch.yaml").write_text(patch_of(values))
    with TuningShelf(find_programs()) as shelf:
        patched = HeldValues(find_programs(), shelf.read(f"{PHONE}+{tmp_path}/patch.yaml"))
    assert {path: patched.get(path) for path in values} == pytest.approx(values, rel=1e-6)


@pytest.mark.parametrize(
    "text, message",
    [
        ("members: [{member: tolerance}]", "expected MODE/MODULE/MEMBER"),
        (f"members: [{{member: '{TOLERANCE}s'}}]", "no member 'tolerances'"),
        (f"members: [{{member: '{TOLERANCE.replace('[2]', '[9]')}'}}]", "has no '9' there"),
        (f"members: [{{member: '{TOLERANCE.replace('Default', 'Default|Sensor.7')}'}}]", "no mode Sensor.7"),
        (
            f"members: [{{member: '{TOLERANCE.replace('tolerance', 'cappingType')}'}}]",
            "a text or an enumerator, expected",
        ),
        (f"members: [{{member: '{VIDEO}.triggerData.baseCapping'}}]", "expected low and high"),
        (f"members: [{{member: '{TOLERANCE}', low: 30}}]", "from 30 to 23"),
        (f"members: [{{member: '{TOLERANCE}', log: true}}]", "above 0"),
        (f"members: [{{member: '{TOLERANCE}'}}, {{member: '{TOLERANCE}'}}]", "two members are called"),
        (f"members: [{{member: '{TOLERANCE}'}}]\nobjectives: [speed]", "expected a map for objectives[0]"),
    ],
)
def test_a_slip_in_a_space_is_named(
    tmp_path: Path, words: MemberWords, held: HeldValues, text: str, message: str
) -> None:
    (tmp_path / "space.yaml").write_text(text)
    with pytest.raises(LabError) as fault:
        read_space(tmp_path / "space.yaml", words, held)
    assert message in str(fault.value) and "\n" not in str(fault.value)
