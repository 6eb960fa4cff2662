#!/usr/bin/env python3
"""Mounts a file system that never answers, then becomes the command:
python3 stalled_mount.py FOLDER COMMAND...
To be run in a namespace of mounts. Like a share whose server is gone: every look at it waits until
whoever looks is killed. It lasts as long as the command. Status 77: it cannot be mounted here."""

import ctypes
import os
import signal
import sys

PARENT_DEATH_SIGNAL = 1
CANNOT = 77


def mount(libc, folder):
    """The open end of the file system, from which nobody ever reads a request."""
    try:
        device = os.open("/dev/fuse", os.O_RDWR | os.O_CLOEXEC)
    except OSError as problem:
        print(f"/dev/fuse: {problem}", file=sys.stderr)
        sys.exit(CANNOT)
    options = f"fd={device},rootmode=40000,user_id=0,group_id=0"
    if libc.mount(b"stalled", os.fsencode(folder), b"fuse", 0, options.encode()) != 0:
        print(f"mount: {os.strerror(ctypes.get_errno())}", file=sys.stderr)
        sys.exit(CANNOT)
    return device


def main():
    folder, *command = sys.argv[1:]
    libc = ctypes.CDLL(None, use_errno=True)
    device = mount(libc, folder)
    parent = os.getpid()
    if os.fork() == 0:
        # Holds it open, and nothing else of whoever waits for the command's output.
        libc.prctl(PARENT_DEATH_SIGNAL, signal.SIGKILL, 0, 0, 0)
        if os.getppid() != parent:
            os._exit(0)
        for descriptor in range(3):
            os.close(descriptor)
        while True:
            signal.pause()
    os.close(device)
    os.execvp(command[0], command)


if __name__ == "__main__":
    main()
