"""The runtime in which a command runs Windows programs: a Wine prefix, a Wine server and, where
DISPLAY isn't set, a virtual display, which belong to this run alone and end with it.

    runtime.py run [--drive LETTER=FOLDER] COMMAND [ARGS]
    runtime.py wine PROGRAM [ARGS]   a program of Wine, called from inside a runtime
    runtime.py template FOLDER       makes the prefix that those of all runs are copied from

Its settings come from common.sh. With the project's own Wine root a run is a process and mount
namespace, and all of it vanishes whichever way the run ends. With a Wine of the user's own, which
needs no root rights, each process is ended by itself.
"""

import fcntl
import glob
import os
import shutil
import signal
import subprocess
import sys
import tempfile

ROOT = os.environ["KRHAUL_ROOT"]
TEMPLATE = os.environ["KRHAUL_TEMPLATE"]
RUNS = os.path.join(os.environ["KRHAUL_TREE"], "build", "wine")
OWN_WINE = os.environ.get("KRHAUL_WINE")
SCREEN = "1280x960x24"
THIS = [sys.executable, "-I", "-S", os.path.realpath(__file__)]

# These hold nearly all of the template and only Wine's own set-up writes to them: a prefix has
# links in their place.
SHARED_FOLDERS = ("drive_c/windows/system32", "drive_c/windows/winsxs")
# A Wine root has its own; only what is named below them is shown in it.
SYSTEM_FOLDERS = "bin boot dev etc lib lib32 lib64 proc root run sbin sys usr var".split()
KEPT_VARIABLES = ("KRHAUL_", "GTEST_", "GCOV_", "LC_ALL", "LOCPATH", "WINE", "DISPLAY", "XAUTHORITY")
# Windows without a window manager, and a crash that ends a test instead of asking.
SETTINGS = r"""REGEDIT4

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000
"""


class Failure(Exception):
    """A message for the user."""


# Processes

started = []


def start(command, **options):
    """Starts a process that can't outlive this one, whichever way this one ends."""
    process = subprocess.Popen(["setpriv", "--pdeathsig", "KILL", *command], **options)
    started.append(process)
    return process


def end_all():
    for process in reversed(started):
        process.kill()
        process.wait()


def exit_on_signals():
    """Has a signal end this program as an exception does, so that it tidies up."""
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, lambda number, _: sys.exit(128 + number))


# Wine programs

def own_wine_program(name):
    wine = shutil.which(OWN_WINE) or OWN_WINE
    return wine if name == "wine" else os.path.join(os.path.dirname(wine), name)


def exec_wine(name, *arguments):
    """Replaces this process by a program of Wine: wine, wineserver, wineboot."""
    os.environ.setdefault("WINEDEBUG", "-all")
    os.environ["WINEARCH"] = "win32"
    if OWN_WINE:
        os.execv(own_wine_program(name), [name, *arguments])
    kept = {key: value for key, value in os.environ.items() if key.startswith(KEPT_VARIABLES)}
    folder = os.getcwd()
    os.chroot(ROOT)
    os.chdir(folder if os.path.isdir(folder) else "/")
    os.execve("/usr/bin/" + name, [name, *arguments],
              {**kept, "HOME": "/root", "USER": "root", "LANG": "C.UTF-8", "PATH": "/usr/bin:/bin"})


def start_wine(*words, **options):
    return start([*THIS, "wine", *words], **options)


def hold_wine():
    """Starts Wine, looks whether it can draw, and keeps it: a program that is the first in its
    prefix waits for the processes of Wine itself, and they would hold on to its output."""
    probe = start_wine("wine", os.environ["KRHAUL_PROBE"], "hold", stdin=subprocess.DEVNULL,
                       stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    answer = probe.stdout.readline().decode(errors="replace").strip()
    if answer != "drawing works":
        raise Failure("this Wine can't draw as Windows does: " + (answer or "it did not start"))


# The display

def start_display():
    reader, writer = os.pipe()
    command = ["Xvfb", "-displayfd", str(writer), "-screen", "0", SCREEN, "-nolisten", "tcp"]
    if not OWN_WINE:
        # Lock files name processes, which have other numbers in other runs. The folder of the
        # sockets is this run's own, and the system refuses a number that another run has.
        command = ["chroot", ROOT, *command, "-nolock"]
    elif not shutil.which("Xvfb"):
        raise Failure("a virtual display is needed: install the package xvfb")
    with tempfile.TemporaryFile() as errors, os.fdopen(reader) as answer:
        start(command, pass_fds=[writer], stdout=subprocess.DEVNULL, stderr=errors)
        os.close(writer)
        number = answer.readline().strip()
        if not number:
            errors.seek(0)
            problem = " ".join(errors.read().decode(errors="replace").split())
            raise Failure("the virtual display did not start: " + problem[-200:])
    os.environ["DISPLAY"] = ":" + number


# The namespace of a run

def mount(*arguments):
    subprocess.run(["mount", *arguments], check=True)


def folders_to_show(words):
    """The folders of this machine that the tree, the cache and the named files lie in."""
    paths = [os.environ["KRHAUL_TREE"], os.environ["KRHAUL_CACHE"], os.getcwd(), "/tmp",
             *map(os.path.dirname, (os.environ.get("XAUTHORITY", ""), *words))]
    folders = set()
    for path in paths:
        top = path.split("/")[1] if path.startswith("/") else ""
        if top and os.path.isdir(path):
            folders.add(path if top in SYSTEM_FOLDERS else "/" + top)
    # A folder comes before those in it, which it shows already.
    return [path for path in sorted(folders)
            if not any(path.startswith(other + "/") for other in folders)]


def fill_namespace(words):
    """Shows in the Wine root what its programs need to see of this machine."""
    if not os.environ.get("DISPLAY"):
        sockets = "/tmp/.X11-unix"
        if not os.path.isdir(sockets):
            os.mkdir(sockets)
            os.chmod(sockets, 0o1777)
        mount("-t", "tmpfs", "tmpfs", sockets)
    for path in ("/proc", "/dev", *folders_to_show(words)):
        os.makedirs(ROOT + path, exist_ok=True)
        mount("--rbind", path, ROOT + path)
    # All prefixes use the system files of one template, so no program may change them.
    if os.path.isdir(TEMPLATE):
        mount("--bind", TEMPLATE, ROOT + TEMPLATE)
        mount("-o", "remount,bind,ro", ROOT + TEMPLATE)


def enclose(*words):
    """Runs this program again, as the first process of a namespace whose end ends all in it."""
    if OWN_WINE:
        return inside(*words)
    if not os.path.isdir(ROOT + "/usr"):
        raise Failure(f"there is no Wine root in {ROOT} (scripts/setup makes it)")
    return start(["unshare", "--mount", "--propagation", "private", "--pid", "--fork",
                  "--kill-child", "--mount-proc", *THIS, "inside", *words]).wait()


def inside(action, *words):
    if not OWN_WINE:
        fill_namespace(words)
    if not os.environ.get("DISPLAY"):
        start_display()
    if action == "template":
        return fill_template(*words)
    hold_wine()
    status = start(words).wait()
    return status if status >= 0 else 128 - status


# Prefixes

def remove_stale_runs():
    """Removes what killed runs have left. The lock of a run that lives is held."""
    for folder in glob.glob(os.path.join(RUNS, "run-*")):
        try:
            with open(os.path.join(folder, "lock")) as lock:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
                shutil.rmtree(folder)
        except OSError:
            pass


def copy_template(prefix):
    def shared(folder, names):
        inner = os.path.relpath(folder, TEMPLATE)
        return [name for name in names if os.path.join(inner, name) in SHARED_FOLDERS]

    shutil.copytree(TEMPLATE, prefix, symlinks=True, ignore=shared)
    for folder in SHARED_FOLDERS:
        os.symlink(os.path.join(TEMPLATE, folder), os.path.join(prefix, folder))


def run(*words):
    """Runs a command in a runtime of its own, and returns its exit code."""
    os.makedirs(RUNS, exist_ok=True)
    remove_stale_runs()
    # Only a folder whose lock is held gets the name of a run.
    new = tempfile.mkdtemp(prefix="new-", dir=RUNS)
    folder = new.replace("new-", "run-")
    with open(os.path.join(new, "lock"), "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        os.rename(new, folder)
        try:
            prefix = os.environ["WINEPREFIX"] = os.path.join(folder, "prefix")
            os.environ["KRHAUL_RUNNING"] = folder
            copy_template(prefix)
            if words[0] == "--drive":
                letter, target = words[1].split("=", 1)
                os.symlink(target, os.path.join(prefix, "dosdevices", letter + ":"))
                words = words[2:]
            return enclose("run", *words)
        finally:
            end_run()
            shutil.rmtree(folder, ignore_errors=True)


def end_run():
    if OWN_WINE and os.path.isdir(os.environ["WINEPREFIX"]):
        start_wine("wineserver", "-k", "-w").wait()
    end_all()


def copy_fonts(prefix):
    """The pictures and sizes of all windows rest on "MS Sans Serif" and "System", and Wine only
    finds bitmap fonts in its own font folder."""
    top = "" if OWN_WINE else ROOT
    tops = [top + "/usr", top + "/usr/local"]
    if OWN_WINE:
        tops.insert(0, os.path.realpath(own_wine_program("wine")).rsplit("/", 2)[0])
    for folder in [f"{top}/share/{name}" for top in tops for name in ("fonts/wine", "wine/fonts")]:
        if glob.glob(folder + "/*.fon"):
            for file in glob.glob(folder + "/*.*"):
                shutil.copy(file, prefix + "/drive_c/windows/Fonts")
            return
    raise Failure("the fonts of Wine were not found (install the package fonts-wine)")


def fill_template(prefix):
    def call(*words):
        if start_wine(*words).wait() != 0:
            raise Failure(words[0] + " failed")

    call("wineboot", "-i")
    copy_fonts(prefix)
    settings = prefix + "/settings.reg"
    with open(settings, "w") as file:
        file.write(SETTINGS)
    call("wine", "regedit", "Z:" + settings.replace("/", "\\"))
    os.remove(settings)
    # The fonts are found at Wine's next start.
    call("wineserver", "-k", "-w")
    hold_wine()
    call("wineserver", "-k", "-w")
    return 0


def template(prefix):
    os.environ.update(WINEPREFIX=prefix, WINEDLLOVERRIDES="mscoree,mshtml=")
    return enclose("template", prefix)


def main(action, *words):
    if action == "wine":
        exec_wine(*words)
    exit_on_signals()
    try:
        return {"run": run, "template": template, "inside": inside}[action](*words)
    except Failure as failure:
        print(f"{os.environ['KRHAUL_COMMAND']}: {failure}", file=sys.stderr)
        return 1
    finally:
        end_all()


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
