"""Pages with pictures for the tests of mail, and what two readers of other hands make of the messages: Python's email
package and munpack."""
import email
import email.errors
import email.policy
import os
import random
import re
import subprocess
import tempfile

WORDS = ("summer holiday garden letter friend sunday water birthday greeting picture e=mc2 1+1=2 x.y .dot. a=3D== "
         "&amp; &lt;so&gt; &nbsp; unbelievably-long-word-that-goes-on-and-on-and-on-without-any-blank-in-it-for-a-while"
         ).split()
# As the program writes text above U+007F.
SCRIPTS = "".join("&#%d;" % ord(letter) for letter in "\u00c4\u00df\u0416\u05d0\u0639\u0905\u4e2d\u65e5\ud55c\U0001f600")
KINDS = ("none", "one", "twenty", "themed", "scripts")
NAMES = ("photo%d.jpg", "drawing%d.gif", "icon%d.png", "SCAN%d.JPEG", "Pic_%d.GIF")
# Sizes at which the lines of base64 end in different ways; 228 fills its last line.
SIZES = (0, 1, 2, 57, 58, 76, 77, 114, 228, 1000, 5700, 20001)


def text(numbers, words):
    return "".join(numbers.choice(WORDS) + numbers.choice((" ", " ", "<br />", "</font><font size=\"3\">"))
                   for _ in range(words))


def make_project(folder, kind, seed):
    """A page and its pictures, as the program leaves them; gives the page's bytes and {name: bytes}."""
    numbers = random.Random(seed)
    pictures = {}
    body, attributes = text(numbers, numbers.randrange(5, 120)), ""
    count = {"none": 0, "one": 1, "twenty": 20}.get(kind, 2)
    for number in range(count):
        name = numbers.choice(NAMES) % number
        pictures[name] = numbers.randbytes(numbers.choice(SIZES))
        body += '<img src="%s" width="%d" />' % (name, number + 10) + text(numbers, 4)
    if kind == "themed":
        pictures["stars.jpg"] = numbers.randbytes(3000)
        attributes = ' background="stars.jpg" style="font-size: small;"'
    if kind == "scripts":
        body = SCRIPTS * 8 + body + SCRIPTS
    page = '<html><head><title></title></head><body%s><font size="3">%s</font></body></html>' % (attributes, body)
    os.makedirs(folder)
    for name, data in {"wgcard.html": page.encode("ascii"), **pictures}.items():
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)
    return page.encode("ascii"), pictures


def as_sent(page):
    """The page with its references led to content ids, before these take the place of the names."""
    page = re.sub(b'src="', b'SRC="cid:', page, flags=re.IGNORECASE)
    return re.sub(b'background="', b'BACKGROUND="cid:', page, count=1, flags=re.IGNORECASE)


def unbroken(data):
    """The breaks that go into a page on its way stand behind tags, where they don't show."""
    return data.replace(b"\r", b"").replace(b"\n", b"")


def problems(raw, page, pictures, subject="A page"):
    """What Python's reader finds wrong with a message, a line each."""
    wrong = []

    def same(what, found, wanted):
        if found != wanted:
            wrong.append("%s: found %.200r, wanted %.200r" % (what, found, wanted))
    message = email.message_from_bytes(raw, policy=email.policy.default)
    parts = list(message.walk())
    kinds = [part.get_content_type() for part in parts]
    texts = ["multipart/alternative", "text/plain", "text/html"]
    same("kinds of parts", kinds[:-len(pictures)] if pictures else kinds,
         (["multipart/related"] if pictures else []) + texts)
    for part in parts:
        # The NULs behind a full last line of base64 are meant.
        nuls = part.get_content_maintype() == "image" and "\0" in part.get_payload()
        same("defects of %s" % part.get_content_type(),
             [defect for defect in part.defects
              if not (nuls and isinstance(defect, email.errors.InvalidBase64CharactersDefect))], [])
    same("subject", message["Subject"], subject)
    same("sender", message["From"].addresses[0].addr_spec, "ann@example.org")
    same("recipient", message["To"].addresses[0].addr_spec, "bob@example.net")
    same("date", message["Date"].datetime is not None, True)
    if wrong:
        return wrong
    html = [part for part in parts if part.get_content_type() == "text/html"][0].get_payload(decode=True)
    ids = {}
    for part in parts[len(texts) + 1:] if pictures else []:
        name = part.get_filename()
        same("picture %s" % name, part.get_payload(decode=True), pictures.get(name))
        ids[part["Content-ID"].strip("<>")] = name
    same("pictures", sorted(ids.values()), sorted(pictures))
    # A reference that a line break has split keeps the picture's name.
    referred = [reference.decode() for reference in re.findall(rb'cid:([^"]*)"', unbroken(html))]
    same("references", sorted(ids.get(reference, reference) for reference in referred), sorted(pictures))
    named = html
    for identifier, name in ids.items():
        named = named.replace(b"cid:" + identifier.encode(), b"cid:" + name.encode())
    same("page", unbroken(named), unbroken(as_sent(page)))
    return wrong


def munpack_problems(raw, pictures):
    """The same with munpack: every picture is a file of its own, byte for byte."""
    wrong = []
    with tempfile.TemporaryDirectory() as scratch:
        path, out = os.path.join(scratch, "message"), os.path.join(scratch, "out")
        with open(path, "wb") as file:
            file.write(raw)
        os.mkdir(out)
        ran = subprocess.run(["munpack", "-q", "-f", "-t", "-C", out, path], capture_output=True, check=False, timeout=60)
        if ran.returncode != 0:
            return ["munpack: %r" % (ran.stdout + ran.stderr)]
        found = {}
        for name in os.listdir(out):
            with open(os.path.join(out, name), "rb") as file:
                found[name] = file.read()
        texts = [found.pop(name, b"") for name in ("part1", "part2")]
        if found != pictures:
            wrong.append("munpack: pictures %r, wanted %r" % (sorted(found), sorted(pictures)))
        if b"web greeting message made with Corvane" not in texts[0] or b"</html>" not in texts[1]:
            wrong.append("munpack: texts %r" % texts)
    return wrong
