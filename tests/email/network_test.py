"""Whether the program knows if it is on a network: once as this machine is, and once in a network that has only the
computer's own loop.

Usage: network_test.py --build FOLDER
The second half is skipped, with exit code 77, where this user may not make a network of its own.
"""
import argparse
import fcntl
import glob
import os
import socket
import struct
import subprocess
import sys
import unittest

SKIPPED = 77
UP, LOOP, GET_ADDRESS = 0x1, 0x8, 0x8915
BUILD = ""
APART = ["unshare", *([] if os.geteuid() == 0 else ["--map-root-user"]), "--net"]


def asked(*before):
    ran = subprocess.run([*before, os.path.join(BUILD, "bin", "mail_tool"), "online"], capture_output=True, text=True,
                         check=True, timeout=60)
    return ran.stdout.strip()


def has_address(name):
    with open("/proc/net/if_inet6", encoding="ascii") as file:
        if any(line.split()[-1] == name for line in file):
            return True
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as asker:
        try:
            fcntl.ioctl(asker, GET_ADDRESS, struct.pack("256s", name.encode()))
        except OSError:
            return False
    return True


def is_online():
    """By the system's own files: an interface that is up and running, has an address and is no loop."""
    for folder in glob.glob("/sys/class/net/*"):
        with open(os.path.join(folder, "flags"), encoding="ascii") as file:
            flags = int(file.read(), 16)
        with open(os.path.join(folder, "operstate"), encoding="ascii") as file:
            state = file.read().strip()
        if flags & UP and not flags & LOOP and state in ("up", "unknown") and has_address(os.path.basename(folder)):
            return True
    return False


class Network(unittest.TestCase):
    def test_this_machine(self):
        self.assertEqual(asked(), "online, no proxy" if is_online() else "offline, no proxy")

    def test_a_network_of_nothing_but_the_loop(self):
        if subprocess.run([*APART, "true"], capture_output=True, check=False).returncode != 0:
            self.skipTest("this user may not make a network of its own")
        self.assertEqual(asked(*APART), "offline, no proxy")


def main():
    global BUILD
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    BUILD = os.path.abspath(parser.parse_args().build)
    result = unittest.main(argv=sys.argv[:1], exit=False).result
    if not result.wasSuccessful():
        return 1
    return SKIPPED if result.skipped else 0


if __name__ == "__main__":
    sys.exit(main())
