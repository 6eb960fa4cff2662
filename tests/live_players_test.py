#!/usr/bin/env python3
"""Lets music players play beside the saver, on a bus of their own, and looks for the label with the
track on the screen: python3 live_players_test.py --pelmora PATH"""

import json
import os
import socket
import struct
import subprocess
import time

import live
import playing

NOBODY = 65534


def chunk(kind, data):
    return kind + struct.pack("<I", len(data)) + data + b"\0" * (len(data) % 2)


def write_song(path, title, artist, album):
    """A minute of silence, with its tags."""
    rate = 8000
    tags = b"".join(chunk(kind, text.encode() + b"\0") for kind, text in
                    ((b"INAM", title), (b"IART", artist), (b"IPRD", album)))
    wave = (b"WAVE" + chunk(b"fmt ", struct.pack("<HHIIHH", 1, 1, rate, rate, 1, 8))
            + chunk(b"LIST", b"INFO" + tags) + chunk(b"data", b"\x80" * (60 * rate)))
    with open(path, "wb") as file:
        file.write(chunk(b"RIFF", wave))


class Mpv:
    """An mpv that is told what to do over a socket."""

    def __init__(self, env, folder, songs):
        self._socket = os.path.join(folder, f"mpv-{len(os.listdir(folder))}")
        self._process = subprocess.Popen(
            ["mpv", "--no-video", "--ao=null", "--really-quiet", "--idle=no",
             f"--input-ipc-server={self._socket}", *songs],
            env=env, stdin=subprocess.DEVNULL)

    def _tell(self, *command):
        with socket.socket(socket.AF_UNIX) as connection:
            deadline = time.monotonic() + live.LIMIT
            while connection.connect_ex(self._socket) != 0:  # mpv makes it a moment after its start
                if time.monotonic() > deadline:
                    raise RuntimeError("mpv does not listen")
            connection.sendall(json.dumps({"command": command}).encode() + b"\n")
            connection.recv(1)  # the beginning of the answer

    def next(self):
        self._tell("playlist-next")

    def previous(self):
        self._tell("playlist-prev")

    def pause(self):
        self._tell("set_property", "pause", True)

    def go_on(self):
        self._tell("set_property", "pause", False)

    def end(self):
        self._process.terminate()
        self._process.wait()


class Vlc:
    """A VLC that is told what to do over the bus. It does not run as root."""

    def __init__(self, env, folder, songs):
        self._env = env
        home = os.path.join(folder, f"vlc-{len(os.listdir(folder))}")
        os.mkdir(home)
        as_user = []
        if os.getuid() == 0:
            os.chown(home, NOBODY, NOBODY)
            as_user = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]
        self._process = subprocess.Popen(
            [*as_user, "vlc", "--intf=dummy", "--control=dbus", "--aout=adummy", "--no-video",
             "--no-one-instance", *songs],
            env=env | {"HOME": home}, stdin=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._name = f"org.mpris.MediaPlayer2.vlc.instance{self._process.pid}"

    def _tell(self, method):
        subprocess.run(["dbus-send", "--session", "--print-reply", f"--dest={self._name}",
                        "/org/mpris/MediaPlayer2", f"org.mpris.MediaPlayer2.Player.{method}"],
                       env=self._env, check=True, stdout=subprocess.DEVNULL, timeout=live.LIMIT)

    def next(self):
        self._tell("Next")

    def previous(self):
        self._tell("Previous")

    def pause(self):
        self._tell("Pause")

    def go_on(self):
        self._tell("Play")

    def end(self):
        self._process.terminate()
        self._process.wait()


class Players(playing.PlayersCase):
    """What holds for each player."""

    player = None

    def setUp(self):
        super().setUp()
        self.songs = []
        for song in (("Short", "A", "B"), ("A title that is a good deal longer", "Singer", "Album")):
            self.songs.append(os.path.join(self.shared, f"song {len(self.songs)}.wav"))
            write_song(self.songs[-1], *song)

    def play(self, *songs):
        player = self.player(self.env, self.shared, songs)
        self.addCleanup(player.end)
        return player

    def test_shows_what_a_player_plays_from_its_start_to_its_end(self):
        saver = self.begin()
        self.assertEqual(self.label_width(), 0)
        player = self.play(*self.songs)
        short = self.wait_for_label(saver, lambda width: width > 0, "the first song")
        player.next()
        self.wait_for_label(saver, lambda width: width > 2 * short, "the second song")
        player.pause()
        player.previous()
        self.wait_for_label(saver, lambda width: width == short, "the first song again")
        player.end()
        self.wait_for_label(saver, lambda width: width == 0, "the end")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_shows_what_plays_already(self):
        self.play(self.songs[1])
        saver = self.begin()
        self.wait_for_label(saver, lambda width: width > 0, "the song that plays already")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)

    def test_prefers_the_player_that_plays(self):
        saver = self.begin()
        first = self.play(self.songs[0])
        short = self.wait_for_label(saver, lambda width: width > 0, "the first player")
        second = self.play(self.songs[1])
        self.wait_for_label(saver, lambda width: width > 2 * short, "the one that began last")
        second.pause()
        self.wait_for_label(saver, lambda width: width == short, "the one that goes on")
        second.go_on()
        first.pause()
        self.wait_for_label(saver, lambda width: width > 2 * short, "the other one")
        second.end()
        self.wait_for_label(saver, lambda width: width == short, "the paused one that is left")
        first.end()
        self.wait_for_label(saver, lambda width: width == 0, "neither")
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)


class WithMpv(Players):
    player = Mpv


class WithVlc(Players):
    player = Vlc


del Players  # the base alone is no test


if __name__ == "__main__":
    live.main()
