"""Menus and their keys, as the panel's "AK" has them."""

from __future__ import annotations

import dataclasses
import enum
from collections.abc import Iterable, Sequence
from typing import Callable, Union

from .errors import MessageError
from .message import field

Number = Union[int, float]
Range = tuple[Number, Number]
Item = tuple[Union[str, int], str]


class KeyType(enum.IntEnum):
    """The types of keys, with their number in "AK"."""

    TOGGLE = 0
    NUMBER = 1
    SELECTION = 2
    SLIDER = 3
    FILE = 4
    COMMAND = 5
    ADDRESS = 6


@dataclasses.dataclass
class Key:
    """One key: the fields of its "AK", and the state that "CK" shows.

    The unit changes `value`, `toggle` and `chosen` when it confirms a press.
    """

    menu: str  #: name of the menu
    id: str  #: name of the key within the menu
    label: str  #: text on the key
    type: KeyType
    command: str  #: what the panel sends in front of the value
    units: str = ""
    parameter: int = 0
    options: str = ""
    value: str = "0"
    toggle: bool = False
    state: int = 1  #: 1 enabled, 0 disabled, 2 hidden
    chosen: str = ""  #: text of the item that was chosen, or the address

    def ak(self) -> str:
        """Returns the "AK" that defines the key, with what was chosen in its label."""
        label = f"{self.label}: {self.chosen}" if self.chosen else self.label
        fields = [self.menu, self.id, label, str(int(self.type)), self.command, self.units]
        fields += [str(self.parameter), self.options, self.value, str(int(self.toggle))]
        return ",".join(["AK", *(field(text) for text in [*fields, str(self.state)])])

    def cv(self) -> str:
        """Returns the "CV" that tells the panel value and toggle."""
        return ",".join(["CV", self.menu, self.id, self.value, str(int(self.toggle))])

    def ck(self) -> str:
        """Returns the "CK" that shows the state."""
        return f"CK,{self.menu},{self.id},{self.state}"

    def holds(self) -> str:
        """Returns what tells the panel the value that holds: "CV", or "AK" for a new label."""
        in_label = (KeyType.SELECTION, KeyType.FILE, KeyType.ADDRESS)
        return self.ak() if self.type in in_label else self.cv()

    def take(self, value: str) -> None:
        """Gives the key the value that the panel has sent. A value that its type cannot have, as
        text for a number, changes nothing."""
        if self.type in (KeyType.TOGGLE, KeyType.COMMAND):
            self.toggle = value == "1" if value in ("0", "1") else self.toggle
        elif self.type in (KeyType.NUMBER, KeyType.SLIDER):
            try:
                float(value)
            except ValueError:
                return
            self.value = value
        elif "," not in value:
            self.chosen = self._item(value) or value

    def _item(self, value: str) -> str:
        for item in self.options.split(":"):
            item_value, _, text = item.partition(" ")
            if item_value == value:
                return text
        return ""


def _number(value: Number) -> str:
    return repr(value) if isinstance(value, int) else f"{value:.12g}"


def _ranges(ranges: Iterable[Range]) -> str:
    texts: list[str] = []
    for low, high in ranges:
        if low > high:
            raise MessageError(f"the range {low} to {high} is reversed")
        texts.append(f"{_number(low)} {_number(high)}")
    if not texts:
        raise MessageError("without a range every value is out of range")
    return ":".join(texts)


def _items(items: Iterable[Item]) -> str:
    texts: list[str] = []
    for value, text in items:
        if " " in str(value) or ":" in f"{value}{text}" or not text:
            raise MessageError(f"{(value, text)!r} cannot be an item of a list")
        texts.append(f"{value} {text}")
    return ":".join(texts)


class Menu:
    """Collects the keys of a menu and sends them.

    Each function adds a key of one type and returns it. `send()` defines the keys, `show()` shows the
    menu, too. In a `with` statement the menu is shown at its end.
    """

    def __init__(self, name: str, send: Callable[[str], None], add: Callable[[Key], None]) -> None:
        if not name:
            raise MessageError("a menu needs a name")
        self.name = field(name)
        self.keys: list[Key] = []
        self._send = send
        self._add = add

    def toggle(self, id: str, label: str, command: str, *, on: bool = False, state: int = 1) -> Key:
        """Adds a key that is on or off; the panel sends 1 or 0."""
        return self._key(id, label, KeyType.TOGGLE, command, toggle=on, state=state)

    def command(self, id: str, label: str, command: str, *, state: int = 1) -> Key:
        """Adds a key that shows no state; the panel sends 1 and 0 in turn."""
        return self._key(id, label, KeyType.COMMAND, command, state=state)

    def opens(self, id: str, label: str, menu: str, *, state: int = 1) -> Key:
        """Adds a key that leads to another menu: the unit answers it with "SK"."""
        return self._key(id, label, KeyType.COMMAND, f"SK:{menu}:", state=state)

    def number(
        self,
        id: str,
        label: str,
        command: str,
        ranges: Sequence[Range],
        *,
        kind: int = 0,
        value: Number = 0,
        special: Item | None = None,
        state: int = 1,
    ) -> Key:
        """Adds a key for a number; the panel sends it with six decimals.

        `ranges` are low and high bounds, which belong to the range. `kind` is 0 plain, 1 frequency in
        MHz, 2 bit rate, 3 frequency in Hz, 4 angle, 5 percentage, 6 with a special key, 7 PIN, 8
        hexadecimal; `special` is value and text of the key of kind 6.
        """
        if not 0 <= kind <= 8 or (kind == 6) != (special is not None):
            raise MessageError(f"there is no kind {kind}, or it wants a special key")
        return self._key(
            id,
            label,
            KeyType.NUMBER,
            command,
            units=_ranges(ranges),
            parameter=kind,
            options=_items([special]) if special is not None else "",
            value=_number(value),
            state=state,
        )

    def selection(
        self,
        id: str,
        label: str,
        command: str,
        items: Sequence[Item],
        *,
        columns: int = 0,
        chosen: str = "",
        state: int = 1,
    ) -> Key:
        """Adds a list of items, each a value and a text; the panel sends the value.

        `columns` are chosen by the panel when 0. `chosen` is the text of the item in effect, which
        stands in the label.
        """
        options = _items(items)
        return self._key(
            id,
            label,
            KeyType.SELECTION,
            command,
            parameter=columns,
            options=options,
            chosen=chosen,
            state=state,
        )

    def slider(
        self,
        id: str,
        label: str,
        command: str,
        low: int,
        high: int,
        *,
        read_out: int = 10,
        steps: Sequence[int] = (),
        value: int = 0,
        state: int = 1,
    ) -> Key:
        """Adds a slider for whole numbers; the panel sends them while it moves.

        `read_out` is 10 for a whole number, 9 for hexadecimal, else percent, or dB if the label says
        "dB". Each of the `steps` gets a key to go down and one to go up.
        """
        if low >= high:
            raise MessageError(f"the range {low} to {high} is empty")
        return self._key(
            id,
            label,
            KeyType.SLIDER,
            command,
            units=f"{high} {low}",
            parameter=read_out,
            options=":".join(str(step) for step in steps),
            value=str(value),
            state=state,
        )

    def file(
        self, id: str, label: str, command: str, files: Sequence[Item], *, state: int = 1
    ) -> Key:
        """Adds a list of files with "New File"; the panel sends the value, or the name typed."""
        return self._key(id, label, KeyType.FILE, command, options=_items(files), state=state)

    def address(
        self, id: str, label: str, command: str, *, chosen: str = "", state: int = 1
    ) -> Key:
        """Adds a key for an IPv4 address. `chosen` is the address in effect, shown in the label."""
        return self._key(id, label, KeyType.ADDRESS, command, chosen=chosen, state=state)

    def send(self) -> None:
        """Defines the keys: "AK" for each, and "CK" for those that are not enabled."""
        for key in self.keys:
            self._send(key.ak())
            if key.state != 1:
                self._send(key.ck())

    def show(self) -> None:
        """Defines the keys and shows the menu."""
        self.send()
        self._send(f"SK,{self.name}")

    def __enter__(self) -> Menu:
        return self

    def __exit__(self, kind: type[BaseException] | None, *_: object) -> None:
        if kind is None:
            self.show()

    def _key(
        self,
        id: str,
        label: str,
        type: KeyType,
        command: str,
        *,
        units: str = "",
        parameter: int = 0,
        options: str = "",
        value: str = "0",
        toggle: bool = False,
        state: int = 1,
        chosen: str = "",
    ) -> Key:
        if state not in (0, 1, 2):
            raise MessageError(f"there is no state {state}")
        if not id or not command:
            raise MessageError("a key needs an identifier and a command")
        key = Key(
            self.name, id, label, type, command, units, parameter, options, value, toggle, state, chosen
        )
        key.ak()  # raises what is wrong with the texts
        self.keys.append(key)
        self._add(key)
        return key
