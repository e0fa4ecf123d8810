"""The stub's file, read by a parser of this test's own: every row of the layout, and the blocks that web-packs are made
of.

Usage: pe_layout_test.py --build FOLDER
"""

import argparse
import os
import struct
import sys
import unittest

BUILD = ""

SECTIONS = [
    # name, file offset, file size, relative address, memory size
    (".text", 0x1000, 0xE000, 0x1000, 0xE000),
    (".rdata", 0xF000, 0x2000, 0xF000, 0x2000),
    (".data", 0x11000, 0x1000, 0x11000, 0x4000),
    (".rsrc", 0x12000, 0x1000, 0x15000, 0x1000),
]
ICON_AT, ICON_SIZE = 0x124B0, 744
RESOURCES = {
    # (type, name): file offset, size
    (16, 1): (0x12100, 944),
    (3, 1): (ICON_AT, ICON_SIZE),
    (14, "IDI_ICON1"): (0x12798, 20),
}
BLOCKS = [("STUB1", 0x00000, 37440), ("STUB2", 0x09240, 37488), ("WP", ICON_AT, ICON_SIZE), ("STUB4", 0x12798, 16),
          ("STUB5", 0x127A8, 2136)]


def read(*parts):
    with open(os.path.join(BUILD, *parts), "rb") as file:
        return file.read()


def words(data, at, count=1, form="I"):
    return struct.unpack_from(f"<{count}{form}", data, at)


class PeLayout(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.data = read("bin", "stub.exe")
        cls.coff = words(cls.data, 0x3C)[0] + 4
        cls.optional = cls.coff + 20

    def offset(self, address):
        """File offset of a relative address."""
        for _, offset, size, start, _ in SECTIONS:
            if start <= address < start + size:
                return offset + address - start
        self.fail(f"address {address:#x} lies in no section")

    def name_at(self, at):
        return self.data[at : self.data.index(0, at)].decode("ascii")

    def test_TheFileHasItsLength(self):
        self.assertEqual(len(self.data), 0x13000)

    def test_TheHeadersAreAsLaidDown(self):
        self.assertEqual(self.data[:2], b"MZ")
        self.assertEqual(self.data[self.coff - 4 : self.coff], b"PE\0\0")
        machine, sections, stamp, symbols, symbol_count, optional_size, flags = struct.unpack_from(
            "<HHIIIHH", self.data, self.coff)
        self.assertEqual((machine, sections, stamp, symbols, symbol_count, optional_size), (0x14C, 4, 0, 0, 0, 224))
        self.assertTrue(flags & 0x0002, "executable")
        self.assertTrue(flags & 0x0100, "32 bits")
        self.assertTrue(flags & 0x0001, "no relocations")
        self.assertEqual(words(self.data, self.optional, 1, "H")[0], 0x10B)
        self.assertEqual(words(self.data, self.optional + 16)[0], 0x8477)  # entry point
        self.assertEqual(words(self.data, self.optional + 28)[0], 0x400000)  # image base
        self.assertEqual(words(self.data, self.optional + 56)[0], 0x16000)  # size of image
        self.assertEqual(words(self.data, self.optional + 60)[0], 0x1000)  # size of headers
        self.assertEqual(words(self.data, self.optional + 48, 2, "H"), (4, 0))  # subsystem version
        self.assertEqual(words(self.data, self.optional + 68, 1, "H")[0], 2)  # windows
        self.assertEqual(words(self.data, self.optional + 70, 1, "H")[0], 0)  # no dynamic base
        self.assertEqual(words(self.data, self.optional + 64)[0], 0)  # no checksum, since the icon is exchanged

    def test_TheSectionsLieWhereTheyShould(self):
        found = []
        for index in range(4):
            at = self.optional + 224 + 40 * index
            name = self.data[at : at + 8].rstrip(b"\0").decode("ascii")
            memory, address, size, offset = words(self.data, at + 8, 4)
            found.append((name, offset, size, address, memory))
        self.assertEqual(found, SECTIONS)

    def test_TheEntryPointHoldsCode(self):
        self.assertEqual(self.data[0x8477], 0xE9)  # a jump
        target = 0x8477 + 5 + struct.unpack_from("<i", self.data, 0x8478)[0]
        self.assertTrue(0x1000 <= target < 0xF000)
        self.assertNotEqual(self.data[target], 0xCC)

    def test_DirectoriesAreTheImportsAndResourcesAlone(self):
        directories = [words(self.data, self.optional + 96 + 8 * index, 2) for index in range(16)]
        used = [index for index, (address, size) in enumerate(directories) if address or size]
        self.assertEqual(used, [1, 2, 12])
        self.assertEqual(directories[2], (0x15000, 0x1000))
        for index in (1, 12):
            address, size = directories[index]
            self.assertTrue(0xF000 <= address and address + size <= 0x11000)

    def imports(self):
        at = self.offset(words(self.data, self.optional + 96 + 8)[0])
        result = {}
        while words(self.data, at + 12)[0]:
            library = self.name_at(self.offset(words(self.data, at + 12)[0]))
            thunk = self.offset(words(self.data, at + 16)[0])
            names = result.setdefault(library.upper(), set())
            while words(self.data, thunk)[0]:
                names.add(self.name_at(self.offset(words(self.data, thunk)[0]) + 2))
                thunk += 4
            at += 20
        return result

    def test_ImportsComeFromThreeLibrariesOnly(self):
        imports = self.imports()
        self.assertEqual(set(imports), {"KERNEL32.DLL", "USER32.DLL", "SHELL32.DLL"})
        self.assertEqual(imports["SHELL32.DLL"], {"ShellExecuteA"})
        self.assertEqual(imports["USER32.DLL"], {"PostQuitMessage"})

    def test_NothingInTheStubCanDeleteOrShowAnything(self):
        names = set().union(*self.imports().values())
        for name in names:
            for word in ("Delete", "Remove", "Move", "MessageBox", "CreateWindow", "Dialog", "Console", "Process"):
                self.assertFalse(word in name and name != "ExitProcess", name)

    def resources(self):
        """(type, name, language) -> (file offset, size), by walking the tree."""
        base = self.offset(words(self.data, self.optional + 96 + 16)[0])

        def entries(at):
            named, numbered = words(self.data, at + 12, 2, "H")
            for index in range(named + numbered):
                name, child = words(self.data, at + 16 + 8 * index, 2)
                if name & 0x80000000:
                    text = base + (name & 0x7FFFFFFF)
                    length = words(self.data, text, 1, "H")[0]
                    name = self.data[text + 2 : text + 2 + 2 * length].decode("utf-16-le")
                yield name, base + (child & 0x7FFFFFFF), bool(child & 0x80000000)

        found = {}
        for kind, names, is_folder in entries(base):
            self.assertTrue(is_folder)
            for name, languages, is_folder in entries(names):
                self.assertTrue(is_folder)
                for language, leaf, is_folder in entries(languages):
                    self.assertFalse(is_folder)
                    address, size = words(self.data, leaf, 2)
                    found[kind, name, language] = (self.offset(address), size)
        return found

    def test_TheResourcesLieWhereTheyShouldInOneLanguage(self):
        self.assertEqual(self.resources(), {(kind, name, 1033): place for (kind, name), place in RESOURCES.items()})

    def test_TheIconDirectoryIsFixed(self):
        at, size = RESOURCES[14, "IDI_ICON1"]
        self.assertEqual(struct.unpack("<HHHBBBBHHIH", self.data[at : at + size]),
                         (0, 1, 1, 32, 32, 16, 0, 1, 4, 744, 1))
        self.assertEqual(self.data[at + size :], bytes(0x13000 - at - size))

    def version_nodes(self, at, end):
        while at < end:
            length, value_length, is_text = words(self.data, at, 3, "H")
            self.assertGreater(length, 0)
            key_end = at + 6
            while self.data[key_end : key_end + 2] != b"\0\0":
                key_end += 2
            key = self.data[at + 6 : key_end].decode("utf-16-le")
            value_at = (key_end + 2 + 3) & ~3
            yield key, value_at, value_length * (2 if is_text else 1), at + length
            at = (at + length + 3) & ~3

    def test_TheVersionBlockTellsWhatItShould(self):
        start, size = RESOURCES[16, 1]
        (key, fixed, fixed_length, end), = self.version_nodes(start, start + size)
        self.assertEqual((key, fixed_length, end), ("VS_VERSION_INFO", 52, start + size))
        self.assertEqual(words(self.data, fixed, 6), (0xFEEF04BD, 0x10000, 0x10000, 1, 0x10000, 1))
        strings = {}
        translation = None
        for key, value, _, node_end in self.version_nodes(fixed + fixed_length, end):
            for inner, inner_value, inner_length, inner_end in self.version_nodes(value, node_end):
                if key == "VarFileInfo":
                    translation = words(self.data, inner_value, 2, "H")
                    continue
                self.assertEqual(inner, "040904b0")
                for name, text_at, text_length, _ in self.version_nodes(inner_value, inner_end):
                    strings[name] = self.data[text_at : text_at + text_length].decode("utf-16-le").rstrip("\0")
        self.assertEqual(translation, (1033, 1200))
        wanted = {
            "InternalName": "SFXStub",
            "OriginalFilename": "SFXStub.exe",
            "FileVersion": "1, 0, 0, 1",
            "ProductVersion": "1, 0, 0, 1",
            "Comments": "Thanks to INFO-Zip for included zip code.",
            "CompanyName": "Corvane",
            "ProductName": "Corvane",
        }
        self.assertEqual({name: strings.get(name) for name in wanted}, wanted)

    def test_ThereIsNoThirdStubPieceAndTheIconIsTheThirdBlock(self):
        self.assertEqual(sorted(os.listdir(os.path.join(BUILD, "resources", "stub"))),
                         ["STUB1", "STUB2", "STUB4", "STUB5"])
        joined = b""
        for name, offset, length in BLOCKS:
            block = read("resources", "icons", "WP.img") if name == "WP" else read("resources", "stub", name)
            self.assertEqual((name, len(joined), len(block)), (name, offset, length))
            joined += block
        self.assertTrue(joined == self.data)
        self.assertEqual(BLOCKS[2][1:], RESOURCES[3, 1])

    def test_AnotherIconChangesNothingButItsOwnBytes(self):
        rocket = read("resources", "icons", "ROCKET.img")
        changed = self.data[:ICON_AT] + rocket + self.data[ICON_AT + ICON_SIZE :]
        self.assertEqual(len(changed), len(self.data))
        pieces = b"".join(rocket if name == "WP" else read("resources", "stub", name) for name, _, _ in BLOCKS)
        self.assertTrue(pieces == changed)
        self.assertNotEqual(changed, self.data)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", required=True)
    options, rest = parser.parse_known_args()
    BUILD = options.build
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)
