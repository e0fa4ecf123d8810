"""Time and memory of a message with 20 MB of pictures, from the files to the form that is sent: compose beside Python's
email package, compose_b64 beside coreutils' base64 on the same bytes, compose_mem beside the size of the message; and
send_tls, the time in which the message goes through TLS to a server on this machine, beside Python's smtplib with the
same bytes. Prints a line for each figure."""
import argparse
import email.message
import email.policy
import email.utils
import os
import random
import shutil
import smtplib
import ssl
import subprocess
import sys
import tempfile
import time

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.path[:0] = [os.path.join(HOUSE, "tests", "support")]
import certificates  # noqa: E402
from Figure import Figure  # noqa: E402

PICTURES = 14
PICTURE_BYTES = 1_500_000
COMPOSE_BOUND = 0.05
BASE64_BOUND = 1.3
MEMORY_BOUND = 1.1
SEND_BOUND = 1.0


def make_project(folder):
    numbers = random.Random(1)
    os.makedirs(folder)
    names = ["photo%d.jpg" % number for number in range(PICTURES)]
    for name in names:
        with open(os.path.join(folder, name), "wb") as file:
            file.write(numbers.randbytes(PICTURE_BYTES))
    page = "<html><head><title></title></head><body>%s</body></html>" % "".join('<img src="%s" />' % n for n in names)
    with open(os.path.join(folder, "wgcard.html"), "w", encoding="ascii") as file:
        file.write(page)
    return names


def ours(tool, folder):
    """Milliseconds, bytes of the message, and bytes of memory at most."""
    ran = subprocess.run([tool, "measure", folder], capture_output=True, text=True, check=True)
    milliseconds, size, memory = ran.stdout.split()
    return float(milliseconds), int(size), int(memory)


def python_package(folder, names):
    start = time.perf_counter()
    message = email.message.EmailMessage(policy=email.policy.SMTP)
    message["From"], message["To"], message["Subject"] = "ann@example.org", "bob@example.net", "A page"
    message.set_content("This is a web greeting message.")
    ids = {name: email.utils.make_msgid(domain="x") for name in names}
    with open(os.path.join(folder, "wgcard.html"), encoding="ascii") as file:
        page = file.read()
    for name, identifier in ids.items():
        page = page.replace('"%s"' % name, '"cid:%s"' % identifier[1:-1])
    message.add_alternative(page, subtype="html")
    html = message.get_payload()[1]
    for name, identifier in ids.items():
        with open(os.path.join(folder, name), "rb") as file:
            html.add_related(file.read(), "image", "jpeg", cid=identifier, filename=name)
    size = len(message.as_bytes())
    milliseconds = (time.perf_counter() - start) * 1000
    if size < PICTURES * PICTURE_BYTES * 4 / 3:
        sys.exit("the package's message is too small")
    return milliseconds


def base64_of(path):
    start = time.perf_counter()
    subprocess.run(["base64", "-w", "76", path], stdout=subprocess.DEVNULL, check=True)
    return (time.perf_counter() - start) * 1000


# A server that takes whatever comes and throws it away, in a process of its own.
SINK = """
import socket, ssl, sys
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(*sys.argv[1:])
listener = socket.create_server(("127.0.0.1", 0))
print(listener.getsockname()[1], flush=True)
room = bytearray(1 << 18)
while True:
    plain, _ = listener.accept()
    with context.wrap_socket(plain, server_side=True) as client:
        client.sendall(b"220 here\\r\\n")
        end, in_message = b"", False
        while size := client.recv_into(room):
            end = (end + bytes(room[max(0, size - 5):size]))[-5:]
            if in_message:
                if end != b"\\r\\n.\\r\\n":
                    continue
                in_message = False
                client.sendall(b"250 taken\\r\\n")
            elif room.startswith(b"DATA") or room.startswith(b"data"):
                in_message = True
                client.sendall(b"354 go on\\r\\n")
            elif room[:4].upper() == b"QUIT":
                client.sendall(b"221 bye\\r\\n")
                break
            else:
                client.sendall(b"250 fine\\r\\n")
"""


class Sink:
    def __init__(self, folder):
        self.authority = certificates.Authority(os.path.join(folder, "authority"))
        certificate, key = self.authority.vouch("good", ["DNS:localhost", "IP:127.0.0.1"])
        self.process = subprocess.Popen([sys.executable, "-c", SINK, certificate, key], stdout=subprocess.PIPE,
                                        text=True)
        self.port = int(self.process.stdout.readline())

    def ours(self, tool, folder):
        ran = subprocess.run([tool, "time", "smtps://localhost:%d" % self.port, self.authority.path, folder],
                             capture_output=True, text=True, check=True)
        return float(ran.stdout)

    def smtplib(self, message):
        start = time.perf_counter()
        trusting = ssl.create_default_context(cafile=self.authority.path)
        with smtplib.SMTP_SSL("localhost", self.port, "ann", context=trusting) as client:
            client.sendmail("ann@example.org", ["bob@example.net"], message)
        return (time.perf_counter() - start) * 1000

    def end(self):
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()


def sent(tool, scratch, folder, rounds):
    """Pairs of milliseconds, ours and the peer's."""
    subprocess.run([tool, "compose", folder], check=True)
    with open(folder + ".wire", "rb") as file:
        message = file.read()[:-len(b".\r\n")]
    sink = Sink(scratch)
    try:
        return [(sink.ours(tool, folder), sink.smtplib(message)) for _ in range(rounds)]
    finally:
        sink.end()


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", required=True, help="the build folder")
    parser.add_argument("--rounds", type=int, default=15, help="messages of each, of which the median counts")
    arguments = parser.parse_args()
    tool = os.path.join(arguments.build, "bin", "mail_tool")
    if not os.path.exists(tool) or not shutil.which("base64"):
        sys.exit("not there: mail_tool or base64")
    with tempfile.TemporaryDirectory() as scratch:
        folder = os.path.join(scratch, "project")
        names = make_project(folder)
        joined = os.path.join(scratch, "joined")
        with open(joined, "wb") as file:
            for name in names:
                with open(os.path.join(folder, name), "rb") as picture:
                    shutil.copyfileobj(picture, file)
        package, base64, memory = Figure("compose"), Figure("compose_b64"), Figure("compose_mem", "bytes")
        for _ in range(arguments.rounds):
            milliseconds, size, most = ours(tool, folder)
            package.add(milliseconds, python_package(folder, names))
            # A program's start isn't what is compared.
            base64.add(milliseconds, base64_of(joined) - base64_of(os.devnull))
            memory.add(most, size)
        send = Figure("send_tls")
        for pair in sent(tool, scratch, folder, arguments.rounds):
            send.add(*pair)
    kept = [package.print(COMPOSE_BOUND), base64.print(BASE64_BOUND), send.print(SEND_BOUND),
            memory.print(MEMORY_BOUND)]
    sys.exit(0 if all(kept) else 1)


main()
