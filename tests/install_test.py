#!/usr/bin/env python3
"""What is installed, and whether it works where it was put: python3 install_test.py --build FOLDER
--cmake PATH"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

import pngfile

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
LANGUAGES = [name[len("pelmora_"):-len(".ts")]
             for name in os.listdir(os.path.join(ROOT, "translations"))]
FILES = [
    "bin/pelmora",
    "etc/xdg/autostart/pelmora-idle.desktop",
    "lib/systemd/user/pelmora-idle.service",
    "libexec/pelmora/pelmora-decoder",
    "libexec/pelmora/pelmora-inspector",
    "libexec/xscreensaver/pelmora",
    "share/applications/pelmora-settings.desktop",
    "share/applications/screensavers/pelmora.desktop",
    "share/bash-completion/completions/pelmora",
    "share/doc/pelmora/filters.md",
    "share/doc/pelmora/guide.md",
    "share/fish/vendor_completions.d/pelmora.fish",
    "share/icons/hicolor/scalable/apps/pelmora.svg",
    "share/icons/hicolor/symbolic/apps/pelmora-symbolic.svg",
    "share/man/man1/pelmora.1",
    "share/metainfo/pelmora.metainfo.xml",
    "share/pelmora/ConfigWindow.ui",
    "share/xscreensaver/config/pelmora.xml",
    "share/zsh/site-functions/_pelmora",
    *(f"share/icons/hicolor/{size}x{size}/apps/pelmora.png" for size in (16, 32, 48, 64, 128, 256)),
    *(f"share/pelmora/translations/pelmora_{language}.qm" for language in LANGUAGES),
]


class Installed(unittest.TestCase):
    build = cmake = None

    @classmethod
    def setUpClass(cls):
        # Not below the folder that it was built for, as in a package that is unpacked elsewhere.
        cls.folder = tempfile.mkdtemp()
        cls.addClassCleanup(shutil.rmtree, cls.folder)
        subprocess.run([cls.cmake, "--install", cls.build, "--prefix", "/opt/pelmora"], check=True,
                       env={**os.environ, "DESTDIR": cls.folder}, stdout=subprocess.DEVNULL,
                       timeout=100)
        cls.prefix = os.path.join(cls.folder, "opt", "pelmora")

    def run_pelmora(self, *words):
        home = os.path.join(self.folder, "home")
        environment = {name: value for name, value in os.environ.items()
                       if not name.startswith("XDG_") and name != "DISPLAY"}
        return subprocess.run([os.path.join(self.prefix, "bin", "pelmora"), *words],
                              env={**environment, "HOME": home}, capture_output=True, text=True,
                              timeout=100)

    def test_is_complete(self):
        for name in FILES:
            self.assertGreater(os.path.getsize(os.path.join(self.prefix, name)), 0, name)

    def test_hosts_find_the_program(self):
        link = os.path.join(self.prefix, "libexec", "xscreensaver", "pelmora")
        self.assertTrue(os.path.samefile(link, os.path.join(self.prefix, "bin", "pelmora")))
        self.assertFalse(os.path.isabs(os.readlink(link)))

    def test_keeps_to_its_folder(self):
        self.assertLessEqual(set(os.listdir(self.folder)), {"home", "opt"})
        self.assertEqual(os.listdir(os.path.join(self.folder, "opt")), ["pelmora"])

    def test_paints_pictures(self):
        out = os.path.join(self.folder, "out.png")
        done = self.run_pelmora("render", "--samples", "--out", out, "--size", "160x90",
                                "--start", "2026-11-21T12:00:00", "--at", "3")
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(pngfile.size_of(out), (160, 90))
        picture = pngfile.Picture(out)
        colours = {picture.pixel(x, y) for x in range(0, 160, 4) for y in range(0, 90, 4)}
        self.assertGreater(len(colours), 20)

    def test_decodes_and_reads_what_is_embedded(self):
        out = os.path.join(self.folder, "home", "photos", "a.png")
        os.makedirs(os.path.dirname(out))
        with open(out, "wb") as file:
            file.write(pngfile.encode(30, 20, (200, 100, 50)))
        done = self.run_pelmora("check", out)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.assertIn("30 × 20", done.stdout)
        done = self.run_pelmora("match", "kMDItemPixelWidth == 30", os.path.dirname(out))
        self.assertEqual((done.returncode, done.stdout), (0, out + "\n"), done.stderr)


def value_of(option):
    place = sys.argv.index(option)
    value = sys.argv[place + 1]
    del sys.argv[place:place + 2]
    return value


if __name__ == "__main__":
    Installed.build, Installed.cmake = value_of("--build"), value_of("--cmake")
    unittest.main(verbosity=2)
