"""A page with two pictures goes out as email, in the program itself with mouse and keys: the panel is filled in, a mail
server of another hand takes the message, a copy is saved, and after a restart the addresses are still known. Then a
page of somebody else's goes out that tries to be two messages.

Usage: email_test.py --build FOLDER [--out FOLDER]
Pictures of every stage are left in the second folder, or in reports/email of the first. Skipped with exit code 77 where
there is no virtual display, no network or no mail port.
"""

import configparser
import glob
import os
import sys

HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
sys.path[:0] = [os.path.join(HOUSE, "tests", folder) for folder in ("support", "email")]
import mail_messages  # noqa: E402
import mail_servers  # noqa: E402
from road import Editor, png, run  # noqa: E402
from virtual_desktop import Corvane, Desktop, read, wait_for  # noqa: E402

# What stands in an attribute, by references and by the page's own script, in a text and in a link.
SMUGGLED = ("MAIL FROM:&lt;ceo@example.org&gt;%(end)sRCPT TO:&lt;victim@example.net&gt;%(end)s"
            "DATA%(end)sSubject: smuggled%(end)s")
HOSTILE = """<html><head><title>x</title></head><body>
<p id="a" title="a&#13;&#10;.&#13;&#10;%s">dear friend</p>
<p id="b">stands <a href="http://example.org/page">here</a>.
The second half</p><pre>a
.
%s</pre>
<script>document.getElementById("b").setAttribute("title", "a\\r\\n.\\r\\nMAIL FROM:<ceo@example.org>\\r\\n");</script>
</body></html>
""" % (SMUGGLED % {"end": "&#13;&#10;"}, SMUGGLED % {"end": "\n"})
PANEL = "Email Current Page"
# Places in the panel's window, in pixels.
RECIPIENT = (60, 105)
STATUS = (150, 341)


def is_online():
    """Whether an interface beside the computer's own loop is up and running."""
    for folder in glob.glob("/sys/class/net/*"):
        flags = int(read(os.path.join(folder, "flags")) or b"0", 16)
        if not flags & 8 and flags & 1 and read(os.path.join(folder, "operstate")).strip() != b"down":
            return True
    return False


def make_page(editor, check, folder):
    editor.program.click_into_page(600, 300)
    editor.type("dear bob")
    for name, color in (("one.png", (200, 80, 0)), ("two.png", (0, 80, 200))):
        with open(os.path.join(folder, name), "wb") as file:
            file.write(png(64, 48, color))
        editor.press("picture")
        editor.choose_file(os.path.join(folder, name))
    body = editor.page()
    check.same("the page has its text and two pictures", body,
               'dear bob<img src="one.png" /><img src="two.png" />')
    editor.shot("page")


def open_panel(editor):
    editor.desktop.keys("alt+t")
    editor.settle()
    editor.desktop.keys("m")
    editor.window(PANEL)
    editor.settle()


def fill_panel(editor, server):
    texts = ("bob@example.net", "Bob", "ann@example.org", "Ann Lee", "127.0.0.1", "A page", server.user,
             server.password)
    for text in texts:
        editor.type(text)
        editor.desktop.keys("Tab")
    editor.shot("panel")


def arrived(server, count):
    return wait_for("message %d" % count, lambda: len(server.messages()) == count and server.messages()[-1], 30)


def pictures_of(program):
    return {name: read(program.card(name)) for name in ("one.png", "two.png")}


def send(editor, check, server):
    """The keys stand on Send."""
    editor.desktop.keys("space")
    raw = arrived(server, 1)
    editor.shot("sent")
    page, pictures = read(editor.program.card("wgcard.html")), pictures_of(editor.program)
    found = mail_messages.problems(raw, page, pictures)
    check.true("the message arrives whole", found == [], found)
    found = mail_messages.munpack_problems(raw, pictures)
    check.true("and for a second reader too", found == [], found)
    return page, pictures


def save_copy(editor, check, page, pictures):
    """From Send over Close to Save Copy, which can be pressed only now."""
    editor.desktop.keys("Tab", "Tab", "space")
    editor.window("Save Email")
    editor.settle()
    path = editor.desktop.path("copy.eml")
    editor.type(path)
    editor.desktop.keys("Return")
    raw = wait_for("the copy", lambda: read(path), 20)
    found = mail_messages.problems(raw, page, pictures) + mail_messages.munpack_problems(raw, pictures)
    check.true("the saved copy is read the same way", found == [], found)
    editor.window(PANEL)
    editor.settle()
    editor.shot("copy-saved")


def tell_status(editor, check, server):
    """The status is copied into the subject, so the next message brings it."""
    left, top = editor.corner(editor.desktop.active())
    editor.desktop.click(left + STATUS[0], top + STATUS[1])
    editor.desktop.keys("ctrl+a", "ctrl+c")
    # From the recipient over four boxes to the subject.
    editor.desktop.click(left + RECIPIENT[0], top + RECIPIENT[1])
    editor.desktop.keys(*["Tab"] * 5, "ctrl+a", "ctrl+v")
    editor.shot("status-in-subject")
    editor.desktop.keys(*["Tab"] * 3, "space")
    raw = arrived(server, 2)
    check.true("the status said that the email was sent", b"\nSubject: Email sent.\n" in raw.replace(b"\r", b""),
               raw[:600])


def close_panel(editor):
    editor.desktop.keys("Tab", "space")
    editor.closed()


def remembered(editor, check):
    stored = configparser.RawConfigParser()
    stored.optionxform = str
    path = os.path.join(editor.desktop.environment["XDG_CONFIG_HOME"], "corvane", "settings.ini")
    wait_for("the settings on disk", lambda: stored.read(path) and stored.has_section("QKCVN2"), 10)
    values = {name: stored.get("QKCVN2", "settings\\" + name, fallback=None) for name in
              ("To10", "From10", "DefName", "DefServ", "DefUser", "DefPass", "DefEmail")}
    check.true("what is remembered", values == {
        "To10": "bob@example.net", "From10": "ann@example.org", "DefName": "Ann Lee", "DefServ": "127.0.0.1",
        "DefUser": "ann@example.org", "DefPass": "115.101.99.114.101.116", "DefEmail": None}, values)


def send_again(editor, check, server):
    """After the restart only the recipient has to be chosen."""
    editor.program.click_into_page(600, 300)
    editor.type("again")
    open_panel(editor)
    editor.shot("restarted")
    editor.desktop.keys("Down", *["Tab"] * 8, "space")
    raw = arrived(server, 3)
    found = mail_messages.problems(raw, read(editor.program.card("wgcard.html")), {}, subject="")
    check.true("the restarted program sends with what it remembers", found == [], found)
    editor.shot("sent-again")


def send_hostile(editor, check, server, folder):
    """Nothing of it shows; the server must see one message, with the whole of its text."""
    path = os.path.join(folder, "hostile.html")
    with open(path, "w", encoding="ascii", newline="") as file:
        file.write(HOSTILE)
    editor.menu("f", "o")
    editor.choose_file(path, "Select HTML file")
    wait_for("the page comes", lambda: os.path.isfile(editor.program.card("Page2.html")))
    editor.settle()
    open_panel(editor)
    editor.shot("hostile")
    editor.desktop.keys("Down", *["Tab"] * 8, "space")
    raw = arrived(server, 4)
    page = read(editor.program.card("Page2.html"))
    found = mail_messages.problems(raw, page, {}, subject="")
    check.true("a page that tries to be two messages is one", found == [], found)
    check.true("with all that it said", b"smuggled" in raw and page.count(b"&#46;") >= 3, page)
    editor.shot("hostile-sent")
    check.same("nobody else gets anything", [b"Delivered-To: victim" in one for one in server.messages()], [False] * 4)


def whole(build, pictures, check):
    with mail_servers.LoginServer() as server, Desktop() as desktop:
        program = Corvane(desktop, os.path.join(build, "bin", "corvane"))
        editor = Editor(desktop, program, pictures)
        folder = desktop.path("pictures")
        os.makedirs(folder)
        program.start()
        try:
            make_page(editor, check, folder)
            open_panel(editor)
            fill_panel(editor, server)
            page, sent = send(editor, check, server)
            save_copy(editor, check, page, sent)
            tell_status(editor, check, server)
            close_panel(editor)
            check.true("the program ended well", program.exit_without_saving() == 0)
            remembered(editor, check)
            program.start()
            send_again(editor, check, server)
            close_panel(editor)
            send_hostile(editor, check, server, folder)
            close_panel(editor)
            check.true("and again", program.exit_without_saving() == 0)
        except BaseException:
            editor.shot("failed")
            print(program.messages())
            raise


def refusal():
    if not is_online():
        return "this machine is on no network, and the program says so"
    return mail_servers.why_no_port()


if __name__ == "__main__":
    sys.exit(run(__doc__, "email", whole, ["munpack", "qpsmtpd-forkserver"], refusal))
