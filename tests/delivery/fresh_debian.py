"""A freshly installed, minimal Debian of the version that this machine has, in namespaces of its own, which goes
without a trace.

Its root is a layer over a base that is fetched once, into ~/.cache/corvane, and it is the root of its namespace, not a
change of root: in the latter no program may make user namespaces, and with them goes the browser engine's sandbox.
"""

import os
import platform
import shutil
import subprocess
import tempfile

CACHE = os.environ.get("CORVANE_CACHE") or os.path.join(
    os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache"), "corvane")
SUITES = ("bookworm", "trixie")
USER, UID = "anna", 1000

MOUNTS = """
set -e
root=$1 upper=$2 work=$3 base=$4 archives=$5
mount -t overlay overlay -o "lowerdir=$base,upperdir=$upper,workdir=$work" "$root"
mount -t proc proc "$root/proc"
mount --rbind /sys "$root/sys"
mount --rbind /dev "$root/dev"
mount -t tmpfs -o mode=1777 tmpfs "$root/tmp"
mount -t tmpfs -o mode=755 tmpfs "$root/run"
mount --bind "$archives" "$root/var/cache/apt/archives"
if [ -d /tmp/.X11-unix ]; then
  mkdir "$root/tmp/.X11-unix"
  mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
fi
cat /etc/resolv.conf >"$root/etc/resolv.conf"
cat /etc/hosts >"$root/etc/hosts"
apt-config dump Acquire | grep -i proxy >"$root/etc/apt/apt.conf.d/90proxy" || true
cd "$root"
mkdir old
pivot_root . old
umount -l old
rmdir old
echo ready
exec sleep infinity </dev/null >/dev/null 2>&1
"""


class Refused(Exception):
    """The machine doesn't allow it, or doesn't reach what has to be fetched."""


def why_not():
    """Why there can be no such system on this machine, None where it can."""
    if platform.system() != "Linux" or suite() not in SUITES:
        return "this machine is no Debian 12 or 13, whose package is to be tried"
    if os.geteuid() != 0:
        return "only root may install a system into a folder"
    for tool in ("debootstrap", "unshare", "nsenter", "apt-get"):
        if not shutil.which(tool):
            return "the command %s is missing" % tool
    with tempfile.TemporaryDirectory() as scratch:
        layers = [os.path.join(scratch, name) for name in ("lower", "upper", "work", "root")]
        for layer in layers:
            os.mkdir(layer)
        tried = subprocess.run(
            ["unshare", "--mount", "--pid", "--fork", "mount", "-t", "overlay", "overlay", "-o",
             "lowerdir=%s,upperdir=%s,workdir=%s" % tuple(layers[:3]), layers[3]], capture_output=True, check=False)
        if tried.returncode != 0:
            return "root may not mount here: " + tried.stderr.decode().strip()
    return None


def read_text(path):
    try:
        with open(path, encoding="utf-8", errors="replace") as file:
            return file.read()
    except OSError:
        return ""


def suite():
    """The name of this machine's Debian, "" for another system."""
    told = dict(line.partition("=")[::2] for line in read_text("/etc/os-release").splitlines())
    return told.get("VERSION_CODENAME", "").strip('"') if told.get("ID") == "debian" else ""


def mirror():
    """Where this machine's packages come from; [] for debootstrap's own choice."""
    targets = subprocess.run(["apt-get", "indextargets",
                              "--format", "$(REPO_URI) $(RELEASE) $(CODENAME) $(CREATED_BY)"],
                             capture_output=True, text=True, check=True).stdout
    rows = [line.split() for line in targets.splitlines()]
    return [row[0] for row in rows if suite() in row[1:-1] and row[-1] == "Packages"][:1]


def fetch_base():
    """Gives its folder. The rename at the end is what makes it whole."""
    base = os.path.join(CACHE, "debian-" + suite())
    if os.path.isdir(base):
        return base
    os.makedirs(CACHE, exist_ok=True)
    part = base + ".part"
    shutil.rmtree(part, ignore_errors=True)
    made = subprocess.run(["debootstrap", "--variant=minbase", suite(), part, *mirror()], text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
    if made.returncode != 0:
        raise Refused("debootstrap: " + made.stdout[-500:])
    os.rename(part, base)
    return base


class FreshDebian:
    """To be used with `with`. A display that runs already can be reached from within."""

    def __enter__(self):
        base = fetch_base()
        archives = base + "-archives"
        os.makedirs(os.path.join(archives, "partial"), exist_ok=True)
        self.scratch = tempfile.mkdtemp(prefix="debian-")
        layers = [os.path.join(self.scratch, name) for name in ("root", "upper", "work")]
        for layer in layers:
            os.mkdir(layer)
            os.chmod(layer, 0o755)
        self.holder = subprocess.Popen(
            ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--propagation", "private", "bash", "-c", MOUNTS,
             "mounts", *layers, base, archives], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        try:
            if self.holder.stdout.readline().strip() != "ready":
                raise Refused("its parts can't be mounted")
            self.pid = read_text("/proc/%d/task/%d/children" % (self.holder.pid, self.holder.pid)).strip()
            self.run("useradd", "--create-home", "--uid", str(UID), USER)
            self.run("install", "-d", "-m", "700", "-o", USER, "-g", USER, "/run/user/%d" % UID)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        # It passes over a polite request, and what it holds goes with it.
        self.holder.kill()
        self.holder.wait()
        shutil.rmtree(self.scratch, ignore_errors=True)

    def path(self, inside):
        """Where a path within is seen from outside; a link in it leads astray."""
        return "/proc/%s/root%s" % (self.pid, inside)

    def command(self, words, user, environment):
        home = "/home/" + USER if user else "/root"
        values = {"HOME": home, "LANG": "C.UTF-8",
                  "PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin",
                  "DEBIAN_FRONTEND": "noninteractive", **environment}
        if user:
            values["XDG_RUNTIME_DIR"] = "/run/user/%d" % UID
        become = ["setpriv", "--reuid", str(UID), "--regid", str(UID), "--init-groups"] if user else []
        # The root is named because that of a namespace of mounts made under a changed root is the machine's own. The
        # working folder is named so that none of the outer system is held open.
        return ["nsenter", "--target", self.pid, "--mount", "--pid", "--root", "--wd=" + self.path(home), *become,
                "env", "-i", *("%s=%s" % pair for pair in values.items()), *words]

    def run(self, *words, user=False, may_fail=False, seconds=600):
        done = subprocess.run(self.command(words, user, {}), stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, check=False, timeout=seconds)
        if done.returncode != 0 and not may_fail:
            raise Refused("%s: %s" % (" ".join(words), done.stdout[-1500:]))
        return done

    def start(self, words, environment, **options):
        """As the ordinary user; gives the process outside, of which what runs within descends."""
        return subprocess.Popen(self.command(words, True, environment), stdin=subprocess.DEVNULL, **options)

    def install(self, package):
        """A package file with all that it needs and nothing that it recommends."""
        shutil.copy(package, self.path("/var/tmp"))
        self.run("apt-get", "-q", "update")
        return self.run("apt-get", "-q", "install", "-y", "--no-install-recommends", "-o",
                        "APT::Keep-Downloaded-Packages=true", "/var/tmp/" + os.path.basename(package))
