"""A home in which every access to its files and folders is seen, as the kernel tells it (Linux only)."""

import ctypes
import os
import shutil
import struct
import tempfile

# Of inotify(7): read, modified, attributes, opened, moved, created, deleted.
SEEN = 0x001 | 0x002 | 0x004 | 0x020 | 0x040 | 0x080 | 0x100 | 0x200
HEAD = struct.Struct("iIII")

# What programs like to read and to write in a home.
FILES = (".bashrc", ".config/QtProject.conf", ".config/corvane/settings.ini", ".config/user-dirs.dirs",
         ".config/fontconfig/fonts.conf", ".config/ImageMagick/policy.xml", ".cache/corvane/kept",
         ".local/share/corvane/cvn2.hlp", ".local/share/corvane/card/wgcard.html", ".local/state/kept", "Desktop/kept")


class WatchedHome:
    """To be used with `with`; `environment` leads programs into it."""

    def __enter__(self):
        self.home = tempfile.mkdtemp(prefix="watched-")
        for name in FILES:
            path = os.path.join(self.home, name)
            os.makedirs(os.path.dirname(path), exist_ok=True)
            with open(path, "w", encoding="ascii") as file:
                file.write("\n")
        os.makedirs(os.path.join(self.home, "runtime"), 0o700)
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("XDG_", "CORVANE_"))}
        self.environment.update({"HOME": self.home, "XDG_RUNTIME_DIR": os.path.join(self.home, "runtime"),
                                 "XDG_CONFIG_HOME": os.path.join(self.home, ".config"),
                                 "XDG_CACHE_HOME": os.path.join(self.home, ".cache"),
                                 "XDG_STATE_HOME": os.path.join(self.home, ".local", "state"),
                                 "XDG_DATA_HOME": os.path.join(self.home, ".local", "share")})
        library = ctypes.CDLL(None, use_errno=True)
        self.queue = library.inotify_init1(os.O_NONBLOCK)
        if self.queue < 0:
            raise OSError(ctypes.get_errno(), "inotify_init1")
        self.folders = {}
        # Listed before the first is watched, as listing is an access itself.
        for folder in [folder for folder, _, _ in os.walk(self.home)]:
            watch = library.inotify_add_watch(self.queue, os.fsencode(folder), SEEN)
            if watch < 0:
                raise OSError(ctypes.get_errno(), "inotify_add_watch")
            self.folders[watch] = folder
        return self

    def __exit__(self, *_):
        os.close(self.queue)
        shutil.rmtree(self.home, ignore_errors=True)

    def touched(self):
        """What has been read or written since the last question: paths below the home."""
        found = set()
        while True:
            try:
                data = os.read(self.queue, 65536)
            except BlockingIOError:
                return sorted(found)
            at = 0
            while at < len(data):
                watch, _, _, size = HEAD.unpack_from(data, at)
                name = data[at + HEAD.size:at + HEAD.size + size].rstrip(b"\0").decode()
                found.add(os.path.relpath(os.path.join(self.folders.get(watch, self.home), name), self.home))
                at += HEAD.size + size
