#!/usr/bin/env python3
"""Runs the saver under MATE's, in a namespace in which it is installed:
python3 live_mate_test.py --build DIR --pelmora PATH"""

import os
import signal
import subprocess

import hosted
import live
import processes

BUS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "dbus-session.conf")
SETTINGS = """[org/mate/screensaver]
mode='single'
themes=['screensavers-pelmora']
lock-enabled=false
"""
NAMESPACE = ["unshare", "--mount"] if os.getuid() == 0 else [
    "unshare", "--user", "--map-current-user", "--keep-caps", "--mount"]
INSTALL = ('mount --bind "$ENGINES" /usr/libexec/xscreensaver &&'
           ' mount --bind "$ENTRIES" /usr/share/applications/screensavers && exec "$@"')
TELL_ADDRESS = 'printf "%s\\n" "$DBUS_SESSION_BUS_ADDRESS" $$ >"$HOME/address.new" &&' \
               ' mv "$HOME/address.new" "$HOME/address" && exec mate-screensaver --no-daemon'


class LiveMate(hosted.HostedCase):
    def setUp(self):
        super().setUp()
        engines = self.folder("engines")
        os.symlink(os.path.join(self.installed, "bin", "pelmora"), os.path.join(engines, "pelmora"))
        entries = self.folder("entries")
        installed = os.path.join(self.installed, "share/applications/screensavers/pelmora.desktop")
        with open(installed, encoding="utf-8") as file:
            lines = file.read().splitlines()
        program = "/usr/libexec/xscreensaver/pelmora"
        lines = [f"Exec={program} --root" if line.startswith("Exec=") else line for line in lines]
        lines = [f"TryExec={program}" if line.startswith("TryExec=") else line for line in lines]
        self.write(os.path.join(entries, "pelmora.desktop"), "\n".join(lines) + "\n")
        self.write(os.path.join(self.folder(".config/glib-2.0/settings"), "keyfile"), SETTINGS)
        if hosted.as_nobody():
            subprocess.run(["chown", "-R", f"{hosted.NOBODY}:{hosted.NOBODY}", self.home], check=True)
        self.env.update(PATH="/usr/bin:/bin", GSETTINGS_BACKEND="keyfile", LANG="C.UTF-8",
                        NO_AT_BRIDGE="1", XDG_RUNTIME_DIR=self.home,
                        ENGINES=engines, ENTRIES=entries)
        del self.env["QT_QPA_PLATFORM"]

    def folder(self, name):
        path = os.path.join(self.home, name)
        os.makedirs(path)
        return path

    @staticmethod
    def write(path, text):
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)

    def start_host(self):
        host = subprocess.Popen(
            [*NAMESPACE, "sh", "-c", INSTALL, "sh", *hosted.as_nobody(), "dbus-run-session",
             "--config-file", BUS, "--", "sh", "-c", TELL_ADDRESS],
            env=self.env, stderr=subprocess.PIPE, start_new_session=True)
        self.addCleanup(host.stderr.close)
        self.addCleanup(host.wait)
        self.addCleanup(os.killpg, host.pid, signal.SIGKILL)
        os.set_blocking(host.stderr.fileno(), False)
        host.log = b""
        return host

    def tell(self, word):
        return subprocess.run([*hosted.as_nobody(), "mate-screensaver-command", word], env=self.env,
                              timeout=live.LIMIT, capture_output=True, text=True).stdout

    def test_shows_the_pile_with_the_few_variables_that_the_host_passes_on(self):
        host = self.start_host()
        address = os.path.join(self.home, "address")
        self.wait_until(host, lambda: os.path.exists(address), "the bus")
        with open(address, encoding="utf-8") as file:
            self.env["DBUS_SESSION_BUS_ADDRESS"], process = file.read().split()
        self.wait_until(host, lambda: "inactive" in self.tell("--query"), "the host")
        cycles = processes.Cycles("mate-screensaver", process)
        for _ in cycles:
            self.tell("--activate")
            self.wait_until(host, self.is_shown_left, "a red picture on the left")
            environments = [self.environment(number) for number in self.savers()]
            self.assertTrue(environments)
            for names in environments:
                self.assertFalse([name for name in names if name.startswith(("XDG_", "LC_"))])
            self.tell("--deactivate")
            self.wait_until(host, lambda: not self.processes(), "the end of the saver")
            self.wait_until(host, lambda: "inactive" in self.tell("--query"), "the host at rest")
        cycles.judge(self)

    @staticmethod
    def environment(number):
        """The names of a process's variables; none once it has ended."""
        try:
            with open(f"/proc/{number}/environ", "rb") as file:
                return [entry.partition(b"=")[0].decode() for entry in file.read().split(b"\0")]
        except OSError:
            return []


if __name__ == "__main__":
    hosted.main()
