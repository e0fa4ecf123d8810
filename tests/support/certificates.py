"""Certificates for the mail servers of tests, made by openssl: an authority of the test's own, and what it vouches
for."""
import os
import subprocess

CONFIG = """[ca]
default_ca = own
[own]
new_certs_dir = %(folder)s
database = %(folder)s/index
serial = %(folder)s/serial
default_md = sha256
policy = any
email_in_dn = no
unique_subject = no
[any]
commonName = supplied
"""


def openssl(*arguments):
    ran = subprocess.run(["openssl", *arguments], capture_output=True, text=True, check=False)
    if ran.returncode != 0:
        raise AssertionError("openssl %s: %s" % (arguments[0], ran.stderr))


class Authority:
    """Its own certificate is in `path`."""

    def __init__(self, folder, name="A test's own authority"):
        self.folder = folder
        os.makedirs(folder)
        self.path, self.key = os.path.join(folder, "authority.crt"), os.path.join(folder, "authority.key")
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "10", "-subj", "/CN=" + name,
                "-addext", "basicConstraints=critical,CA:TRUE", "-keyout", self.key, "-out", self.path)
        self.config = os.path.join(folder, "config")
        for file, text in ((self.config, CONFIG % {"folder": folder}), (os.path.join(folder, "index"), ""),
                           (os.path.join(folder, "serial"), "1000\n")):
            with open(file, "w", encoding="ascii") as out:
                out.write(text)

    def vouch(self, name, hosts, start="20200101000000Z", end="20991231235959Z"):
        """Paths of a certificate for the hosts and of its key. The days are the first and the last on which it
        holds."""
        path, key, asked, extensions = (os.path.join(self.folder, name + ending)
                                        for ending in (".crt", ".key", ".csr", ".ext"))
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", "/CN=" + name, "-keyout", key, "-out", asked)
        with open(extensions, "w", encoding="ascii") as file:
            file.write("subjectAltName=%s\n" % ",".join(hosts))
        openssl("ca", "-batch", "-notext", "-config", self.config, "-cert", self.path, "-keyfile", self.key,
                "-extfile", extensions, "-startdate", start, "-enddate", end, "-in", asked, "-out", path)
        return path, key

    def vouch_for_itself(self, name, hosts):
        path, key = (os.path.join(self.folder, name + ending) for ending in (".crt", ".key"))
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "10", "-subj", "/CN=" + name,
                "-addext", "subjectAltName=" + ",".join(hosts), "-keyout", key, "-out", path)
        return path, key
