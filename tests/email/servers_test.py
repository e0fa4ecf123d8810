"""A hundred messages to each of two mail servers of other hands, on port 25 without TLS: one with AUTH LOGIN, one with
AUTH PLAIN. What arrives is read by two readers.

Usage: servers_test.py --build FOLDER
Skipped with exit code 77 where the machine lets no program of this user have the port.
"""
import argparse
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path[:0] = [os.path.dirname(os.path.abspath(__file__)), os.path.join(HOUSE, "tests", "support")]
import mail_messages  # noqa: E402
import mail_servers  # noqa: E402
from random_seed import random_seed  # noqa: E402

MESSAGES = 100
BUILD = ""
SEED = 0


def send(user, password, folders):
    ran = subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "send", "127.0.0.1", "", "ann@example.org",
                          "bob@example.net", user, password, *folders], capture_output=True, text=True, check=True,
                         timeout=250)
    return [json.loads(line) for line in ran.stdout.splitlines()]


class Peers:
    """What holds with each of the servers."""

    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.scratch = scratch.name
        self.server = self.enterContext(self.make())

    def project(self, number):
        folder = os.path.join(self.scratch, "page%d" % number)
        kind = mail_messages.KINDS[number % len(mail_messages.KINDS)]
        return folder, mail_messages.make_project(folder, kind, SEED + number)

    def test_a_hundred_messages_are_accepted_and_arrive_whole(self):
        projects = dict(self.project(number) for number in range(MESSAGES))
        outcomes = send(self.server.user, self.server.password, projects)
        self.assertEqual(outcomes, [{"code": 100, "success": True, "text": ""}] * MESSAGES)
        arrived = self.server.messages()
        self.assertEqual(len(arrived), MESSAGES)
        taken = 0
        for raw, (folder, (page, pictures)) in zip(arrived, projects.items()):
            name = os.path.basename(folder)
            with open(folder + ".eml", "rb") as file:
                raw, dots = mail_messages.with_taken_dots(raw, file.read())
            taken += dots
            self.assertEqual(mail_messages.problems(raw, page, pictures), [], name)
            self.assertEqual(mail_messages.munpack_problems(raw, pictures), [], name)
        self.assertEqual(taken > 0, self.server.takes_single_dots)

    def test_a_wrong_password_is_refused_with_the_servers_words(self):
        folder, _ = self.project(0)
        outcome, = send(self.server.user, "wrong", [folder])
        self.assertEqual((outcome["code"], outcome["success"]), (100, False))
        self.assertRegex(outcome["text"], re.compile("^" + self.server.refusal + "$"))
        self.assertEqual(self.server.messages(), [])

    def test_no_password_ends_it_before_the_server_is_asked(self):
        folder, _ = self.project(0)
        outcome, = send(self.server.user, "", [folder])
        self.assertEqual(outcome, {"code": 100, "success": False, "text": "Password required."})
        self.assertEqual(self.server.messages(), [])


class Login(Peers, unittest.TestCase):
    make = mail_servers.LoginServer


class Plain(Peers, unittest.TestCase):
    make = mail_servers.PlainServer


def main():
    global BUILD, SEED
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    BUILD = parser.parse_args().build
    skipped = mail_servers.skips()
    if skipped is not None:
        return skipped
    SEED = random_seed("messages")
    return 0 if unittest.main(argv=sys.argv[:1], exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    sys.exit(main())
