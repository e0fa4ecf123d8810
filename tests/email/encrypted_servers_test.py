"""Messages by TLS: to two mail servers of other hands, encrypted from the start and on request, with certificates made
here; and to servers whose certificate or behaviour is wrong, which must get neither a password nor a message.

Usage: encrypted_servers_test.py --build FOLDER
What needs port 465 is skipped where the machine lets no program of this user have it.
"""
import argparse
import json
import os
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import unittest
import warnings

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path[:0] = [os.path.dirname(os.path.abspath(__file__)), os.path.join(HOUSE, "tests", "support")]
import certificates  # noqa: E402
import mail_messages  # noqa: E402
import mail_servers  # noqa: E402
from random_seed import random_seed  # noqa: E402

ENCRYPTED = 465
MESSAGES = 12
REFUSED = "The connection can't be encrypted, so nothing was sent: "
BUILD = ""
SEED = 0
HERE_IS = ["DNS:localhost", "IP:127.0.0.1"]


class WithCertificates(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.scratch.cleanup)
        cls.authority = certificates.Authority(os.path.join(cls.scratch.name, "authority"))
        cls.good = cls.authority.vouch("good", HERE_IS)

    def project(self, name, number=0):
        folder = os.path.join(self.scratch.name, "%s-%s%d" % (self.id(), name, number))
        kind = mail_messages.KINDS[number % len(mail_messages.KINDS)]
        return folder, mail_messages.make_project(folder, kind, SEED + number)

    def send(self, server, folders, authority=None, user="ann@example.org", password="secret"):
        ran = subprocess.run([os.path.join(BUILD, "bin", "mail_tool"), "send", server,
                              authority or self.authority.path, "ann@example.org", "bob@example.net", user, password,
                              *folders], capture_output=True, text=True, check=True, timeout=250)
        return [json.loads(line) for line in ran.stdout.splitlines()]


class Peers(WithCertificates):
    """The servers of other hands."""

    def check(self, server, typed):
        projects = dict(self.project("page", number) for number in range(MESSAGES))
        outcomes = self.send(typed, projects)
        self.assertEqual(outcomes, [{"code": 100, "success": True, "text": ""}] * MESSAGES)
        arrived = server.messages()
        self.assertEqual(len(arrived), MESSAGES)
        for raw, (folder, (page, pictures)) in zip(arrived, projects.items()):
            with open(folder + ".eml", "rb") as file:
                raw, _ = mail_messages.with_taken_dots(raw, file.read())
            self.assertEqual(mail_messages.problems(raw, page, pictures), [], folder)

    def serve(self, make, kind, port=None):
        return self.enterContext(make(port or mail_servers.free_port(), kind, *self.good, self.authority.path))

    def test_twisted_from_the_start(self):
        server = self.serve(mail_servers.PlainServer, "tls")
        self.check(server, "smtps://localhost:%d" % server.port)

    def test_twisted_on_request(self):
        server = self.serve(mail_servers.PlainServer, "starttls")
        self.check(server, "smtp+tls://127.0.0.1:%d" % server.port)

    def test_qpsmtpd_on_request(self):
        server = self.serve(mail_servers.LoginServer, "starttls")
        self.check(server, "smtp+tls://localhost:%d" % server.port)

    def test_qpsmtpd_from_the_start_on_the_port_for_it(self):
        reason = mail_servers.why_no_port(ENCRYPTED)
        if reason:
            self.skipTest(reason)
        server = self.serve(mail_servers.LoginServer, "tls", ENCRYPTED)
        self.check(server, "localhost:465")
        self.assertEqual(self.send("smtps://localhost", [self.project("more")[0]])[0]["success"], True)

    def test_a_port_in_clear(self):
        server = self.enterContext(mail_servers.PlainServer(mail_servers.free_port()))
        self.check(server, "localhost:%d" % server.port)

    def test_a_wrong_password_is_told(self):
        server = self.serve(mail_servers.PlainServer, "tls")
        outcome, = self.send("smtps://localhost:%d" % server.port, [self.project("page")[0]], password="wrong")
        self.assertEqual((outcome["success"], outcome["text"]), (False, "535 Authentication failed\r\n"))

    def refused(self, certificate, authority=None, host="localhost"):
        """What is told of a server with that certificate, both ways."""
        told = []
        for kind, scheme in (("tls", "smtps"), ("starttls", "smtp+tls")):
            server = self.enterContext(mail_servers.PlainServer(mail_servers.free_port(), kind, *certificate))
            outcome, = self.send("%s://%s:%d" % (scheme, host, server.port), [self.project(kind)[0]], authority)
            self.assertEqual((outcome["code"], outcome["success"]), (100, False))
            self.assertEqual(server.messages(), [])
            self.assertTrue(outcome["text"].startswith(REFUSED), outcome)
            told.append(outcome["text"][len(REFUSED):])
        self.assertEqual(told[0], told[1])
        return told[0]

    def test_a_wrong_name(self):
        self.assertIn("host name", self.refused(self.authority.vouch("other", ["DNS:mail.example.org"])))

    def test_the_name_of_a_host_is_not_that_of_its_address(self):
        certificate = self.authority.vouch("named", ["DNS:localhost"])
        self.assertIn("host name", self.refused(certificate, host="127.0.0.1"))

    def test_one_that_has_expired(self):
        certificate = self.authority.vouch("old", HERE_IS, "20200101000000Z", "20200201000000Z")
        self.assertIn("expired", self.refused(certificate))

    def test_one_that_is_not_yet_good(self):
        certificate = self.authority.vouch("young", HERE_IS, "20980101000000Z", "20990101000000Z")
        self.assertIn("not yet valid", self.refused(certificate))

    def test_one_that_vouches_for_itself(self):
        self.assertIn("self-signed", self.refused(self.authority.vouch_for_itself("self", HERE_IS)))

    def test_one_whose_authority_the_system_does_not_know(self):
        self.assertRegex(self.refused(self.good, os.devnull), "issuer|verified|self-signed")

    def test_one_whose_authority_nobody_knows(self):
        other = certificates.Authority(os.path.join(self.scratch.name, "unknown"), "Nobody knows it")
        self.assertRegex(self.refused(other.vouch("lone", HERE_IS)), "issuer|verified")


class OddServer:
    """A server of one client, which plays `talk(connection)` and keeps all that was said to it in clear and
    encrypted."""

    def __init__(self, talk):
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        self.heard = b""
        self.thread = threading.Thread(target=self.run, args=(talk,))
        self.thread.start()

    def run(self, talk):
        connection, _ = self.listener.accept()
        connection.settimeout(20)
        try:
            talk(self, connection)
        except OSError:
            pass  # the client has gone
        finally:
            connection.close()
            self.listener.close()

    def hear(self, connection):
        data = connection.recv(65536)
        self.heard += data
        return data

    def until_closed(self, connection):
        while self.hear(connection):
            pass

    def end(self):
        self.thread.join(30)
        return self.heard


def offer(server, connection, words=b"250-here\r\n250 STARTTLS\r\n"):
    connection.sendall(b"220 here\r\n")
    server.hear(connection)
    connection.sendall(words)
    server.hear(connection)


def goes_on_in_clear(server, connection):
    offer(server, connection)
    connection.sendall(b"220 go\r\n")
    for words in (b"220 here\r\n", b"250 AUTH LOGIN\r\n", b"334 VXNlcm5hbWU6\r\n", b"250 fine\r\n"):
        server.hear(connection)
        connection.sendall(words)
    server.until_closed(connection)


def hangs_up(server, connection):
    offer(server, connection)
    connection.sendall(b"220 go\r\n")
    connection.shutdown(socket.SHUT_RDWR)


def offers_nothing(server, connection):
    offer(server, connection, b"250-here\r\n250 AUTH LOGIN\r\n")
    server.until_closed(connection)


def clear_from_the_start(server, connection):
    connection.sendall(b"220 here\r\n")
    server.hear(connection)
    connection.sendall(b"250 AUTH LOGIN\r\n")
    server.until_closed(connection)


class OddServers(WithCertificates):
    """Servers that promise and don't keep it."""

    def play(self, talk, scheme="smtp+tls"):
        server = OddServer(talk)
        outcome, = self.send("%s://localhost:%d" % (scheme, server.port), [self.project("page")[0]])
        heard = server.end()
        self.assertEqual((outcome["code"], outcome["success"]), (100, False))
        for secret in (b"AUTH", b"MAIL", b"DATA", b"YW5uQGV4YW1wbGUub3Jn", b"c2VjcmV0", b"From:"):
            self.assertNotIn(secret, heard)
        return outcome["text"], heard

    def wrapped(self, connection, **limits):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(*self.good)
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)  # old versions are what is tried
            for name, value in limits.items():
                setattr(context, name, value)
        if "maximum_version" in limits:
            context.set_ciphers("ALL:@SECLEVEL=0")
        return context.wrap_socket(connection, server_side=True)

    def test_one_that_offers_and_then_talks_clear(self):
        text, heard = self.play(goes_on_in_clear)
        self.assertTrue(text.startswith(REFUSED), text)
        self.assertTrue(heard.startswith(b"EHLO ann@example.org\r\nSTARTTLS\r\n\x16\x03"), heard[:60])

    def test_one_that_offers_and_hangs_up(self):
        text, _ = self.play(hangs_up)
        self.assertTrue(text.startswith(REFUSED), text)

    def test_one_that_offers_nothing(self):
        text, heard = self.play(offers_nothing)
        self.assertEqual(text, "The server offers no encryption (STARTTLS), so nothing was sent.")
        self.assertEqual(heard, b"EHLO ann@example.org\r\n")

    def test_one_that_talks_clear_from_the_start(self):
        text, _ = self.play(clear_from_the_start, "smtps")
        self.assertTrue(text.startswith(REFUSED), text)

    def test_one_with_an_old_version_only(self):
        def talk(server, connection):
            self.wrapped(connection, minimum_version=ssl.TLSVersion.TLSv1, maximum_version=ssl.TLSVersion.TLSv1_1)
        text, _ = self.play(talk, "smtps")
        self.assertTrue(text.startswith(REFUSED), text)
        self.assertRegex(text, "version|protocol")

    def test_words_put_in_before_the_handshake_are_thrown_away(self):
        heard = []

        def talk(server, connection):
            offer(server, connection)
            connection.sendall(b"220 go\r\n250 AUTH LOGIN\r\n334 VXNlcm5hbWU6\r\n")
            with self.wrapped(connection) as secret:
                heard.append(secret.recv(65536))
                # No AUTH is offered here, so none may follow.
                secret.sendall(b"250 here\r\n")
                heard.append(secret.recv(65536))
                secret.sendall(b"550 no\r\n")
                while secret.recv(65536):
                    pass
        server = OddServer(talk)
        outcome, = self.send("smtp+tls://localhost:%d" % server.port, [self.project("page")[0]])
        server.end()
        self.assertEqual(heard, [b"EHLO ann@example.org\r\n", b"MAIL FROM: <ann@example.org>\r\n"])
        self.assertEqual((outcome["success"], outcome["text"]), (False, "550"))


def main():
    global BUILD, SEED
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True)
    BUILD = parser.parse_args().build
    skipped = mail_servers.skips(needs_port=False)
    if skipped is not None:
        return skipped
    SEED = random_seed("messages")
    result = unittest.main(argv=sys.argv[:1], exit=False).result
    if not result.wasSuccessful():
        return 1
    return mail_servers.SKIPPED if result.skipped else 0


if __name__ == "__main__":
    sys.exit(main())
