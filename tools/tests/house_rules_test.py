"""Tests of tools/house_rules.py: each rule sees a breach, and lets pass what is right."""

import os
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
import house_rules  # noqa: E402


def breaches(**files):
    """The breaches in a tree of `files`, each named with __ for / and _DOT_ for the dot."""
    tree = {name.replace("__", "/").replace("_DOT_", "."): text for name, text in files.items()}
    return list(house_rules.breaches(set(tree), tree.__getitem__))


class HouseRules(unittest.TestCase):
    def test_lets_pass_what_includes_downward(self):
        text = '#pragma once\n#include "cache/FolderCache.h"\n#include <vector>\n'
        self.assertEqual(breaches(src__sources__A_DOT_h=text), [])

    def test_sees_an_include_that_goes_up(self):
        text = '#pragma once\n#include "view/PelmoraView.h"\n'
        self.assertEqual(
            breaches(src__cards__A_DOT_h=text),
            ["src/cards/A.h:1: cards must not include view/PelmoraView.h"],
        )

    def test_sees_an_include_across(self):
        text = '#pragma once\n#include "sources/PMFolder.h"\n'
        self.assertEqual(len(breaches(src__cache__A_DOT_h=text)), 1)

    def test_sees_a_subsystem_without_a_rule(self):
        self.assertEqual(len(breaches(src__other__A_DOT_h="#pragma once\n")), 1)

    def test_keeps_the_real_services_to_the_host(self):
        text = '#pragma once\n#include "platform/linux/SystemClock.h"\n'
        self.assertEqual(len(breaches(src__view__A_DOT_h=text)), 1)
        self.assertEqual(breaches(src__host__A_DOT_h=text), [])

    def test_keeps_fakes_to_tests(self):
        text = '#pragma once\n#include "platform/fake/FakeClock.h"\n'
        self.assertEqual(len(breaches(src__view__A_DOT_h=text)), 1)
        self.assertEqual(breaches(src__view__tests__A_DOT_h=text), [])

    def test_sees_Qt_where_there_is_to_be_none(self):
        text = "#pragma once\n#include <QString>\n"
        self.assertEqual(len(breaches(src__cache__A_DOT_h=text)), 1)
        self.assertEqual(breaches(src__cards__A_DOT_h=text), [])
        self.assertEqual(breaches(src__platform__linux__A_DOT_h=text), [])

    def test_asks_for_a_test_beside_each_source(self):
        self.assertEqual(
            breaches(src__cache__A_DOT_cpp=""),
            ["src/cache/A.cpp:1: has no src/cache/tests/ATest.cpp"],
        )
        self.assertEqual(breaches(src__cache__A_DOT_cpp="", src__cache__tests__ATest_DOT_cpp=""), [])
        linux = {"src__platform__linux__A_DOT_cpp": "", "src__platform__tests__ATest_DOT_cpp": ""}
        self.assertEqual(breaches(**linux), [])
        self.assertEqual(breaches(src__host__main_DOT_cpp=""), [])

    def test_asks_for_pragma_once(self):
        self.assertEqual(len(breaches(src__cache__A_DOT_h="int a;\n")), 1)

    def test_sees_a_file_that_is_too_long(self):
        text = "#pragma once\n" + "\n" * (house_rules.LONGEST_FILE - 1)
        self.assertEqual(breaches(src__cache__A_DOT_h=text), [])
        self.assertEqual(len(breaches(src__cache__A_DOT_h=text + "\n")), 1)

    def test_sees_work_left_open(self):
        self.assertEqual(breaches(README_DOT_md="a\nTODO b\n")[0][:12], "README.md:2:")
        self.assertEqual(breaches(README_DOT_md="mktemp -d /tmp/pelmora-XXXXXX\n"), [])

    def test_reads_no_words_into_pictures(self):
        self.assertEqual(breaches(docs__a_DOT_png="\x89PNG\0\0XXX,XXX\n"), [])
        self.assertEqual(len(breaches(docs__a_DOT_md="XXX,XXX\n")), 1)

    def test_sees_a_path_of_one_machine(self):
        self.assertEqual(len(breaches(README_DOT_md="in /" "root/pictures\n")), 1)
        self.assertEqual(breaches(README_DOT_md="build/wo" "rk/a ~/ro" "ot/b /home/me/c\n"), [])

    def test_sees_a_test_that_sleeps_or_is_switched_off(self):
        for line in ("usleep(3);", "std::this_thread::sleep_for(1s);", "GTEST_SKIP();"):
            self.assertEqual(len(breaches(src__cache__tests__ATest_DOT_cpp=line)), 1, line)
        stepped = "scheduler.sleep(3);"  # moves a clock, and takes no time
        self.assertEqual(breaches(src__cache__tests__ATest_DOT_cpp=stepped), [])


if __name__ == "__main__":
    unittest.main()
