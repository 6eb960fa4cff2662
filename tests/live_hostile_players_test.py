#!/usr/bin/env python3
"""Runs the saver beside music players that do their worst, and looks that it goes on as without
them: python3 live_hostile_players_test.py --pelmora PATH --hostile-player PATH"""

import hashlib
import os
import select
import subprocess
import sys
import time

import live
import playing
import pngfile

KINDS = ("wrong-types", "missing-keys", "huge-values", "strange-letters", "hang", "crash", "flood",
         "take-over")
CARDS = 2  # that have to come beside each of them
# What the second round may leave behind, beyond what the first did: pages that the allocator keeps.
KEPT = 12 << 20


class HostilePlayers(playing.PlayersCase):
    hostile_player = None

    def setUp(self):
        super().setUp()
        # No two alike, and none with anything of the label's red.
        pictures = os.path.join(self.home, "pictures")
        for number, name in enumerate(os.listdir(pictures)):
            with open(os.path.join(pictures, name), "wb") as file:
                file.write(pngfile.encode(60, 40, (0, 20 * number, 200)))
        self.run_tool("defaults", "write", "iTunesTrackType", "2")
        # Freed memory is to be free, not kept to look at.
        self.env["ASAN_OPTIONS"] = self.env.get("ASAN_OPTIONS", "") + ":quarantine_size_mb=1"
        self.list = os.path.join(self.home, ".cache", "Pelmora", "Screen 1 Log.txt")

    def card(self):
        """Another one for each card."""
        return os.stat(self.list).st_mtime_ns if os.path.exists(self.list) else None

    def frame(self):
        return hashlib.md5(b"".join(self.display.pixels(0, 0, *playing.SIZE))).digest()

    def shows_label(self):
        return any(red >= 200 > blue for blue, _, red in self.display.pixels(0, 0, *playing.SIZE))

    def wait_for_cards(self, saver, what):
        """Until some have come, and the screen has changed at least as often."""
        cards, frames = {self.card()}, {self.frame()}

        def has_gone_on():
            cards.add(self.card())
            frames.add(self.frame())
            return len(cards) > CARDS and len(frames) > CARDS
        self.wait_until(saver, has_gone_on, what)

    def attack(self, saver, kind):
        """Returns when the player was asked, and cards have come nevertheless."""
        player = subprocess.Popen([self.hostile_player, kind], env=self.env,
                                  stdout=subprocess.PIPE)
        try:
            ready, _, _ = select.select([player.stdout], [], [], live.LIMIT)
            self.assertTrue(ready and player.stdout.readline() == b"asked\n", kind)
            self.wait_for_cards(saver, f"a card beside the player '{kind}'")
        finally:
            player.kill()
            player.wait()
            player.stdout.close()

    def memory(self, saver):
        with open(f"/proc/{saver.pid}/status", encoding="ascii") as file:
            sizes = [line.split()[1] for line in file if line.startswith("VmRSS:")]
        return int(sizes[0]) << 10

    def test_goes_on_beside_players_that_do_their_worst(self):
        saver = self.begin()
        self.wait_for_cards(saver, "a card")
        used = []
        for _ in range(2):
            for kind in KINDS:
                begin = time.monotonic()
                self.attack(saver, kind)
                print(f"{kind}: {CARDS} cards in {time.monotonic() - begin:.1f} s, "
                      f"{self.memory(saver) >> 20} MB")
            self.wait_until(saver, lambda: not self.shows_label(), "the end of the last player")
            used.append(self.memory(saver))
        self.assertLess(used[1], used[0] + KEPT)
        saver.terminate()
        self.assertEqual(self.finish(saver), 0)


if __name__ == "__main__":
    place = sys.argv.index("--hostile-player")
    HostilePlayers.hostile_player = os.path.abspath(sys.argv[place + 1])
    del sys.argv[place:place + 2]
    live.main()
