"""Two mail servers of other hands on 127.0.0.1 for as long as a test needs them; each with a configuration and a folder
of its own. One offers AUTH LOGIN, the other AUTH PLAIN. Port and encryption are the test's to choose; without a word
they are port 25 and none."""

import contextlib
import errno
import os
import pwd
import re
import shutil
import socket
import ssl
import subprocess
import tempfile
import time

SKIPPED = 77
PORT = 25
HERE = os.path.dirname(os.path.abspath(__file__))
# The interpreter whose modules Debian's packages bring.
PYTHON = "/usr/bin/python3"
PLUGINS = "/usr/share/qpsmtpd/plugins"


def can_bind(port=PORT):
    """None, or why not."""
    with socket.socket() as probe:
        probe.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        try:
            probe.bind(("127.0.0.1", port))
        except OSError as error:
            return error
    return None


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def why_no_port(port=PORT, seconds=60):
    """None where a server can have the port. Another test may have it for a while."""
    end = time.monotonic() + seconds
    while True:
        error = can_bind(port)
        if error is None:
            return None
        if error.errno != errno.EADDRINUSE or time.monotonic() > end:
            return "port %d can't be had: %s" % (port, error.strerror)
        time.sleep(0.2)


def skips(needs_port=True):
    """The exit code of a test whose servers can't run here, behind a word that tells why; None where they can."""
    missing = [server.name for server in SERVERS if not server.is_there()]
    if missing:
        print("skipped, not there:", *missing)
        return 1 if os.environ.get("CI") == "true" else SKIPPED
    reason = why_no_port() if needs_port else None
    if reason:
        print("skipped:", reason)
        return SKIPPED
    return None


class Server:
    """To be used with `with`. `messages` gives what has arrived, in its order. `kind` is "clear", "starttls" or, for
    encryption from the start, "tls"; for the last two `certificate` and `key` are paths, and `authority` is that of who
    vouches."""
    user, password = "ann@example.org", "secret"

    def __init__(self, port=PORT, kind="clear", certificate=None, key=None, authority=None):
        self.port, self.kind, self.authority = port, kind, authority
        self.certificate, self.key = certificate, key

    def __enter__(self):
        self.scratch = tempfile.mkdtemp(prefix="mail-server-")
        self.mail = os.path.join(self.scratch, "mail")
        os.mkdir(self.mail)
        command, environment = self.configure()
        self.log = open(os.path.join(self.scratch, "log"), "wb")
        self.process = subprocess.Popen(command, env={**os.environ, **environment}, cwd=self.scratch,
                                        stdin=subprocess.DEVNULL, stdout=self.log, stderr=self.log)
        try:
            self.wait_until_ready()
        except BaseException:
            self.__exit__()
            raise
        return self

    def wait_until_ready(self, seconds=30):
        end = time.monotonic() + seconds
        while True:
            with contextlib.suppress(OSError), self.connection() as probe:
                if probe.recv(1024).startswith(b"220"):
                    return
            if self.process.poll() is not None or time.monotonic() > end:
                with open(self.log.name, encoding="utf-8", errors="replace") as file:
                    raise AssertionError("%s doesn't start:\n%s" % (self.name, file.read()))
            time.sleep(0.05)

    def connection(self):
        plain = socket.create_connection(("127.0.0.1", self.port), 5)
        if self.kind != "tls":
            return plain
        trusting = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
        trusting.check_hostname, trusting.verify_mode = False, ssl.CERT_NONE
        return trusting.wrap_socket(plain)

    def __exit__(self, *_):
        self.process.terminate()
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        self.log.close()
        shutil.rmtree(self.scratch, ignore_errors=True)

    def put(self, name, text):
        with open(os.path.join(self.scratch, name), "w", encoding="ascii") as file:
            file.write(text + "\n")


class LoginServer(Server):
    """Takes the first of two dots at a line's beginning. Encrypts from the start on port 465 alone."""
    name = "qpsmtpd"
    takes_single_dots = False
    refusal = r"535 LOGIN authentication failed for ann@example\.org - .*\r\n"

    @staticmethod
    def is_there():
        return bool(shutil.which("qpsmtpd-forkserver"))

    def configure(self):
        as_root = os.geteuid() == 0
        account = pwd.getpwnam("qpsmtpd") if as_root else pwd.getpwuid(os.geteuid())
        os.mkdir(os.path.join(self.scratch, "spool"))
        self.put("plugin_dirs", PLUGINS)
        encryption = ""
        if self.certificate:
            # Where it may read them once it has given up its rights.
            paths = [shutil.copy(path, self.scratch) for path in (self.certificate, self.key, self.authority)]
            for path in paths:
                os.chown(path, account.pw_uid, account.pw_gid)
            encryption = "tls %s\n" % " ".join(paths)
        self.put("plugins", encryption + "auth/auth_flat_file\nrcpt_ok\nqueue/maildir " + self.mail)
        self.put("flat_auth_pw", "%s:%s" % (self.user, self.password))
        self.put("rcpthosts", "example.net")
        self.put("spool_dir", os.path.join(self.scratch, "spool"))
        self.put("logging", "logging/warn 6")
        if as_root:
            for folder in ("", "spool", "mail"):
                os.chown(os.path.join(self.scratch, folder), account.pw_uid, account.pw_gid)
        return (["qpsmtpd-forkserver", "-l", "127.0.0.1", "-p", str(self.port), "-u", account.pw_name, "-H",
                 "-m", "100"],
                {"QPSMTPD_CONFIG": self.scratch})

    def messages(self):
        """Files of the maildir carry the moment in their names."""
        folder = os.path.join(self.mail, "new")
        names = os.listdir(folder) if os.path.isdir(folder) else []
        names.sort(key=lambda name: [int(number) for number in re.match(r"(\d+)\.P\d+M(\d+)", name).groups()])
        found = []
        for name in names:
            with open(os.path.join(folder, name), "rb") as file:
                found.append(file.read())
        return found


class PlainServer(Server):
    """Takes a dot at a line's beginning, whatever follows, as the standard has it."""
    name = "Twisted"
    takes_single_dots = True
    refusal = r"535 Authentication failed\r\n"

    @staticmethod
    def is_there():
        return os.path.exists(PYTHON) and subprocess.run(
            [PYTHON, "-I", "-c", "import twisted.mail.smtp"], capture_output=True, check=False).returncode == 0

    def configure(self):
        encryption = [self.certificate, self.key, self.kind] if self.certificate else []
        return [PYTHON, "-I", "-B", os.path.join(HERE, "plain_mail_server.py"), self.mail, self.user, self.password,
                str(self.port), *encryption], {}

    def messages(self):
        found = []
        for name in sorted(name for name in os.listdir(self.mail) if name.isdigit()):
            with open(os.path.join(self.mail, name), "rb") as file:
                found.append(file.read())
        return found


SERVERS = (LoginServer, PlainServer)
