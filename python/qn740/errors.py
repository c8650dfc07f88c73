"""What can go wrong. Every error of this package is an `Error`."""


class Error(Exception):
    """Base class of the errors of this package."""


class MessageError(Error, ValueError):
    """A text cannot be sent: a comma in a field, a character outside Latin-1, a frame character."""


class PanelError(Error):
    """The panel did not start, does not read, or has gone."""


class ExpectationFailed(Error, AssertionError):
    """The panel did not send what was expected, or sent what was not. The text says what came
    instead, so that a test needs no log."""
