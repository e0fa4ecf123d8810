"""Pages with pictures for the tests of mail, and what two readers of other hands make of the messages: Python's email
package and munpack."""
import email
import email.errors
import email.policy
import html.parser
import os
import random
import re
import subprocess
import tempfile

WORDS = ("summer holiday garden letter friend sunday water birthday greeting picture e=mc2 1+1=2 x.y .dot. a=3D== "
         "&amp; &lt;so&gt; &nbsp; unbelievably-long-word-that-goes-on-and-on-and-on-without-any-blank-in-it-for-a-while"
         ).split()
# As the program writes text above U+007F.
SCRIPTS = "".join("&#%d;" % ord(letter)
                  for letter in "\u00c4\u00df\u0416\u05d0\u0639\u0905\u4e2d\u65e5\ud55c\U0001f600")
KINDS = ("none", "one", "twenty", "themed", "scripts", "letters")
NAMES = ("photo%d.jpg", "drawing%d.gif", "icon%d.png", "SCAN%d.JPEG", "Pic_%d.GIF")
# Sizes at which the lines of base64 end in different ways; 228 fills its last line.
SIZES = (0, 1, 2, 57, 58, 76, 77, 114, 228, 1000, 5700, 20001)
# A page that was made elsewhere keeps its line ends.
LINE_ENDS = ("\r\n", "\n", "")
# What the program writes as it stands, and so the pages of other hands too.
TITLES = ("Gr\u00f6\u00dfe 10 \u20ac", "\u0416 \u732b", "plain", "a > b", "tab\there")
OUTER, INNER = b"CVN2_A_3435FE2_6617A_AA", b"CVN2_B_3435FE2_6617B_BB"


def text(numbers, words, end):
    gaps = (" ", " ", "<br />", "</font><font size=\"3\">", end, "<br />" + end)
    return "".join(numbers.choice(WORDS) + numbers.choice(gaps) for _ in range(words))


def make_project(folder, kind, seed):
    """A page and its pictures, as the program leaves them; gives the page's bytes and {name: bytes}."""
    numbers = random.Random(seed)
    end = numbers.choice(LINE_ENDS)
    pictures = {}
    body, attributes = end + text(numbers, numbers.randrange(5, 120), end), ""
    count = {"none": 0, "one": 1, "twenty": 20}.get(kind, 2)
    for number in range(count):
        name = numbers.choice(NAMES) % number
        if kind == "letters":
            name = ("sch\u00f6n%d.jpg", "\u20ac\u00e9%d.gif")[number] % number
        pictures[name] = numbers.randbytes(numbers.choice(SIZES))
        body += '<img src="%s" alt="%s" width="%d" />' % (name, numbers.choice(TITLES), number + 10)
        body += text(numbers, 4, end)
    if kind == "themed":
        pictures["stars.jpg"] = numbers.randbytes(3000)
        attributes = ' background="stars.jpg" style="font-size: small;"'
    if kind == "scripts":
        body = SCRIPTS * 8 + body + SCRIPTS
    page = '<html><head><title>%s</title>%s</head>%s<body%s>%s<font size="3">%s</font>%s</body></html>' % (
        numbers.choice(TITLES), end, end, attributes, end, body, end)
    os.makedirs(folder)
    for name, data in {"wgcard.html": page.encode(), **pictures}.items():
        with open(os.path.join(folder, name), "wb") as file:
            file.write(data)
    return page.encode(), pictures


def wrapped(data):
    """The lines of a page in a message, by the rules of the format: a break stands behind the last tag of 70 bytes,
    else, as a soft one, behind their last blank, else behind all of them."""
    lines = b""
    if len(data) < 76:
        return data
    while len(data) > 76 or not lines:
        piece = data[:70]
        place = piece.rfind(b">") + 1
        end = b"\r\n" if place else b"=\r\n"
        place = place or piece.rfind(b" ") + 1 or len(piece)
        lines += piece[:place] + end
        data = data[place:]
    return lines + data


def with_wire_ends(data):
    """Each line end as CR LF, one that a soft break has come into behind the break."""
    return re.sub(rb"\r\n|\r|\n", b"\r\n", data.replace(b"\r=\r\n\n", b"=\r\n\r\n"))


def as_sent(page, ids):
    """The page as it stands in a message, byte for byte; `ids` are pairs of a picture's name and its content id."""
    data = re.sub(b'src="', b'SRC="cid:', page.strip(b" "), flags=re.IGNORECASE)
    data = re.sub(b'background="', b'BACKGROUND="cid:', data, count=1, flags=re.IGNORECASE)
    data = with_wire_ends(wrapped(data.replace(b"=", b"=3D")))
    for name, identifier in ids:
        data = re.sub(re.escape(b"cid:" + name.encode()), b"cid:" + identifier, data, flags=re.IGNORECASE)
    return data


def with_names(data, ids):
    for name, identifier in ids:
        data = data.replace(b"cid:" + identifier, b"cid:" + name.encode())
    return data


def with_references(page):
    """The page with its references led to content ids, before these take the place of the names."""
    page = re.sub(b'src="', b'SRC="cid:', with_wire_ends(page), flags=re.IGNORECASE)
    return re.sub(b'background="', b'BACKGROUND="cid:', page, count=1, flags=re.IGNORECASE)


def where_different(found, wanted):
    """-1 where the page that a reader tells is the wanted one, but for line ends right behind tags, which a message
    adds and which don't show; else the place in `found`."""
    at = 0
    behind_a_tag = False
    for byte in wanted:
        if found[at:at + 1] != bytes((byte,)) and found[at:at + 2] == b"\r\n" and behind_a_tag:
            at += 2
        if found[at:at + 1] != bytes((byte,)):
            return at
        behind_a_tag = byte == ord(">") or behind_a_tag and byte in b"\r\n"
        at += 1
    if behind_a_tag and found[at:] == b"\r\n":
        at += 2
    return -1 if at == len(found) else at


def html_in(raw):
    """The bytes of the page's part as they stand in the message, none where it isn't found, and the line end of its
    lines."""
    found = re.search(rb"Content-Type: text/html;(\r?\n)\tcharset=\"iso-8859-1\"\r?\n"
                      rb"Content-Transfer-Encoding: quoted-printable\r?\n\r?\n", raw)
    if not found:
        return b"", b"\r\n"
    end = found[1]
    # A page may have the boundary's letters in its text.
    boundary = INNER if b'boundary="' + INNER in raw[:found.start()] else OUTER
    stop = raw.find(end * 2 + b"--" + boundary + b"--", found.end())
    return raw[found.end():stop], end


def with_taken_dots(raw, saved):
    """The message with the dots that its server took from the beginnings of lines, and how many these were. The sender
    doesn't double them, and that is meant."""
    start = b"Content-Type: multipart/"
    if b"\r\n" not in raw:  # it keeps lines with an end of its own
        saved = saved.replace(b"\r\n", b"\n")
    head, _, body = raw.partition(start)
    lines = body.split(b"\n")
    taken = 0
    for at, line in enumerate(saved.partition(start)[2].split(b"\n")):
        if line.startswith(b".") and lines[at] == line[1:]:
            lines[at] = line
            taken += 1
    return head + start + b"\n".join(lines), taken


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
    ids = []
    names = [name.decode("cp1252") for name in re.findall(rb'\n\tName="([^"\r\n]*)"', raw)]
    for part, name in zip(parts[len(texts) + 1:] if pictures else [], names):
        same("picture %s" % name, part.get_payload(decode=True), pictures.get(name))
        ids.append((name, part["Content-ID"].strip("<>").encode()))
    same("pictures", sorted(names), sorted(pictures))
    same("ids", len({identifier for _, identifier in ids}), len(pictures))
    sent, end = html_in(raw)
    # A server that keeps a line end of its own for each line makes the page's ones alike.
    kept = (lambda data: data.replace(b"\r\n", end)) if end == b"\n" else (lambda data: data)
    same("bytes of the page", sent, kept(as_sent(page, ids)))
    if end == b"\r\n":
        same("bare line ends", re.findall(rb".{0,20}(?:\r(?!\n)|(?<!\r)\n)", raw), [])
    # A reference that a line break has split keeps the picture's name.
    html = [part for part in parts if part.get_content_type() == "text/html"][0].get_payload(decode=True)
    told, wanted = with_names(html, ids), with_references(page)
    if end == b"\n":
        told, wanted = (data.replace(b"\r\n", b"\n").replace(b"\n", b"\r\n") for data in (told, wanted))
    place = where_different(told, wanted)
    if place >= 0:
        wrong.append("page as it is read: differs at %d: %r" % (place, told[max(0, place - 40):place + 40]))
    return wrong


class Tokens(html.parser.HTMLParser):
    """What a page says, without blanks and line ends, which a message adds, without the order of attributes, and
    without what a message does to references of pictures."""

    def __init__(self, page, is_exact=False):
        super().__init__(convert_charrefs=True)
        self.found = []
        self.is_exact = is_exact
        self.feed(page)
        self.close()

    def plain(self, text):
        if self.is_exact:
            return (text or "").strip("\r\n")
        return re.sub(r"[ \t\r\n\f]+|cid:", "", (text or "").lower())

    def handle_starttag(self, tag, attrs):
        self.found.append((tag, sorted((name, self.plain(value)) for name, value in attrs)))

    handle_startendtag = handle_starttag

    def handle_endtag(self, tag):
        self.found.append("/" + tag)

    def handle_data(self, data):
        if self.plain(data):
            if self.found and self.found[-1][0] == "text":
                self.found[-1] = ("text", self.found[-1][1] + self.plain(data))
            else:
                self.found.append(("text", self.plain(data)))

    def handle_comment(self, data):
        self.found.append(("comment", self.plain(data)))


def tokens_of(raw):
    message = email.message_from_bytes(raw, policy=email.policy.default)
    body, = [part for part in message.walk() if part.get_content_type() == "text/html"]
    return Tokens(body.get_payload(decode=True).decode("latin-1")).found


def munpack_problems(raw, pictures):
    """The same with munpack: every picture is a file of its own, byte for byte."""
    wrong = []
    with tempfile.TemporaryDirectory() as scratch:
        path, out = os.path.join(scratch, "message"), os.path.join(scratch, "out")
        with open(path, "wb") as file:
            file.write(raw)
        os.mkdir(out)
        ran = subprocess.run(["munpack", "-q", "-f", "-t", "-C", out, path], capture_output=True, check=False,
                             timeout=60)
        if ran.returncode != 0:
            return ["munpack: %r" % (ran.stdout + ran.stderr)]
        found = {}
        for name in os.listdir(out):
            with open(os.path.join(out, name), "rb") as file:
                found[name] = file.read()
        texts = [found.pop(name, b"") for name in ("part1", "part2")]
        # It writes an X for each letter that it doesn't take into a name.
        wanted = {re.sub(r"[^ -~]", "X", name): data for name, data in pictures.items()}
        if found != wanted:
            wrong.append("munpack: pictures %r, wanted %r" % (sorted(found), sorted(wanted)))
        if b"web greeting message made with Corvane" not in texts[0] or b"</html>" not in texts[1]:
            wrong.append("munpack: texts %r" % texts)
    return wrong
