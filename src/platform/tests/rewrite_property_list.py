"""Reads a property list and writes it anew, both as Python does: FORM FROM TO."""

import plistlib
import sys

form, source, target = sys.argv[1:]
with open(source, "rb") as file:
    content = plistlib.load(file)
with open(target, "wb") as file:
    plistlib.dump(content, file, fmt=getattr(plistlib, form))
