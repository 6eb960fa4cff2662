"""Reading and working a program's windows as assistive technology does, on a bus of its own. Wants
the system's Python, whose bindings these are."""

import contextlib
import os
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

LIMIT = 20  # seconds that anything may take


def start_service(tests, env):
    """The service between programs and assistive technology, on the session's bus of `env`, for a
    class of tests."""
    launcher = next(path for path in ("/usr/libexec/at-spi-bus-launcher",
                                      "/usr/lib/at-spi2-core/at-spi-bus-launcher")
                    if os.path.exists(path))
    service = subprocess.Popen([launcher, "--launch-immediately", "--a11y=1"], env=env,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    tests.addClassCleanup(service.wait)
    tests.addClassCleanup(service.terminate)
    os.environ["DBUS_SESSION_BUS_ADDRESS"] = env["DBUS_SESSION_BUS_ADDRESS"]
    wait_until(lambda: is_on_bus("org.a11y.Bus", env), "the accessibility service")
    Atspi.init()  # ends the process where there is none


def is_on_bus(name, env):
    answer = subprocess.run(["dbus-send", "--session", "--print-reply",
                             "--dest=org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus.NameHasOwner", f"string:{name}"],
                            env=env, capture_output=True, check=True, timeout=LIMIT)
    return b"true" in answer.stdout


def wait_until(condition, what):
    deadline = time.monotonic() + LIMIT
    while True:
        with contextlib.suppress(Exception):  # what has just gone
            if result := condition():
                return result
        if time.monotonic() > deadline:
            raise AssertionError(f"{what} did not come")
        os.sched_yield()


def program(name):
    """The running program of that name."""
    desktop = Atspi.get_desktop(0)
    for i in range(desktop.get_child_count()):
        each = desktop.get_child_at_index(i)
        if each and each.get_name() == name:
            return each
    return None


def walk(node, depth=0):
    """A node and all below it."""
    yield node
    if depth > 30:
        return
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child:
            yield from walk(child, depth + 1)


def has_state(node, state):
    return node.get_state_set().contains(state)


def is_showing(node):
    return has_state(node, Atspi.StateType.SHOWING)


def is_focusable(node):
    return has_state(node, Atspi.StateType.FOCUSABLE)


def is_checked(node):
    return has_state(node, Atspi.StateType.CHECKED)


def is_active(window):
    return has_state(window, Atspi.StateType.ACTIVE)


def find(node, role, name):
    """The first that can be seen of a role (as the service calls it) and a name."""
    for each in walk(node):
        if each.get_role_name() == role and each.get_name() == name and is_showing(each):
            return each
    return None


def act(node):
    """Does the first that a control offers: pressing it, or toggling it."""
    Atspi.Action.do_action(node, 0)


def open_menu(button):
    """The program does not answer before its menu is closed again: nobody waits for that."""
    Atspi.set_timeout(100, 0)
    with contextlib.suppress(gi.repository.GLib.Error):
        act(button)
    Atspi.set_timeout(LIMIT * 1000, 0)


def focus(node):
    Atspi.Component.grab_focus(node)


def select_row(table, row):
    Atspi.Table.add_row_selection(table, row)


def set_value(node, value):
    Atspi.Value.set_current_value(node, value)


def set_text(node, text):
    Atspi.EditableText.set_text_contents(node, text)


def middle(node):
    place = Atspi.Component.get_extents(node, Atspi.CoordType.SCREEN)
    return place.x + place.width // 2, place.y + place.height // 2
