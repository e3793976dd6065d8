"""Members of a tuning by path: what they are, their range of sense, what they hold, and patches that set them."""

import json
import re
from dataclasses import dataclass
from functools import cached_property
from typing import Any

import yaml

from kirolab.errors import LabError
from kirolab.programs import Programs, run_quietly
from kirolab.tunings import Tuning

PATH_FORM = "MODE/MODULE/MEMBER"
PART = re.compile(r"([A-Za-z_]\w*)(?:\[(\d+)\])?")
RANGE = re.compile(r"^ *range: +(above )?(\S+) to (\S+)(?: |$)", re.MULTILINE)
OPEN_LOW = 0.001  # share of a range that begins above a number


@dataclass(frozen=True)
class MemberPath:
    """A member as an edit names it, such as Default|Sensor.0/kirodbconvbase/data[0].value.tolerance."""

    text: str
    modes: tuple[str, ...]
    module: str
    parts: tuple[str | int, ...]  # names, and positions in lists

    @property
    def explained(self) -> str:
        """As kirotune info takes it."""
        return f"{self.module}.{self.text.split('/', 2)[2]}"


def member_path(text: str) -> MemberPath:
    modes, _, rest = text.partition("/")
    module, _, member = rest.partition("/")
    parts: list[str | int] = []
    for part in member.split("."):
        match = PART.fullmatch(part)
        if not modes or not module or match is None:
            raise LabError(
                f"'{text}' found for a member, expected {PATH_FORM}, such as Default/kiroconvergence/unitStepSize"
            )
        parts.append(match[1])
        if match[2] is not None:
            parts.append(int(match[2]))
    return MemberPath(text, tuple(modes.split("|")), module, tuple(parts))


class MemberWords:
    """What the schema says of members."""

    def __init__(self, programs: Programs) -> None:
        self._programs = programs

    @cached_property
    def _schema(self) -> dict[str, Any]:
        return dict(json.loads(run_quietly([self._programs.kirotune, "schema"])))

    def kind(self, path: MemberPath) -> str:
        """number, integer or boolean."""
        node = self._resolved(self._schema["$defs"]["modules"])["properties"].get(path.module)
        for part in path.parts:
            node = self._resolved(node)
            node = node.get("items") if isinstance(part, int) else node.get("properties", {}).get(part)
            if node is None:
                raise LabError(f"{path.text}: no member '{part}' in {path.module}")
        kind = str(self._resolved(node).get("type"))
        if kind not in ("number", "integer", "boolean"):
            raise LabError(f"{path.text}: a record, a text or an enumerator, expected a number or a boolean")
        return kind

    def range(self, path: MemberPath) -> tuple[float, float] | None:
        """The range of sense, if it has two ends."""
        match = RANGE.search(run_quietly([self._programs.kirotune, "info", "--explain", path.explained]))
        if match is None:
            return None
        low, high = float(match[2]), float(match[3])
        return (low + (high - low) * OPEN_LOW if match[1] else low), high

    def _resolved(self, node: Any) -> dict[str, Any]:
        """Without references, and without the null that any member may be."""
        while isinstance(node, dict) and ("$ref" in node or "anyOf" in node):
            if "$ref" in node:
                node = self._schema["$defs"][node["$ref"].rsplit("/", 1)[1]]
            else:
                node = next(item for item in node["anyOf"] if item.get("type") != "null")
        return node if isinstance(node, dict) else {}


class HeldValues:
    """What a tuning holds, mode by mode."""

    def __init__(self, programs: Programs, tuning: Tuning) -> None:
        text = run_quietly([programs.kirotune, "dump", str(tuning.file)])
        self._modes = yaml.load(text, Loader=getattr(yaml, "CSafeLoader", yaml.SafeLoader)).get("modes", {})

    def get(self, path: MemberPath) -> float:
        """A mode without the module has that of the mode above it."""
        modules = self._modules(path)
        node = next((found[path.module] for found in reversed(modules) if path.module in found), None)
        if node is None:
            raise LabError(f"{path.text}: the tuning has no {path.module} there")
        for part in path.parts:
            is_there = part < len(node) if isinstance(part, int) and isinstance(node, list) else False
            is_there = is_there or (isinstance(node, dict) and part in node)
            if not is_there:
                raise LabError(f"{path.text}: the tuning has no '{part}' there")
            node = node[part]
        if not isinstance(node, (int, float)):
            raise LabError(f"{path.text}: the tuning holds '{node}', expected a number")
        return float(node)

    def _modules(self, path: MemberPath) -> list[dict[str, Any]]:
        modules, children = [], self._modes
        for name in path.modes:
            mode = children.get(name)
            if mode is None:
                raise LabError(f"{path.text}: the tuning has no mode {name} there")
            modules.append(mode.get("modules") or {})
            children = mode.get("children") or {}
        return modules


def patch_of(values: dict[MemberPath, float | bool]) -> str:
    """A patch as kirotune compile takes it."""
    modes: dict[str, Any] = {}
    for path, value in values.items():
        children, mode = modes, {}
        for name in path.modes:
            mode = children.setdefault(name, {})
            children = mode.setdefault("children", {})
        node = mode.setdefault("modules", {}).setdefault(path.module, {})
        for part in path.parts[:-1]:
            node = node.setdefault(part, {})
        node[path.parts[-1]] = value
    drop_empty_children(modes)
    return yaml.safe_dump({"modes": modes}, default_flow_style=None, sort_keys=False, width=120)


def drop_empty_children(modes: dict[str, Any]) -> None:
    for mode in modes.values():
        drop_empty_children(mode["children"])
        if not mode["children"]:
            del mode["children"]
