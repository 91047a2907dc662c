"""A bare Debian in a folder of its own, made of packages from where this machine has its own: for scripts/on-debian,
scripts/cross and the test that installs packages. What is mounted in it is gone with the program that runs there, however that ends.
"""
import fcntl
import os
import platform
import shutil
import subprocess
import urllib.error
import urllib.request
from pathlib import Path

OWN_RELEASE = platform.freedesktop_os_release().get("VERSION_CODENAME", "")
PASSED_ON = ("http_proxy", "https_proxy", "no_proxy", "TERM")
# Mounts and processes of its own, which end with this program.
APART = ("setpriv", "--pdeathsig=KILL", "unshare", "--mount", "--pid", "--fork", "--kill-child")

# Run as the first process of its own; $1 is the root, the rest is what is run there.
MOUNT = """
set -e
root=$1; shift
mount -t proc proc "$root/proc"
mount -t sysfs -o ro sys "$root/sys"
mount -t devpts -o newinstance,ptmxmode=0666,mode=620,gid=5 pts "$root/dev/pts"
for folder in dev/shm run tmp; do mount -t tmpfs -o mode=1777 none "$root/$folder"; done
set +e
"$@"
exit $?
"""

# Run in there; $1 is the root, $2 the processor. The kernel lets a name space of users have its own list of emulators,
# which nobody else sees; all users are the same in it.
EMULATE = """
set -e
export root=$1 processor=$2; shift 2
mkfifo -m 600 "$root/run/begun" "$root/run/mapped"
(
  read -r pid <"$root/run/begun"
  for map in uid_map gid_map; do echo 0 0 4294967295 >"$root/proc/$pid/$map" || break; done
  echo >"$root/run/mapped"
) &
exec unshare --user --mount sh -c '
  set -e
  echo $$ >"$root/run/begun"
  read -r _ <"$root/run/mapped"
  rm "$root/run/begun" "$root/run/mapped"
  mount -t binfmt_misc binfmt_misc "$root/proc/sys/fs/binfmt_misc"
  cat "$root/usr/lib/binfmt.d/qemu-$processor.conf" >"$root/proc/sys/fs/binfmt_misc/register"
  unset root processor
  exec "$@"
' emulate "$@"
"""


def package_sources(release=OWN_RELEASE):
    """Where this machine has Debian from, as lines for the sources.list of a release."""
    lines = subprocess.run(["apt-get", "indextargets", "--format", "deb $(SITE) $(RELEASE) $(COMPONENT)",
                            "Created-By: Packages", "Origin: Debian"], text=True, capture_output=True, check=True)
    return sorted({line.replace(f" {OWN_RELEASE}", f" {release}") for line in lines.stdout.splitlines()})


def mirror_of(release=OWN_RELEASE):
    """The mirror of a release; nothing if this machine has none."""
    found = (line.split()[1:3] for line in package_sources(release))
    return next((mirror for mirror, name in found if name == release), None)


def why_not(release=OWN_RELEASE):
    """Why there can be no Debian here; nothing if there can."""
    if os.geteuid() != 0:
        return "only root can make a root folder"
    for tool in ("debootstrap", "unshare", "setpriv", "chroot", "apt-get"):
        if not shutil.which(tool):
            return f"there is no {tool}"
    if subprocess.run([*APART, "true"], capture_output=True, check=False).returncode:
        return "mounts of its own are not permitted"
    if not (mirror := mirror_of(release)):
        return "apt knows no mirror of the Debian that this machine has"
    try:
        urllib.request.urlopen(f"{mirror}/dists/{release}/Release", timeout=30).close()
    except (urllib.error.URLError, OSError) as error:
        return f"{mirror} cannot be reached: {error}"
    return None


def remove(folder):
    """Removes a folder with all that is in it, but nothing that is mounted there."""
    mounted = [line.split()[4] for line in Path("/proc/self/mountinfo").read_text().splitlines()]
    if inside := [path for path in mounted if Path(path).is_relative_to(Path(folder).resolve())]:
        raise RuntimeError(f"{folder} stays: {', '.join(inside)} is mounted in it")
    shutil.rmtree(folder, ignore_errors=True)


def make_private(folder):
    """Makes a folder that only root can enter: a Debian has programs that run as root for any user who starts them."""
    folder.mkdir(mode=0o700, parents=True, exist_ok=True)
    folder.chmod(0o700)


def make(folder, release=OWN_RELEASE, packages=()):
    """Makes a bare Debian with these packages, whole or not at all."""
    fresh = folder.with_name(folder.name + ".new")
    remove(fresh)
    make_private(folder.parent)
    done = subprocess.run([*APART, "debootstrap", "--variant=minbase",
                           f"--include={','.join(['ca-certificates', *packages])}", release, fresh, mirror_of(release)],
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if done.returncode != 0:
        raise RuntimeError(f"debootstrap failed:\n{done.stdout[-4000:]}")
    remove(folder)
    fresh.rename(folder)


def connect(root, release=OWN_RELEASE, updates=True):
    """Lets the programs of a Debian find this machine's mirror and names."""
    sources = [line for line in package_sources(release) if updates or line.split()[2] == release]
    (root / "etc/apt/sources.list").write_text("\n".join(sources) + "\n")
    shutil.copy("/etc/resolv.conf", root / "etc/resolv.conf")


def hold(root, release, packages, updates=True):
    """Makes a Debian of a release with these packages unless it is there, and holds it for as long as this program runs."""
    if not root.exists():
        make(root, release, packages)
    lock = os.open(root, os.O_RDONLY)
    try:
        fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        raise RuntimeError(f"another one is at work in {root}") from None
    connect(root, release, updates)


def git(folder, *words):
    return subprocess.run(["git", "-C", folder, *words], text=True, stdout=subprocess.PIPE, check=True).stdout.strip()


def bring(source, clone):
    """Makes a clone, or brings the one that is there to what is committed; what was built stays. Says what that is."""
    git(source, "init", "--quiet", clone)
    git(clone, "fetch", "--quiet", source, "HEAD")
    git(clone, "reset", "--quiet", "--hard", "FETCH_HEAD")
    git(clone, "clean", "--quiet", "-ffdx", "--exclude=/build")
    left_out = ", without what is not committed" if git(source, "status", "--porcelain") else ""
    return git(source, "log", "-1", "--format=%h %s") + left_out


def command(root, *words, user=0, processor=None):
    """The command that runs a program there, and lets that one start programs for a foreign processor, which then needs
    the package qemu-user-binfmt."""
    emulate = ["sh", "-c", EMULATE, "emulate", root, processor] if processor else []
    return [*APART, "sh", "-c", MOUNT, "mount", root, *emulate, "chroot", f"--userspec={user}:{user}", root, *words]


def environment(**more):
    """The environment of a program there: of this machine's, only the way out."""
    passed_on = {name: os.environ[name] for name in PASSED_ON if name in os.environ}
    return {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8", "DEBIAN_FRONTEND": "noninteractive",
            "HOME": "/root", **passed_on, **more}
