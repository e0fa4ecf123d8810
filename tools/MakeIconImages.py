"""Turns text pixel maps of web-pack icons into icon images of 744 bytes, and writes the colour table of all icons.

Usage: MakeIconImages.py OUTPUT_FOLDER MAP...

A map has a legend, a line "character = index name" for each colour and "character = see-through", an empty line, and 32
rows of 32 characters. Lines that begin with "#" above the legend are comments. The image has the form that the icon
inside a stub has: header, colour table, colour rows and mask rows, both from the bottom up.
"""

import os
import struct
import sys

SIZE = 32

# Index, name, blue, green, red: the 16 colours of every icon of the program.
COLOURS = [
    ("black", 0x00, 0x00, 0x00),
    ("dark red", 0x00, 0x00, 0x80),
    ("dark green", 0x00, 0x80, 0x00),
    ("olive", 0x00, 0x80, 0x80),
    ("dark blue", 0x80, 0x00, 0x00),
    ("purple", 0x80, 0x00, 0x80),
    ("teal", 0x80, 0x80, 0x00),
    ("light grey", 0xC0, 0xC0, 0xC0),
    ("dark grey", 0x80, 0x80, 0x80),
    ("red", 0x00, 0x00, 0xFF),
    ("green", 0x00, 0xFF, 0x00),
    ("yellow", 0x00, 0xFF, 0xFF),
    ("blue", 0xFF, 0x00, 0x00),
    ("magenta", 0xFF, 0x00, 0xFF),
    ("cyan", 0xFF, 0xFF, 0x00),
    ("white", 0xFF, 0xFF, 0xFF),
]

# These two are stored with the greys the other way round. They look the same, since the pixels go with the table.
GREYS_EXCHANGED = {"MAIL", "ROCKET"}

SEE_THROUGH = -1


def read_map(path):
    """The rows of a map, top row first, as lists of colour indices."""
    with open(path, encoding="ascii") as file:
        lines = [line.rstrip("\n") for line in file if not line.startswith("#")]
    blank = lines.index("")
    legend = {}
    for line in lines[:blank]:
        character, meaning = line[0], line[1:].split("=", 1)[1].strip()
        if meaning == "see-through":
            legend[character] = SEE_THROUGH
            continue
        index, name = meaning.split(" ", 1)
        if COLOURS[int(index)][0] != name.strip():
            sys.exit(f"{path}: colour {index} is {COLOURS[int(index)][0]}, not {name}")
        legend[character] = int(index)
    rows = lines[blank + 1 :]
    if len(rows) != SIZE or any(len(row) != SIZE for row in rows):
        sys.exit(f"{path}: not {SIZE} rows of {SIZE} characters")
    try:
        return [[legend[character] for character in row] for row in rows]
    except KeyError as unknown:
        sys.exit(f"{path}: {unknown} is not in the legend")


def make_table(order):
    return b"".join(bytes(COLOURS[index][1:]) + b"\0" for index in order)


def make_image(rows, greys_exchanged):
    order = list(range(16))
    if greys_exchanged:
        order[7], order[8] = 8, 7
    header = struct.pack("<IiiHHIIiiII", 40, SIZE, 2 * SIZE, 1, 4, 0, 640, 0, 0, 0, 0)
    colours = mask = b""
    for row in reversed(rows):
        # A see-through pixel is black: the icon's colours are laid over the ground by exclusive or.
        stored = [0 if colour == SEE_THROUGH else order[colour] for colour in row]
        colours += bytes(left << 4 | right for left, right in zip(stored[::2], stored[1::2]))
        bits = "".join("1" if colour == SEE_THROUGH else "0" for colour in row)
        mask += int(bits, 2).to_bytes(SIZE // 8, "big")
    return header + make_table(order) + colours + mask


def main(folder, *maps):
    os.makedirs(folder, exist_ok=True)
    for path in maps:
        name = os.path.splitext(os.path.basename(path))[0]
        with open(os.path.join(folder, name + ".img"), "wb") as file:
            file.write(make_image(read_map(path), name in GREYS_EXCHANGED))
    with open(os.path.join(folder, "ICO4TABLE"), "wb") as file:
        file.write(make_table(range(16)))


if __name__ == "__main__":
    main(*sys.argv[1:])
