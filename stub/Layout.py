"""Where everything lies in the stub: the builder of web-packs and the recipient's Windows both rely on it."""

TOTAL = 0x13000
IMAGE_BASE = 0x400000
ENTRY = 0x8477
IMAGE_SIZE = 0x16000
ALIGNMENT = 0x1000

# name, file offset, file size, relative address, memory size, characteristics
SECTIONS = [
    (".text", 0x1000, 0xE000, 0x1000, 0xE000, 0x60000020),
    (".rdata", 0xF000, 0x2000, 0xF000, 0x2000, 0x40000040),
    (".data", 0x11000, 0x1000, 0x11000, 0x4000, 0xC0000040),
    (".rsrc", 0x12000, 0x1000, 0x15000, 0x1000, 0x40000040),
]

LANGUAGE = 1033
VERSION_OFFSET, VERSION_SIZE = 0x12100, 944
ICON_OFFSET, ICON_SIZE = 0x124B0, 744
GROUP_OFFSET, GROUP_SIZE = 0x12798, 20
GROUP_NAME = "IDI_ICON1"

# The icon image is the third block, so the names of the others skip 3. name, file offset, length
PIECES = [
    ("STUB1", 0x00000, 37440),
    ("STUB2", 0x09240, 37488),
    (None, ICON_OFFSET, ICON_SIZE),
    ("STUB4", 0x12798, 16),
    ("STUB5", 0x127A8, 2136),
]

LIBRARIES = {"KERNEL32.dll", "USER32.dll", "SHELL32.dll"}
