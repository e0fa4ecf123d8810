"""Turns the linker's output into the stub: fills in the resources, sets what the linker can't, checks every offset of
the layout, and cuts the image into the blocks that web-packs are made of.

Usage: PostLink.py LINKED RESOURCES STUB BLOCK_FOLDER
Any difference from the layout ends the build.
"""

import os
import struct
import sys

import Layout


def check(what, found, wanted):
    if found != wanted:
        sys.exit(f"stub: {what} is {found:#x}, not {wanted:#x}" if isinstance(found, int) and isinstance(wanted, int)
                 else f"stub: {what} is {found!r}, not {wanted!r}")


class Image:
    """A PE32 file in memory. Positions are counted from the file's start."""

    def __init__(self, data):
        self.data = bytearray(data)
        self.coff = self.get("<I", 0x3C) + 4
        check("the PE mark", bytes(self.data[self.coff - 4 : self.coff]), b"PE\0\0")
        self.optional = self.coff + 20
        self.directories = self.optional + 96
        self.sections = self.optional + self.get("<H", self.coff + 16)

    def get(self, form, at):
        return struct.unpack_from(form, self.data, at)[0]

    def put(self, form, at, *values):
        struct.pack_into(form, self.data, at, *values)

    def text(self, at):
        return self.data[at : self.data.index(0, at)].decode("ascii")


def set_headers(image):
    image.put("<I", image.coff + 4, 0)  # time stamp
    image.put("<II", image.coff + 8, 0, 0)  # symbol table
    image.put("<H", image.coff + 18, 0x010F)  # executable, 32 bits, no relocations, lines or symbols
    image.put("<BB", image.optional + 2, 1, 0)  # version of the linker: the same bytes from any
    sizes = {name: memory for name, _, _, _, memory, _ in Layout.SECTIONS}
    image.put("<III", image.optional + 4, sizes[".text"], sum(sizes.values()) - sizes[".text"], 0)
    image.put("<I", image.optional + 24, Layout.SECTIONS[1][3])  # start of data
    image.put("<HHHHHH", image.optional + 40, 4, 0, 0, 0, 4, 0)  # system, image and subsystem versions
    image.put("<I", image.optional + 56, Layout.IMAGE_SIZE)
    image.put("<I", image.optional + 64, 0)  # checksum: it would be wrong as soon as the icon is exchanged
    image.put("<H", image.optional + 70, 0)  # no dynamic base and the like
    image.put("<128x", image.directories)
    for index, (_, _, _, _, memory, flags) in enumerate(Layout.SECTIONS):
        image.put("<I", image.sections + 40 * index + 8, memory)
        image.put("<I", image.sections + 40 * index + 36, flags)


def set_imports(image):
    """The import directory opens .rdata; where its tables end is found by reading it. File offsets and relative
    addresses are the same up to .data."""
    start = at = Layout.SECTIONS[1][1]
    tables = []
    libraries = set()
    while image.get("<I", at + 12) != 0:
        image.put("<I", at + 4, 0)  # time stamp
        libraries.add(image.text(image.get("<I", at + 12)))
        thunk = first = image.get("<I", at + 16)
        while image.get("<I", thunk) != 0:
            thunk += 4
        tables += [first, thunk + 4]
        at += 20
    check("the set of libraries", libraries, Layout.LIBRARIES)
    image.put("<II", image.directories + 8 * 1, start, at + 20 - start)
    image.put("<II", image.directories + 8 * 12, min(tables), max(tables) - min(tables))


def set_resources(image, resources):
    """The linker knows their section as .room, and leaves alone what is in it."""
    name, offset, size, address, _, _ = Layout.SECTIONS[3]
    check("the length of the resources", len(resources), size)
    at = image.sections + 40 * 3
    check("the name of the room for the resources", bytes(image.data[at : at + 8]), b".room\0\0\0")
    image.put("8s", at, name.encode("ascii"))
    image.data[offset : offset + size] = resources
    image.put("<II", image.directories + 8 * 2, address, size)


def check_layout(image):
    check("the length", len(image.data), Layout.TOTAL)
    check("the machine", image.get("<H", image.coff), 0x14C)
    check("the number of sections", image.get("<H", image.coff + 2), len(Layout.SECTIONS))
    check("the kind of image", image.get("<H", image.optional), 0x10B)
    check("the entry point", image.get("<I", image.optional + 16), Layout.ENTRY)
    check("the image base", image.get("<I", image.optional + 28), Layout.IMAGE_BASE)
    check("the section alignment", image.get("<I", image.optional + 32), Layout.ALIGNMENT)
    check("the file alignment", image.get("<I", image.optional + 36), Layout.ALIGNMENT)
    check("the size of the headers", image.get("<I", image.optional + 60), Layout.ALIGNMENT)
    check("the subsystem", image.get("<H", image.optional + 68), 2)
    for index, (name, offset, size, address, memory, _) in enumerate(Layout.SECTIONS):
        at = image.sections + 40 * index
        check("a section's name", image.data[at : at + 8].rstrip(b"\0").decode("ascii"), name)
        for what, position, wanted in (("memory size", 8, memory), ("address", 12, address), ("file size", 16, size),
                                       ("file offset", 20, offset)):
            check(f"{what} of {name}", image.get("<I", at + position), wanted)


def main(linked, resources, stub, block_folder):
    with open(linked, "rb") as file:
        image = Image(file.read())
    set_headers(image)
    set_imports(image)
    with open(resources, "rb") as file:
        set_resources(image, file.read())
    check_layout(image)
    at = 0
    os.makedirs(block_folder, exist_ok=True)
    for name, offset, length in Layout.PIECES:
        check("the start of a block", at, offset)
        at += length
        if name:
            with open(os.path.join(block_folder, name), "wb") as file:
                file.write(image.data[offset:at])
    check("the end of the last block", at, Layout.TOTAL)
    with open(stub, "wb") as file:
        file.write(image.data)


if __name__ == "__main__":
    main(*sys.argv[1:])
