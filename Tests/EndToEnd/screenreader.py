"""Windows of other processes as a screen reader has them: found by role and name, read and worked."""
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 30  # seconds


def parts(whole):
    yield whole
    for index in range(whole.get_child_count()):
        part = whole.get_child_at_index(index)
        if part is not None:
            yield from parts(part)


def look_for(name, roles, whole=None):
    """The first part with one of these roles and this name, of whatever name if that is None; None if
    there is none."""
    for part in parts(whole or Atspi.get_desktop(0)):
        if part.get_role_name() in roles and name in (None, part.get_name()):
            return part
    return None


def wait_until(find, what):
    """What the function finds once it finds something. What goes away while it is looked at is no find."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        try:
            found = find()
        except GLib.Error:
            found = None
        if found:
            return found
        time.sleep(0.02)
    sys.exit(f"In vain: {what}")


def wait_for(name, *roles):
    return wait_until(lambda: look_for(name, roles), f"there is no {roles[0]} {name}")


def type_into(field, text):
    field.grab_focus()
    if not field.set_text_contents(text):
        sys.exit(f"The field {field.get_name()} cannot be written into")
