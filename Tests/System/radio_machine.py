"""A machine with simulated radios: a kernel under software emulation, with the program under test and
with what joins networks and tells of them."""

import os
import queue
import re
import shutil
import subprocess
import tempfile
import threading
from pathlib import Path

from program import install
from radio_kernel import LIST, RADIOS, kernel

INIT = Path(__file__).resolve().parent / "radio_init.sh"
# Whoever takes longer has hung.
BOOT_SECONDS = 600
SCRIPT_SECONDS = 240
MEMORY = "768M"
EMULATOR = "qemu-system-x86_64"
INSIDE = ["busybox", "hostapd", "hostapd_cli", "wpa_supplicant", "wpa_cli", "iw", "ip", "setpriv"]
OUTSIDE = [EMULATOR, "cpio", "depmod", "modprobe", "setpriv", "dpkg-deb", "apt-get", "ldd"]
FIRMWARE = {"regulatory.db": "/lib/firmware/regulatory.db-debian",
            "regulatory.db.p7s": "/lib/firmware/regulatory.db.p7s-debian"}
SEARCHED = "/usr/local/sbin:/usr/sbin:/sbin:/usr/local/bin:/usr/bin:/bin"
PROGRAM = "/usr/local/bin/lanternfold-widgets"
FIND_WLAN_NAME = "/usr/local/bin/find-wlan-name"
# Ends the emulator when the tests end, however they end.
LIFE_BOUND_TO_TESTS = ["setpriv", "--pdeathsig", "KILL"]
# Its clock goes by what it computes, 4 ns for an instruction: the time limits of associating, of some
# 100 ms, do not run out because the tests' machine is busy.
ITS_OWN_TIME = ["-icount", "shift=2"]
KERNEL_OPTIONS = ("console=ttyS0 loglevel=4 panic=-1 mitigations=off nokaslr no_timer_check "
                  "tsc=reliable random.trust_cpu=on cryptomgr.notests rdinit=/init")


class Done:
    """A script that has ended in the machine."""

    def __init__(self, status, output, errors):
        self.status = status
        self.output = output
        self.errors = errors

    @property
    def text(self):
        return self.output.decode(errors="replace")


class RadioMachine:
    """The machine, from its boot on. Use it in a `with` statement; leaving it ends the machine."""

    def __init__(self, cache):
        missing = [name for name in {*INSIDE, *OUTSIDE} if find(name) is None]
        missing += [path for path in FIRMWARE.values() if not os.path.exists(path)]
        if missing:
            raise AssertionError("the machine with simulated radios lacks "
                                 f"{', '.join(sorted(missing))}; Scripts/setup test installs it")
        self._folder = tempfile.TemporaryDirectory(prefix="lanternfold radios ")
        folder = Path(self._folder.name)
        self.shared = folder / "shared"
        self.shared.mkdir()
        self._console = folder / "console.log"
        self._scripts = 0
        self._answers = queue.Queue()
        try:
            the_kernel = kernel(cache)
            self._process = start(the_kernel, make_image(folder, the_kernel), self.shared,
                                  self._console)
        except BaseException:
            self._folder.cleanup()
            raise
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def __enter__(self):
        try:
            self._answer("its boot", BOOT_SECONDS)
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self._process.kill()
        self._process.wait(timeout=20)
        self._reader.join(timeout=20)
        self._process.stdin.close()
        self._process.stdout.close()
        self._folder.cleanup()

    def _read(self):
        for line in self._process.stdout:
            self._answers.put(line.decode(errors="replace").strip())
        self._answers.put(None)

    def _answer(self, what, seconds):
        try:
            answer = self._answers.get(timeout=seconds)
        except queue.Empty:
            answer = None
        if answer is None:
            raise AssertionError(f"the machine with simulated radios hung in {what}; its last "
                                 f"words:\n{self._console.read_text(errors='replace')[-2000:]}")
        return answer

    def script(self, text):
        """Runs a shell script in the machine."""
        self._scripts += 1
        name = str(self._scripts)
        (self.shared / f"{name}.sh").write_text(text + "\n")
        self._process.stdin.write(f"{name}\n".encode())
        self._process.stdin.flush()
        number, status = self._answer(f"a script:\n{text}\nwhich", SCRIPT_SECONDS).split()
        if number != name:
            raise AssertionError(f"the machine answered {number} instead of {name}")
        output, errors = ((self.shared / f"{name}.{kind}").read_bytes() for kind in ("out", "err"))
        return Done(int(status), output, errors)

    def run(self, text):
        """The output of a script that must succeed."""
        done = self.script(text)
        if done.status != 0:
            text += self.script("ps -o pid,ppid,stat,time,args; dmesg | tail -n 15").text
            raise AssertionError(f"status {done.status} of the script\n{text}\n{done.text[-3000:]}"
                                 f"{done.errors.decode(errors='replace')[-3000:]}")
        return done.text

    def sections(self, commands):
        """The output of each of several commands, by the names they are given, whether they succeed
        or not; run without a pause in one script."""
        mark = "======== "
        said = self.script("\n".join(f"echo '{mark}{name}'\n{command}"
                                     for name, command in commands.items())).text
        pieces = re.split(f"^{mark}(.*)\n", said, flags=re.MULTILINE)[1:]
        return dict(zip(pieces[::2], pieces[1::2]))

    def load_radios(self, count):
        """Radios with the interfaces wlan0, wlan1 and so on; those that were there are gone."""
        self.run(f"rmmod {RADIOS} 2>/dev/null\ninsmod /modules/{RADIOS}.ko radios={count}")


def find(name):
    return shutil.which(name, path=SEARCHED)


def start(the_kernel, image, shared, console):
    """The emulator; its input and output are the machine's second serial line."""
    with open(console, "ab") as log:
        return subprocess.Popen(
            [*LIFE_BOUND_TO_TESTS, EMULATOR, "-no-user-config", "-nodefaults", "-display", "none",
             "-no-reboot", "-M", "pc", "-accel", "tcg,tb-size=256", *ITS_OWN_TIME, "-cpu", "max",
             "-smp", "1", "-m", MEMORY, "-nic", "none",
             "-fsdev", f"local,id=shared,path={shared},security_model=none",
             "-device", "virtio-9p-pci,fsdev=shared,mount_tag=shared",
             "-kernel", str(the_kernel.image), "-initrd", str(image), "-append", KERNEL_OPTIONS,
             "-chardev", f"file,id=console,path={console},append=on", "-serial", "chardev:console",
             "-chardev", "stdio,id=scripts,signal=off", "-serial", "chardev:scripts"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=log)


def make_image(folder, the_kernel):
    """The machine's file system, as the kernel unpacks it into memory."""
    root = folder / "root"
    (root / "usr" / "local").mkdir(parents=True)
    install(root / "usr" / "local")
    for path in [Path(find(name)) for name in INSIDE]:
        put(root, path, Path("/bin/busybox") if path.name == "busybox" else
            Path("/usr/sbin") / path.name)
    put_libraries(root, root / PROGRAM[1:])
    put(root, Path(os.environ["LANTERNFOLD_FIND_WLAN_NAME"]), Path(FIND_WLAN_NAME))
    for name, source in FIRMWARE.items():
        put(root, Path(source), Path("/lib/firmware") / name)
    for module in [*the_kernel.modules, the_kernel.image.with_name(LIST)]:
        put(root, module, Path("/modules") / module.name)
    put(root, INIT, Path("/init"))
    image = folder / "image.cpio"
    names = "\n".join(str(path.relative_to(root)) for path in sorted(root.rglob("*")))
    with open(image, "wb") as file:
        subprocess.run(["cpio", "-o", "-H", "newc", "--quiet", "-R", "0:0"], cwd=root,
                       input=names.encode(), stdout=file, timeout=120, check=True)
    shutil.rmtree(root)
    return image


def put(root, source, target):
    """A file and, if it is a program, the libraries that it needs."""
    placed = root / str(target)[1:]
    placed.parent.mkdir(parents=True, exist_ok=True)
    if not placed.exists():
        shutil.copy(source, placed)
        if placed.stat().st_mode & 0o111 or ".so" in placed.name:
            put_libraries(root, placed)


def put_libraries(root, program):
    said = subprocess.run(["ldd", str(program)], capture_output=True, text=True, timeout=60).stdout
    for library in re.findall(r"(/\S+) \(0x", said):
        placed = root / library[1:]
        if not placed.exists():
            placed.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(library, placed)
