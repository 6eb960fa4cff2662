"""Tests of what is told of processes."""

import os
import subprocess
import unittest

import processes


class Growth(unittest.TestCase):
    def test_is_more_from_time_to_time(self):
        self.assertTrue(processes.keeps_growing([27, 28, 29]))
        self.assertTrue(processes.keeps_growing([5, 6, 6, 7]))

    def test_is_not_what_comes_once_or_goes_again(self):
        for numbers in ([27, 28, 28], [27, 27, 28], [9, 9, 9], [5, 6, 7, 5]):
            self.assertFalse(processes.keeps_growing(numbers), numbers)

    def test_is_told_by_name(self):
        uses = [processes.Use(kib=9000, descriptors=4 + i, threads=1, children=0) for i in range(3)]
        self.assertEqual(list(processes.growths(uses)), ["descriptors: [4, 5, 6]"])

    def test_of_memory_is_what_is_more_than_a_little(self):
        self.assertFalse(processes.has_grown(20_000, 20_000 + processes.MOST_KIB))
        self.assertTrue(processes.has_grown(20_000, 20_001 + processes.MOST_KIB))


class Counts(unittest.TestCase):
    def test_see_a_child_come_and_go(self):
        before = processes.children_of(os.getpid())
        with subprocess.Popen(["cat"], stdin=subprocess.PIPE) as child:
            self.assertIn(str(child.pid), processes.children_of(os.getpid()))
        self.assertEqual(processes.children_of(os.getpid()), before)
        self.assertEqual(processes.children_of(child.pid), [])

    def test_see_descriptors(self):
        before = processes.use_of(os.getpid()).descriptors
        with open(os.devnull, "rb"):
            self.assertEqual(processes.use_of(os.getpid()).descriptors, before + 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
