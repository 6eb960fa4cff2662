"""What `pelmora` says of its commands and options in --help: what other texts about them are held to."""

import re
import subprocess

OPTION = re.compile(r"^  (--?[0-9a-z-]+)(?: (\S+))?(?:  +|$)", re.MULTILINE)


class Help:
    """Options are a dictionary of a command ("" for the program itself), from option to what its
    argument is called (None without)."""

    def __init__(self, pelmora):
        self._pelmora = pelmora
        text = self.text()
        listing = text[text.index("\nCommands"):text.index("\nOptions:")]
        self.commands = re.findall(r"^  ([a-z]+) ", listing, re.MULTILINE)
        self.options = {command: dict(self.read(command)) for command in ["", *self.commands]}

    def text(self, command=""):
        words = [self._pelmora, *([command] if command else []), "--help"]
        return subprocess.run(words, check=True, capture_output=True, text=True, timeout=60).stdout

    def read(self, command):
        yield "--help", None  # which showed the rest, even where it does not name itself
        for name, argument in OPTION.findall(self.text(command)):
            yield name, argument or None

    def keys(self):
        """The preferences that `pelmora defaults` names."""
        text = self.text("defaults")
        return re.findall(r"^  ([A-Za-z]+) ", text[text.index("\nKeys:"):], re.MULTILINE)
