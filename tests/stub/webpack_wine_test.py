"""Whole web-packs, started under 32-bit wine: what they extract, what they open, and what they leave alone.

Usage: webpack_wine_test.py --build FOLDER
Skipped with exit code 77 where wine can't run. In continuous integration only the machine itself may be a reason.
"""

import argparse
import functools
import hashlib
import io
import os
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

BUILD = ""
HOUSE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", ".."))
WINE = os.path.join(HOUSE, "tools", "wine32")
SKIPPED = 77
STUB_SIZE = 0x13000
TEMP = "users/guest/Temp"

# Wine itself, of fonts that nothing here draws with.
WINE_TELLS = ["Wine cannot find the FreeType font library.  To enable Wine to",
              "use TrueType fonts please install a version of FreeType greater than", "or equal to 2.0.5.",
              "http://www.freetype.org"]

# The viewer of pages, what is traced, and the folder for temporary files, which each version of wine has somewhere
# else.
HANDLER = r"""REGEDIT4

[HKEY_CLASSES_ROOT\.html]
@="webpacktest"

[HKEY_CLASSES_ROOT\webpacktest\shell\open\command]
@="C:\\viewer\\MarkOpened.exe \"%1\""

[HKEY_CURRENT_USER\Software\Wine\Debug]
"RelayInclude"="kernel32.*;user32.PostQuitMessage;shell32.ShellExecuteA"

[HKEY_CURRENT_USER\Environment]
"TEMP"="C:\\users\\guest\\Temp"
"TMP"="C:\\users\\guest\\Temp"
"""

PAGE = b"<html><body><a href=\"Page2.html\">next</a><img src=\"cat.jpg\">" + b"Hello, web. " * 400 + b"</body></html>"
PICTURE = bytes((index * index * 7919 >> 5) & 0xFF for index in range(150000))
UTF8_NAME = "\u043a\u043e\u0442 \u00e4 \u732b.jpg"


def pages(**more):
    files = {"wgcard.html": PAGE, "Page2.html": b"<html>second</html>", "cat.jpg": PICTURE, UTF8_NAME: PICTURE[:5000],
             "empty.txt": b""}
    files.update(more)
    return files


def archive(files, method=zipfile.ZIP_DEFLATED):
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w") as pack:
        for name, data in files.items():
            info = zipfile.ZipInfo(name, date_time=(2021, 3, 4, 5, 6, 8))
            info.compress_type = method
            pack.writestr(info, data, compresslevel=9)
    return out.getvalue()


def archive_with(data, name):
    """An archive of a page and one more file, of a name that no archiver would write: it is exchanged in the bytes."""
    harmless = "x" * len(name)
    return archive({"wgcard.html": PAGE, harmless: data.encode()}).replace(harmless.encode(), name.encode())


def stub(icon="WP"):
    """The five blocks, as a builder of web-packs puts them together."""
    joined = b""
    for folder, name in (("stub", "STUB1"), ("stub", "STUB2"), ("icons", icon + ".img"), ("stub", "STUB4"),
                         ("stub", "STUB5")):
        with open(os.path.join(BUILD, "resources", folder, name), "rb") as file:
            joined += file.read()
    assert len(joined) == STUB_SIZE
    return joined


def web_pack(files, **options):
    return stub(**options) + archive(files)


def mark(data):
    """Stands for bytes in comparisons: a difference between whole pictures is too long to tell."""
    return f"{len(data)} bytes, {hashlib.sha256(data).hexdigest()}"


def marks(files):
    return {name: mark(data) for name, data in files.items()}


def contents(folder):
    """Every file below a folder with the mark of its bytes, every folder with None."""
    found = {}
    for path, folders, files in os.walk(folder):
        for name in folders:
            found[os.path.relpath(os.path.join(path, name), folder)] = None
        for name in files:
            with open(os.path.join(path, name), "rb") as file:
                found[os.path.relpath(os.path.join(path, name), folder)] = mark(file.read())
    return found


class WebPack(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.home = tempfile.mkdtemp(prefix="wine-", dir=os.path.join(BUILD, "tests", "stub"))
        cls.addClassCleanup(shutil.rmtree, cls.home, ignore_errors=True)
        cls.drive = os.path.join(cls.home, "prefix", "drive_c")
        with open(os.path.join(cls.home, "handler.reg"), "w", encoding="ascii") as file:
            file.write(HANDLER)
        cls.wine("regedit.exe", "/S", "C:\\handler.reg", copy=os.path.join(cls.home, "handler.reg"), timeout=300)
        cls.temp = os.path.join(cls.drive, TEMP)
        os.makedirs(os.path.join(cls.drive, "viewer"))
        shutil.copy(os.path.join(BUILD, "tests", "stub", "MarkOpened.exe"), os.path.join(cls.drive, "viewer"))
        cls.opened_file = os.path.join(cls.drive, "viewer", "opened.txt")
        cls.seen_file = os.path.join(cls.drive, "viewer", "seen.txt")
        # The first start leaves traces of its own in the drive.
        cls.start(stub())

    @classmethod
    def wine(cls, *command, copy=None, cwd="", debug="-all", timeout=120):
        options = ["--prefix", os.path.join(cls.home, "prefix"), "--cwd", cwd]
        if copy:
            options += ["--copy-in", copy]
        return subprocess.run([WINE, "run", *options, "--", *command], stdin=subprocess.DEVNULL, capture_output=True,
                              timeout=timeout + 60, check=False,
                              env={**os.environ, "WINEDEBUG": debug, "CORVANE_WINE_TIMEOUT": str(timeout)})

    @classmethod
    def start(cls, data, name="pack.exe", **options):
        """Runs a pack from a folder of its own, to the end of all that it started."""
        os.makedirs(os.path.join(cls.drive, "packs"), exist_ok=True)
        with open(os.path.join(cls.drive, "packs", name), "wb") as file:
            file.write(data)
        begin = time.monotonic()
        result = cls.wine("C:\\packs\\" + name, timeout=60, **options)
        cls.seconds = time.monotonic() - begin
        return result

    def setUp(self):
        shutil.rmtree(self.temp, ignore_errors=True)
        os.makedirs(self.temp)
        for file in (self.opened_file, self.seen_file):
            if os.path.exists(file):
                os.remove(file)

    def seen(self):
        """The names of the files beside the page, as the viewer finds them."""
        with open(self.seen_file, encoding="utf-8") as file:
            return sorted(file.read().splitlines())

    def opened(self):
        """What the viewer was started with: (command line, folder, show mode) each time."""
        if not os.path.exists(self.opened_file):
            return []
        with open(self.opened_file, encoding="utf-8") as file:
            lines = file.read().splitlines()
        return list(zip(lines[::3], lines[1::3], lines[2::3]))

    def assert_opened_first_page(self):
        (command, folder, mode), = self.opened()
        self.assertEqual(command.lower(), "c:\\viewer\\markopened.exe \"c:\\users\\guest\\temp\\wgcard.html\"")
        self.assertEqual(folder.rstrip("\\").lower(), "c:\\users\\guest\\temp")
        self.assertEqual(mode, "3")  # maximised

    def assert_silent(self, result):
        """It ended by itself, so it asked nothing, and it told nothing."""
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout, b"")
        self.assertEqual([line for line in result.stderr.decode().splitlines() if line not in WINE_TELLS], [])

    def drive_but_temp(self):
        return {name: data for name, data in contents(self.drive).items()
                if not name.startswith(TEMP) and not name.startswith(("packs", "viewer"))}

    def assert_damaged(self, data, why):
        """A pack that opens nothing and writes nothing at all."""
        self.setUp()
        self.assert_silent(self.start(data))
        self.assertEqual(contents(self.temp), {}, why)
        self.assertEqual(self.opened(), [], why)

    def test_StubIsSilentExtractsIntoTempOverwritesAndDeletesNothing(self):
        os.makedirs(os.path.join(self.drive, "elsewhere"), exist_ok=True)
        old = {"keep.html": b"another pack's", "cat.jpg": b"an older and " + bytes(200000) + b" longer picture"}
        for name, data in old.items():
            with open(os.path.join(self.temp, name), "wb") as file:
                file.write(data)
        before = self.drive_but_temp()
        first = pages()
        self.assert_silent(self.start(web_pack(first), cwd="elsewhere"))
        # Straight in the temporary folder, the older picture overwritten, everything else left.
        self.assertEqual(contents(self.temp), marks({"keep.html": old["keep.html"], **first}))
        self.assert_opened_first_page()
        self.assertEqual(self.seen(), sorted(["keep.html", *first]))
        # Nothing anywhere else: neither beside the pack nor in the folder that it was started from.
        self.assertEqual(os.listdir(os.path.join(self.drive, "packs")), ["pack.exe"])
        self.assertEqual(os.listdir(os.path.join(self.drive, "elsewhere")), [])
        self.assertEqual(self.drive_but_temp(), before)

        os.remove(self.opened_file)
        second = {"wgcard.html": b"<html>the second pack</html>", "dog.jpg": b"dog"}
        self.assert_silent(self.start(web_pack(second, icon="HEART")))
        self.assertEqual(contents(self.temp), marks({"keep.html": old["keep.html"], **first, **second}))
        self.assert_opened_first_page()

    def test_TheFilesKeepTheirLocalTime(self):
        self.start(web_pack(pages()))
        seconds = os.stat(os.path.join(self.temp, "cat.jpg")).st_mtime
        self.assertEqual(time.gmtime(seconds)[:6], (2021, 3, 4, 5, 6, 8))  # wine's clock has no zone there

    def test_ArchiveOffsetsAreNotAdjusted(self):
        packed = archive(pages())
        with zipfile.ZipFile(io.BytesIO(packed)) as alone:
            self.assertEqual(alone.infolist()[0].header_offset, 0)
        pack = stub() + packed
        self.assertTrue(pack[STUB_SIZE:] == packed)
        self.assert_silent(self.start(pack))
        self.assertEqual(contents(self.temp), marks(pages()))
        self.assert_opened_first_page()

    def test_TheStepsComeInTheirOrder(self):
        result = self.start(web_pack(pages()), cwd="packs", debug="+relay")
        # Only what the stub itself calls: in its thread, and the address to return to lies in its code.
        trace = re.findall(r"(\w+):Call \w+32\.(\w+)\((.*)\) ret=([0-9a-f]{8})",
                           result.stderr.decode("utf-8", "replace"))
        trace = [call for call in trace if 0x401000 <= int(call[3], 16) < 0x40F000]
        own = [thread for thread, name, _, _ in trace if name == "GetTempPathA"]
        self.assertEqual(len(own), 1)
        calls = [(name, arguments) for thread, name, arguments, _ in trace if thread == own[0]]
        steps = [call for call in calls if call[0] in ("GetModuleFileNameA", "GetCurrentDirectoryA", "GetTempPathA",
                                                       "SetCurrentDirectoryA", "ShellExecuteA", "PostQuitMessage")]
        self.assertEqual([name for name, _ in steps],
                         ["GetModuleFileNameA", "GetCurrentDirectoryA", "GetTempPathA", "SetCurrentDirectoryA",
                          "ShellExecuteA", "SetCurrentDirectoryA", "PostQuitMessage"])
        # Libraries come from the system alone, before anything else is done.
        first = [call for call in calls if call[0].startswith("Set")][:2]
        self.assertEqual([name for name, _ in first], ["SetDllDirectoryA", "SetDefaultDllDirectories"])
        self.assertTrue(first[0][1].endswith("\"\""), first)
        self.assertEqual(first[1][1], "00000800")
        self.assertEqual([name for name, _ in calls if "Create" in name],
                         ["CreateFileA"] * 4 + ["CreateFileW"] + ["CreateFileA"])  # the pack itself, then its files
        self.assertIn("\"C:\\\\users\\\\guest\\\\Temp\\\\\"", steps[3][1])
        shown = steps[4][1].split(",")
        self.assertEqual(shown[:2], ["00000000", "00000000"])  # no owner, no verb
        self.assertTrue(shown[2].endswith("\"wgcard.html\""), shown)
        self.assertEqual(shown[3], "00000000")  # no parameters
        self.assertTrue(shown[4].endswith("\"C:\\\\users\\\\guest\\\\Temp\\\\\""), shown)
        self.assertEqual(shown[5], "00000003")  # maximised
        self.assertIn("\"C:\\\\packs\"", steps[5][1])  # the folder that it was started from
        self.assertEqual(steps[6][1], "00000000")

    def test_APackOfAnyNameFindsItself(self):
        for name in ("\u043f\u0440\u0438\u0432\u0435\u0442.exe", "\u732b caf\u00e9.exe", "a b.exe"):
            self.setUp()
            self.assert_silent(self.start(web_pack(pages()), name=name))
            os.remove(os.path.join(self.drive, "packs", name))
            self.assertEqual(contents(self.temp), marks(pages()))
            self.assert_opened_first_page()

    def test_APackWithoutFirstPageSaysNothing(self):
        files = {"Page2.html": b"<html></html>"}
        self.assert_silent(self.start(web_pack(files)))
        self.assertEqual(contents(self.temp), marks(files))
        self.assertEqual(self.opened(), [])

    def test_StoredFilesAndACommentAreTaken(self):
        packed = archive(pages(), method=zipfile.ZIP_STORED)
        comment = b"made for you"
        packed = packed[:-2] + len(comment).to_bytes(2, "little") + comment
        self.assert_silent(self.start(stub() + packed))
        self.assertEqual(contents(self.temp), marks(pages()))
        self.assert_opened_first_page()

    def test_AReadOnlyFileIsOverwrittenToo(self):
        path = os.path.join(self.temp, "wgcard.html")
        with open(path, "wb") as file:
            file.write(b"old")
        self.wine("cmd.exe", "/c", "attrib +r C:\\users\\guest\\Temp\\wgcard.html")
        self.assert_silent(self.start(web_pack(pages())))
        self.assertEqual(contents(self.temp), marks(pages()))
        self.assert_opened_first_page()

    def test_WarningsOpenNothing(self):
        # One entry with a password: the others are extracted, the page stays closed.
        packed = bytearray(archive(pages()))
        local = packed.index(b"PK\3\4", 10)
        central = packed.index(b"PK\1\2", packed.index(b"PK\1\2") + 10)
        packed[local + 6] |= 1
        packed[central + 8] |= 1
        self.assert_silent(self.start(stub() + bytes(packed)))
        files = pages()
        del files["Page2.html"]
        self.assertEqual(contents(self.temp), marks(files))
        self.assertEqual(self.opened(), [])

    def test_AWrongChecksumOpensNothing(self):
        files = pages()
        packed = bytearray(archive(files, method=zipfile.ZIP_STORED))
        packed[packed.index(PICTURE[:64]) + 10] ^= 1
        before = self.drive_but_temp()
        self.assert_silent(self.start(stub() + bytes(packed)))
        self.assertEqual(self.opened(), [])
        self.assertEqual(self.drive_but_temp(), before)

    def test_DamagedPacksWriteNothingAndOpenNothing(self):
        whole = web_pack(pages())
        before = self.drive_but_temp()
        self.assert_damaged(stub(), "no archive")
        self.assert_damaged(whole[:-1], "last byte gone")
        self.assert_damaged(whole[: STUB_SIZE + (len(whole) - STUB_SIZE) // 2], "half of the archive gone")
        self.assert_damaged(stub() + archive({}), "empty archive")
        self.assertEqual(self.drive_but_temp(), before)

    def test_PacksWithNamesThatLeadElsewhereWriteNothingAndOpenNothing(self):
        before = self.drive_but_temp()
        for name in ("../evil.html", "..\\evil.html", "C:\\evil.html", "sub/evil.html", "..", "/evil", "a:b\\c"):
            self.assert_damaged(stub() + archive_with("evil", name), name)
        self.assertEqual(self.drive_but_temp(), before)
        self.assertFalse(os.path.exists(os.path.join(self.drive, "users", "guest", "evil.html")))

    def test_NamesThatWindowsCantHaveAreChangedAndThePageOpens(self):
        before = self.drive_but_temp()
        for name, created in (("con.html", "_con.html"), ("NUL", "_NUL"), ("a:b", "a_b"),
                              ("C:evil.html", "C_evil.html"), ("Shot 12:30:45.gif", "Shot 12_30_45.gif"),
                              ("what?.gif", "what_.gif"), ("st*r.gif", "st_r.gif"), ("a\"<>|b", "a____b"),
                              ("dots...", "dots.._"), ("a ", "a_"),
                              ("lpt1.x.gif", "_lpt1.x.gif"), ("wgcard.html:x", "wgcard.html_x")):
            with self.subTest(name):
                self.setUp()
                self.assert_silent(self.start(stub() + archive_with("picture", name)))
                self.assertEqual(contents(self.temp), marks({"wgcard.html": PAGE, created: b"picture"}))
                self.assert_opened_first_page()
        self.assertEqual(self.drive_but_temp(), before)

    def test_BytesBehindTheArchiveDontMatter(self):
        for behind in (b"\0", bytes(8), b"PK\5\6" * 30, os.urandom(200000)):
            self.setUp()
            self.assert_silent(self.start(web_pack(pages()) + behind))
            self.assertEqual(contents(self.temp), marks(pages()))
            self.assert_opened_first_page()

    def test_ASignedPackOpens(self):
        with tempfile.TemporaryDirectory(prefix="signed-") as folder:
            path = functools.partial(os.path.join, folder)
            with open(path("pack.exe"), "wb") as file:
                file.write(web_pack(pages()))
            subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                            "/CN=Nobody", "-addext", "extendedKeyUsage=codeSigning", "-keyout", path("key.pem"), "-out",
                            path("certificate.pem")], check=True, capture_output=True)
            subprocess.run(["osslsigncode", "sign", "-certs", path("certificate.pem"), "-key", path("key.pem"), "-h",
                            "sha256", "-in", path("pack.exe"), "-out", path("signed.exe")], check=True,
                           capture_output=True)
            verified = subprocess.run(["osslsigncode", "verify", "-CAfile", path("certificate.pem"), "-in",
                                       path("signed.exe")], check=False, capture_output=True, text=True)
            self.assertEqual(verified.returncode, 0, verified.stdout + verified.stderr)
            with open(path("signed.exe"), "rb") as file:
                signed = file.read()
        self.assertGreater(len(signed), len(web_pack(pages())) + 500)
        self.assert_silent(self.start(signed))
        self.assertEqual(contents(self.temp), marks(pages()))
        self.assert_opened_first_page()


def refusal():
    """The exit code where wine isn't to be had, with the reason told; None where it is."""
    can_run = subprocess.run([WINE, "can-run"], capture_output=True, text=True, check=False)
    if can_run.returncode == SKIPPED:
        print("skipped:", can_run.stderr.strip())
        return SKIPPED
    installed = subprocess.run([WINE, "install"], capture_output=True, text=True, check=False)
    if installed.returncode != 0:
        print(installed.stderr.strip())
        # A machine without a network may go without this test, the one that decides may not.
        return 1 if os.environ.get("CI") == "true" else SKIPPED
    return None


def main():
    refused = refusal()
    if refused is not None:
        return refused
    return 0 if unittest.main(argv=sys.argv[:1] + REST, verbosity=2, exit=False).result.wasSuccessful() else 1


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, REST = parser.parse_known_args()
    BUILD = os.path.abspath(options.build)
    sys.exit(main())
