"""Tests of tools/check_hardening: each thing that is missing is seen, and what is right passes."""

import importlib.machinery
import importlib.util
import os
import sys
import unittest

PATH = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "check_hardening")
sys.dont_write_bytecode = True
LOADER = importlib.machinery.SourceFileLoader("check_hardening", PATH)
check_hardening = importlib.util.module_from_spec(
    importlib.util.spec_from_loader("check_hardening", LOADER))
LOADER.exec_module(check_hardening)

HEADERS = """
Elf file type is DYN (Position-Independent Executable file)
Program Headers:
  Type           Offset   VirtAddr           PhysAddr           FileSiz  MemSiz   Flg Align
  PHDR           0x000040 0x0000000000000040 0x0000000000000040 0x0002d8 0x0002d8 R   0x8
  INTERP         0x000318 0x0000000000000318 0x0000000000000318 0x00001c 0x00001c R   0x1
  LOAD           0x004000 0x0000000000004000 0x0000000000004000 0x015759 0x015759 R E 0x1000
  LOAD           0x0232b0 0x00000000000232b0 0x00000000000232b0 0x001310 0x0025f8 RW  0x1000
  GNU_STACK      0x000000 0x0000000000000000 0x0000000000000000 0x000000 0x000000 RW  0x10
  GNU_RELRO      0x0232b0 0x00000000000232b0 0x00000000000232b0 0x000d50 0x000d50 R   0x1
"""
DYNAMIC = """
 0x000000000000001e (FLAGS)              BIND_NOW
 0x000000006ffffffb (FLAGS_1)            Flags: NOW PIE
"""
SYMBOLS = """
     1: 0000000000000000     0 FUNC    GLOBAL DEFAULT  UND __stack_chk_fail@GLIBC_2.4 (2)
     2: 0000000000000000     0 FUNC    GLOBAL DEFAULT  UND __memcpy_chk@GLIBC_2.3.4 (3)
"""
CONTENTS = b"\xf3\x0f\x1e\xfa\x90" * 50


def in_layout(headers=HEADERS, dynamic=DYNAMIC):
    return list(check_hardening.missing_in_layout(headers, dynamic))


def in_code(symbols=SYMBOLS, contents=CONTENTS, machine="x86_64"):
    return list(check_hardening.missing_in_code(symbols, contents, machine))


class CheckHardening(unittest.TestCase):
    def test_lets_pass_what_is_hardened(self):
        self.assertEqual(in_layout(), [])
        self.assertEqual(in_code(), [])

    def test_sees_a_program_at_a_fixed_place(self):
        self.assertIn("position", *in_layout(HEADERS.replace("DYN", "EXEC")))

    def test_sees_tables_that_stay_writable(self):
        self.assertIn("RELRO", *in_layout(HEADERS.replace("GNU_RELRO", "GNU_OTHER")))
        self.assertIn("BIND_NOW", *in_layout(dynamic="(FLAGS_1)            Flags: PIE"))

    def test_sees_memory_that_is_written_and_executed(self):
        stack = "0x000000 0x000000 RW  0x10"
        self.assertIn("stack", in_layout(HEADERS.replace(stack, stack.replace("RW ", "RWE")))[0])
        part = "0x001310 0x0025f8 RW "
        self.assertIn("a part", *in_layout(HEADERS.replace(part, part.replace("RW ", "RWE"))))
        self.assertIn("stack", *in_layout(HEADERS.replace("GNU_STACK", "GNU_OTHER")))

    def test_sees_code_that_is_changed_and_paths_of_the_builder(self):
        self.assertIn("loaded", *in_layout(dynamic=DYNAMIC + "(TEXTREL)"))
        self.assertIn("libraries", *in_layout(dynamic=DYNAMIC + "(RUNPATH)   [/home/me/lib]"))

    def test_sees_code_that_is_unchecked(self):
        self.assertIn("stack", *in_code(SYMBOLS.replace("__stack_chk_fail", "other")))
        self.assertIn("sizes", *in_code(SYMBOLS.replace("__memcpy_chk", "memcpy")))
        self.assertIn("jumps", *in_code(contents=b""))
        self.assertEqual(in_code(contents=b"", machine="aarch64"), [])


if __name__ == "__main__":
    unittest.main()
