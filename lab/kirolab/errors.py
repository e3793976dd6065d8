"""What a person is told about a faulty input."""


class LabError(Exception):
    """A fault of what was given; the text is one line that says what, where and what was expected."""
