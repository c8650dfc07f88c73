"""The form of a message: STX, fields separated by ",", EOT; Latin-1, without quoting."""

from __future__ import annotations

import re

from .errors import MessageError

STX = "\x02"
EOT = "\x04"

_ESCAPE = re.compile(r"\\(?:x([0-9a-fA-F]{2})|\\)")


def encode(text: str) -> bytes:
    """Returns the bytes of a text on the line.

    Raises MessageError for a character that is not in Latin-1.
    """
    try:
        return text.encode("latin-1")
    except UnicodeEncodeError as error:
        raise MessageError(f"{text!r} has a character that is not in Latin-1") from error


def frame(body: str) -> bytes:
    """Returns the bytes of a message: STX, body, EOT.

    Raises MessageError when the body has a frame character or one that is not in Latin-1.
    """
    if STX in body or EOT in body:
        raise MessageError(f"{body!r} has a frame character")
    return encode(STX + body + EOT)


def field(text: str) -> str:
    """Returns the text, which is to be one field of a message.

    Raises MessageError when it has a comma, because there is no quoting.
    """
    if "," in text:
        raise MessageError(f"{text!r} has a comma, which would begin the next field")
    encode(text)
    return text


def printable(text: str) -> str:
    """Returns a text as one line of printable ASCII: `\\xHH` for a byte, `\\\\` for a backslash."""
    return "".join(
        "\\\\" if c == "\\" else c if " " <= c <= "~" else f"\\x{ord(c):02x}" for c in text
    )


def from_printable(line: str) -> str:
    """The inverse of printable(). A backslash that starts no such escape stands for itself."""
    return _ESCAPE.sub(lambda m: chr(int(m[1], 16)) if m[1] else "\\", line)


class Splitter:
    """Cuts bytes into messages, in pieces of any size.

    Text outside frames is kept in `unframed`, and so is a frame that another STX breaks off.
    """

    def __init__(self) -> None:
        self.unframed = ""
        self._text = ""
        self._in_frame = False

    def take(self, data: bytes) -> list[str]:
        """Returns the bodies of the messages that the bytes complete."""
        bodies: list[str] = []
        for c in data.decode("latin-1"):
            if c == STX:
                self._drop()
                self._in_frame = True
            elif c == EOT and self._in_frame:
                bodies.append(self._text)
                self._text = ""
                self._in_frame = False
            else:
                self._text += c
        if not self._in_frame:
            self._drop()
        return bodies

    def _drop(self) -> None:
        self.unframed += (STX if self._in_frame else "") + self._text
        self._text = ""
        self._in_frame = False
