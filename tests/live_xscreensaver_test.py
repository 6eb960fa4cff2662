#!/usr/bin/env python3
"""Runs the saver under the XScreenSaver daemon:
python3 live_xscreensaver_test.py --build DIR --pelmora PATH"""

import contextlib
import os
import re
import select
import subprocess
import time

import hosted
import live
import processes

PREFERENCES = "lock: False\nfade: False\nsplash: False\nverbose: True\n"
# What the daemon says of a saver that went wrong. It calls status 0 abnormal too.
WRONG = re.compile(r"exited abnormally with status [^0]|terminated with|stopped with|still running|"
                   r"unparsable|X Error|Bad(Window|Match|Drawable)|Sanitizer|pelmora: (?!note)")


class LiveXScreenSaver(hosted.HostedCase):
    def setUp(self):
        super().setUp()
        self.list = os.path.join(self.home, ".xscreensaver")
        self.env = {**self.env, "PATH": "/usr/local/bin:/usr/bin:/bin", "LANG": "C.UTF-8"}
        del self.env["QT_QPA_PLATFORM"]
        self.ends = []  # how long each took, in seconds
        self.log_path = os.path.join(self.display.folder, "daemon.log")
        with open(self.list, "w", encoding="utf-8") as file:
            file.write(PREFERENCES)
        os.chmod(self.list, 0o640)
        # The daemon refuses root, which the tests may run as.
        if hosted.as_nobody():
            subprocess.run(["chown", "-R", f"{hosted.NOBODY}:{hosted.NOBODY}", self.home], check=True)
        self.do(self.program, "register", "--select")

    def do(self, *command):
        result = subprocess.run([*hosted.as_nobody(), *command], env=self.env, check=True,
                                timeout=live.LIMIT, capture_output=True, text=True)
        return result.stdout

    def start_daemon(self):
        with open(self.log_path, "wb") as log:
            daemon = subprocess.Popen([*hosted.as_nobody(), "xscreensaver", "--no-splash"],
                                      env=self.env, stdout=log, stderr=log)
        self.addCleanup(daemon.wait)
        self.addCleanup(daemon.kill)
        self.addCleanup(self.end_savers)
        self.wait_for(lambda: "running in process" in self.log() and self.answers(), "the daemon")
        return daemon

    def end_savers(self):
        for number in self.processes():
            with contextlib.suppress(OSError):
                os.kill(number, 9)

    def log(self):
        with open(self.log_path, encoding="utf-8", errors="replace") as file:
            return file.read()

    def answers(self):
        with contextlib.suppress(subprocess.CalledProcessError):
            return "since" in self.do("xscreensaver-command", "-time")
        return False

    def tell(self, word):
        self.do("xscreensaver-command", word)

    def wait_for(self, condition, what):
        deadline = time.monotonic() + 2 * live.LIMIT
        while not condition():
            self.assertLess(time.monotonic(), deadline, f"{what} did not come; the log:\n" + (
                self.log() if os.path.exists(self.log_path) else ""))
            select.select([], [], [], 0.05)  # what there is to see has no descriptor

    def begin_to_show(self):
        self.tell("-activate")
        self.wait_for(lambda: self.is_shown_left() and self.is_shown_right(), "both views")

    def end_to_show(self):
        self.tell("-deactivate")
        begin = time.monotonic()
        self.wait_for(lambda: not self.processes(), "the end of the savers")
        self.ends.append(time.monotonic() - begin)

    def assert_nothing_went_wrong(self):
        wrong = [line for line in self.log().splitlines() if WRONG.search(line)]
        self.assertEqual(wrong, [])

    def test_shows_a_view_on_each_monitor_again_and_again(self):
        daemon = self.start_daemon()
        cycles = processes.Cycles("xscreensaver", daemon.pid)
        for _ in cycles:
            self.begin_to_show()
            self.assertEqual(len(self.savers()), 2)
            self.end_to_show()
            self.assertIsNone(daemon.poll())
        cycles.judge(self)
        self.assert_nothing_went_wrong()
        print(f"no warnings in the daemon's log; the savers end within {max(self.ends):.2f} s")
        caches = os.path.join(self.home, ".cache", "Pelmora")
        for name, folder in (("Screen 1 Log.txt", "left"), ("Screen 2 Log.txt", "right")):
            with open(os.path.join(caches, name), encoding="utf-16", newline="") as file:
                paths = file.read().rstrip("\r").split("\r")
            self.assertEqual({os.path.dirname(path) for path in paths},
                             {os.path.join(self.home, folder)})

    def test_starts_anew_when_the_daemon_cycles(self):
        self.start_daemon()
        self.begin_to_show()
        before = self.savers()
        self.tell("-cycle")
        self.wait_for(lambda: len(self.savers()) == 2 and not self.savers() & before, "new savers")
        self.wait_for(lambda: self.is_shown_left() and self.is_shown_right(), "both views")
        self.end_to_show()
        self.assert_nothing_went_wrong()

    def test_is_in_the_list_once_and_can_be_taken_out(self):
        with open(self.list, encoding="utf-8") as file:
            text = file.read()
        self.assertTrue(text.startswith(PREFERENCES))
        self.assertEqual(os.stat(self.list).st_mode & 0o777, 0o640)
        self.assertIn("already", self.do(self.program, "register"))
        with open(self.list, encoding="utf-8") as file:
            self.assertEqual(file.read(), text)
        self.do(self.program, "unregister")
        with open(self.list, encoding="utf-8") as file:
            self.assertNotIn("pelmora", file.read())


if __name__ == "__main__":
    hosted.main()
