"""Makes the stub's resource section: version, icon image and icon directory at their fixed places.

Usage: MakeResources.py ICON_IMAGE OUTPUT
"""

import struct
import sys

import Layout

RT_ICON, RT_GROUP_ICON, RT_VERSION = 3, 14, 16
SECTION_FILE, SECTION_SIZE, SECTION_ADDRESS = next(
    (offset, size, address) for name, offset, size, address, _, _ in Layout.SECTIONS if name == ".rsrc")

STRINGS = [
    ("Comments", "Thanks to INFO-Zip for included zip code."),
    ("CompanyName", "Corvane"),
    ("FileDescription", "Corvane web-pack"),
    ("FileVersion", "1, 0, 0, 1"),
    ("InternalName", "SFXStub"),
    ("LegalCopyright", "These pages are their author's."),
    ("LegalTrademarks", ""),
    ("OriginalFilename", "SFXStub.exe"),
    ("PrivateBuild", ""),
    ("ProductName", "Corvane"),
    ("ProductVersion", "1, 0, 0, 1"),
    ("SpecialBuild", ""),
]


def padded(data):
    return data + bytes(-len(data) % 4)


def version_node(key, value, children=b"", text=False):
    """One node of the version tree: length, length of value, kind, key, value, children, on 4-byte edges."""
    value_length = len(value) // 2 if text else len(value)
    head = padded(bytes(6) + key.encode("utf-16-le") + b"\0\0")
    body = head + (padded(value) if children else value) + children
    return struct.pack("<HHH", len(body), value_length, int(text)) + body[6:]


def version_block():
    strings = b""
    for key, text in STRINGS:
        strings = padded(strings) + version_node(key, (text + "\0").encode("utf-16-le"), text=True)
    table = version_node(f"{Layout.LANGUAGE:04X}04B0".lower(), b"", strings, text=True)
    string_info = version_node("StringFileInfo", b"", table, text=True)
    translation = version_node("Translation", struct.pack("<HH", Layout.LANGUAGE, 1200))
    var_info = version_node("VarFileInfo", b"", translation, text=True)
    version = (1 << 16, 1)
    fixed = struct.pack("<13I", 0xFEEF04BD, 0x10000, *version, *version, 0x3F, 0, 0x40004, 1, 0, 0, 0)
    return version_node("VS_VERSION_INFO", fixed, padded(string_info) + var_info)


def icon_directory():
    """Its one entry names the icon image by its identifier, 1, so the image can be exchanged in place."""
    return struct.pack("<HHH", 0, 1, 1) + struct.pack("<BBBBHHIH", 32, 32, 16, 0, 1, 4, Layout.ICON_SIZE, 1)


def directory_tree(resources):
    """The three levels of the resource tree: type, name, language. A name is a number or a text."""
    types = len(resources)
    names_at = 16 + 8 * types
    languages_at = names_at + 24 * types
    leaves_at = languages_at + 24 * types
    texts_at = leaves_at + 16 * types
    root = struct.pack("<IIHHHH", 0, 0, 0, 0, 0, types)
    names = languages = leaves = texts = b""
    for index, (kind, name, offset, size) in enumerate(resources):
        root += struct.pack("<II", kind, 0x80000000 | names_at + 24 * index)
        named = isinstance(name, str)
        names += struct.pack("<IIHHHH", 0, 0, 0, 0, int(named), int(not named))
        if named:
            number = 0x80000000 | texts_at + len(texts)
            texts += struct.pack("<H", len(name)) + name.encode("utf-16-le")
        else:
            number = name
        names += struct.pack("<II", number, 0x80000000 | languages_at + 24 * index)
        languages += struct.pack("<IIHHHH", 0, 0, 0, 0, 0, 1)
        languages += struct.pack("<II", Layout.LANGUAGE, leaves_at + 16 * index)
        leaves += struct.pack("<IIII", SECTION_ADDRESS + offset - SECTION_FILE, size, 0, 0)
    return root + names + languages + leaves + texts


def main(icon_path, output_path):
    with open(icon_path, "rb") as file:
        icon = file.read()
    version, group = version_block(), icon_directory()
    pieces = [
        (RT_ICON, 1, Layout.ICON_OFFSET, Layout.ICON_SIZE, icon),
        (RT_GROUP_ICON, Layout.GROUP_NAME, Layout.GROUP_OFFSET, Layout.GROUP_SIZE, group),
        (RT_VERSION, 1, Layout.VERSION_OFFSET, Layout.VERSION_SIZE, version),
    ]
    section = bytearray(SECTION_SIZE)
    tree = directory_tree([piece[:4] for piece in pieces])
    if len(tree) > Layout.VERSION_OFFSET - SECTION_FILE:
        sys.exit(f"the resource tree takes {len(tree)} bytes")
    section[: len(tree)] = tree
    for kind, _, offset, size, data in pieces:
        if len(data) != size:
            sys.exit(f"resource of type {kind}: {len(data)} bytes, not {size}")
        section[offset - SECTION_FILE : offset - SECTION_FILE + size] = data
    with open(output_path, "wb") as file:
        file.write(section)


if __name__ == "__main__":
    main(*sys.argv[1:])
