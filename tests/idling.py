"""What tests of `pelmora idle` share: a bus with fakes of what sessions have, and a compositor."""

import os
import shutil
import subprocess
import tempfile
import threading
import time

from gi.repository import Gio, GLib

import live

NOBODY = 65534


def children(parent):
    """The processes whose parent is `parent`, and that are not dead."""
    found = []
    for name in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{name}/stat", encoding="utf-8", errors="replace") as file:
                state, its_parent = file.read().rpartition(")")[2].split()[:2]
        except (FileNotFoundError, ProcessLookupError):
            continue
        if int(its_parent) == parent and state != "Z":
            found.append(int(name))
    return found


def is_alive(process):
    try:
        with open(f"/proc/{process}/stat", encoding="utf-8", errors="replace") as file:
            return file.read().rpartition(")")[2].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):
        return False


def dies_in_time(process):
    """Whether a process that is not ours to wait for ends."""
    deadline = time.monotonic() + live.LIMIT
    while is_alive(process):
        if time.monotonic() > deadline:
            return False
    return True


def voluntary_switches(process):
    """How often all threads of a process have gone to sleep: each wake-up is one."""
    total = 0
    for task in os.listdir(f"/proc/{process}/task"):
        with open(f"/proc/{process}/task/{task}/status", encoding="utf-8") as file:
            total += sum(int(line.split()[1]) for line in file
                         if line.startswith("voluntary_ctxt_switches"))
    return total


class FakeService:
    """A name on the bus with one object, whose methods answer from `answers`: a name or property to a
    GLib.Variant, which may be changed at any time. `calls` are the methods called."""

    def __init__(self, address, name, path, interfaces):
        self.answers = {}
        self.calls = []
        self._path = path
        self._context = GLib.MainContext()
        self._loop = GLib.MainLoop(self._context)
        self._thread = threading.Thread(target=self._serve)
        self._interfaces = Gio.DBusNodeInfo.new_for_xml(f"<node>{interfaces}</node>").interfaces
        # The connection calls back in the context of the thread that registers.
        self._ready = threading.Event()
        self._arguments = (address, name)
        self.connection = None
        self._thread.start()
        if not self._ready.wait(live.LIMIT):
            raise RuntimeError(f"{name} does not appear")

    def _serve(self):
        address, name = self._arguments
        self._context.push_thread_default()
        self.connection = connect(address)
        for interface in self._interfaces:
            self.connection.register_object(self._path, interface, self._call, self._get, None)
        call_bus(self.connection, "RequestName", GLib.Variant("(su)", (name, 0)))
        self._ready.set()
        self._loop.run()
        self._context.pop_thread_default()

    def _call(self, _connection, _sender, _path, _interface, method, _arguments, invocation):
        # Who sees that it was called may send what has to come after the answer.
        invocation.return_value(self.answers.get(method))
        self.calls.append(method)

    def _get(self, _connection, _sender, _path, _interface, name):
        return self.answers[name]

    def emit(self, interface, signal, arguments=None):
        self.connection.emit_signal(None, self._path, interface, signal, arguments)

    def change_property(self, interface, name, value):
        self.answers[name] = value
        self.emit("org.freedesktop.DBus.Properties", "PropertiesChanged",
                  GLib.Variant("(sa{sv}as)", (interface, {name: value}, [])))

    def close(self):
        self.connection.close_sync(None)
        self._loop.quit()
        self._thread.join()


def connect(address):
    flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
             | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
    connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
    connection.set_exit_on_close(False)
    return connection


def call_bus(connection, method, arguments):
    return connection.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                "org.freedesktop.DBus", method, arguments, None, 0,
                                live.LIMIT * 1000, None)


class IdleCase(live.LiveCase):
    """A test with a bus of its own, which is the session's and the system's."""

    screen = "640x480"

    def setUp(self):
        super().setUp()
        self.runtime = tempfile.mkdtemp(dir="/tmp")
        self.addCleanup(shutil.rmtree, self.runtime)
        self.env["XDG_RUNTIME_DIR"] = self.runtime
        self.bus, self.address = self.start_bus("bus")
        for kind in ("SESSION", "SYSTEM"):
            self.env[f"DBUS_{kind}_BUS_ADDRESS"] = self.address

    def start_bus(self, name):
        """A bus at a socket of this name: its process and its address."""
        config = os.path.join(os.path.dirname(os.path.abspath(__file__)), "dbus-session.conf")
        bus = subprocess.Popen(
            ["dbus-daemon", f"--config-file={config}", "--nofork",
             f"--address=unix:path={self.runtime}/{name}", "--print-address"],
            env=self.env, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.addCleanup(bus.wait)
        self.addCleanup(bus.kill)
        self.addCleanup(bus.stdout.close)
        return bus, bus.stdout.readline().decode().strip()

    def start_showing(self, *words):
        """A saver whose pictures can be seen."""
        saver = self.start(*words)
        self.wait_until(saver, lambda: self.display.lit(0, 0, 640, 480) > 0.01, "a picture")
        return saver

    def end_by(self, saver, say):
        """Says it until the saver has ended, since it may not have listened yet."""
        deadline = time.monotonic() + live.LIMIT
        while saver.poll() is None:
            self.assertLess(time.monotonic(), deadline, "the saver does not end")
            say()
            time.sleep(0.05)
        self.expect_stop_work(saver)

    def expect_stop_work(self, saver):
        """The saver ends because it was told to stop, and leaves what it has to leave."""
        self.assertEqual(self.finish(saver), 0)
        self.assertIn(b"Pelmora: screensaverDidStop", saver.log)
        self.assertIn(b"Pelmora: Stopping animation for screen 1", saver.log)
        self.assertTrue(os.path.exists(
            os.path.join(self.home, ".cache", "Pelmora", "FolderCache.plist")))

    def watch(self, *words, delay=1):
        """A `pelmora idle` that is watching."""
        watcher = self.start("idle", "--delay", str(delay), *words)
        self.wait_for_log(watcher, "Watching for")
        return watcher

    def serve(self, name, path, interfaces, **answers):
        service = FakeService(self.address, name, path, interfaces)
        service.answers.update(answers)
        self.addCleanup(service.close)
        return service

    def press_key(self):
        subprocess.run(["xdotool", "key", "Shift_L"], env=self.env, check=True, timeout=live.LIMIT)

    def wait_for_log(self, watcher, text, times=1):
        self.wait_until(watcher, lambda: watcher.log.count(text.encode()) >= times, repr(text))

    def wait_for_saver(self, watcher):
        """The running saver's process."""
        self.wait_until(watcher, lambda: children(watcher.pid), "the saver")
        return children(watcher.pid)[0]

    def wait_for_end_of_saver(self, watcher):
        self.wait_until(watcher, lambda: not children(watcher.pid), "the saver's end")

    def expect_none_for(self, watcher, seconds):
        """No saver starts for a while."""
        end = time.monotonic() + seconds
        self.wait_until(watcher, lambda: time.monotonic() > end or children(watcher.pid), "nothing")
        self.assertEqual(children(watcher.pid), [], watcher.log.decode(errors="replace"))


class Sway:
    """A compositor without a screen. It does not run as root, as whom the tests may run."""

    def __init__(self, folder, env):
        self.folder = os.path.join(folder, "sway")
        os.mkdir(self.folder, 0o700)
        config = os.path.join(self.folder, "config")
        with open(config, "w", encoding="utf-8") as file:
            file.write("xwayland disable\n")
        command = ["sway", "--config", config]
        if os.getuid() == 0:
            os.chmod(folder, 0o711)
            for path in (self.folder, config):
                os.chown(path, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups",
                       *command]
        self._env = {"PATH": env["PATH"], "HOME": self.folder, "XDG_RUNTIME_DIR": self.folder,
                     "WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1",
                     "WLR_RENDERER": "pixman"}
        self.process = subprocess.Popen(command, env=self._env, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.display = os.path.join(self.folder, self._find("wayland-", ""))
        self._socket = os.path.join(self.folder, self._find("sway-ipc.", ".sock"))

    def _find(self, beginning, end):
        deadline = time.monotonic() + live.LIMIT
        while time.monotonic() < deadline and self.process.poll() is None:
            for name in os.listdir(self.folder):
                if name.startswith(beginning) and name.endswith(end) and ".lock" not in name:
                    return name
        raise RuntimeError("sway does not start")

    def tell(self, *words):
        return subprocess.run(["swaymsg", "--socket", self._socket, *words], env=self._env,
                              check=True, timeout=live.LIMIT, capture_output=True).stdout

    def close(self):
        self.process.kill()
        self.process.wait()
