#!/usr/bin/env python3
"""Five widgets on the desktop beside a desktop bar, a system monitor and a bare window.

desktop_host.py FOLDER [--seconds N] [--starts N]

FOLDER holds the programs, built with optimisation. As root: a network namespace of the benchmark's
holds three adapters and our own services, an X server with a window manager, and a Wayland
compositor; each contender starts alone (the median of --starts, 11 unless told), and then all of
them stand side by side for --seconds (600 unless told). Every figure is of all processes of a
contender, the widgets' extension among them. Start to paint is the time until anything at all can
be seen.
"""

import argparse
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

TABLE = """{"0.0.0.0/0": {"isp": "Example Net", "countryCode": "AT", "as": ""}}"""
ADAPTERS = {"en0": "192.0.2.2", "en1": "198.51.100.2", "en2": "203.0.113.2"}
SETTLE_SECONDS = 10
HANG_SECONDS = 30
EACH_SECOND, STOCK_BAR_SECONDS = 1, 60  # the first is conky's stock interval
# Both show of every adapter what the widgets show, as far as they can.
CONKY = """conky.config = {
  out_to_x = true, own_window = true, own_window_type = 'desktop', double_buffer = true,
  alignment = 'top_right', use_xft = true, font = 'Inter:size=10', update_interval = %d,
  minimum_width = 364, net_avg_samples = 2,
}
conky.text = [[Router ${gw_ip} DNS ${nameserver}
%s]]
"""
CONKY_ADAPTER = """{0} ${{addr {0}}} ${{v6addrs {0}}}
down ${{downspeed {0}}} up ${{upspeed {0}}} received ${{totaldown {0}}} sent ${{totalup {0}}}
"""
WAYBAR_ADAPTER = """"network#{0}": {{"interface": "{0}", "interval": {1}, "format":
 "{{ifname}} {{ipaddr}}/{{cidr}} {{gwaddr}} {{bandwidthDownBytes}} {{bandwidthUpBytes}}"}}"""


class Contender:
    def __init__(self, name, session, display, command):
        self.name = f"{name}, {'X' if 'DISPLAY' in display.environment else 'Wayland'}"
        self._display = display
        self._command = [str(word) for word in command]
        self._environment = session.environment | display.environment

    def start(self):
        return subprocess.Popen(self._command, env=self._environment, stdin=subprocess.DEVNULL,
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def seconds_to_paint(self):
        if "DISPLAY" not in self._environment:
            return first_paint.on_wayland(self._command, self._environment)
        process, seconds = first_paint.on_x(self._command, self._environment, self._display.size)
        end(process)
        return seconds

    def mebibytes_alone(self):
        """At rest: what it has started to be answered has left."""
        process = self.start()
        time.sleep(SETTLE_SECONDS)
        process_tree.wait_until(lambda: not process_tree.descendants(process.pid), "rest", 60, 0.5)
        kilobytes = process_costs.memory_kilobytes(process.pid)[0]
        end(process)
        return kilobytes / 1024


def end(process):
    """Gently, so that it takes along what it has started."""
    process.terminate()
    try:
        process.wait(timeout=HANG_SECONDS)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait(timeout=HANG_SECONDS)
    process_tree.wait_until(lambda: not process_tree.descendants(process.pid), "the end of all")
    time.sleep(0.5)  # its windows go, too


def in_table(*cells):
    print("|", " | ".join(str(each) for each in cells), "|", flush=True)


def make_adapters():
    namespaces.ip("link set lo up", *(
        line for number, (name, address) in enumerate(ADAPTERS.items())
        for line in (f"link add {name} type veth peer name far{number}",
                     f"link set far{number} up", f"link set {name} up",
                     f"address add {address}/24 dev {name}")),
        "route add default via 192.0.2.1")


def host_of(folder, programs, session, options):
    """The command of the host in a copy of its own: two that run share nothing of it."""
    own = folder / f"programs {Path(session.environment['HOME']).parent.name}"
    own.mkdir()
    for name in ("lanternfold-widget-host", "lanternfold-widget-extension"):
        shutil.copy(programs / name, own)
    # Nobody is there to be asked for consent.
    subprocess.run([programs / "lanternfold-widgets", "location", "deny", "--data-dir", own / "data"],
                   check=True, stdout=subprocess.DEVNULL)
    return [own / "lanternfold-widget-host", "--data-dir", own / "data", *options]


def waybar_of(folder, interval):
    """The command of a bar that looks so often."""
    modules = ", ".join(f'"network#{each}"' for each in ADAPTERS)
    settings = ",\n".join(WAYBAR_ADAPTER.format(each, interval) for each in ADAPTERS)
    configuration = folder / f"waybar {interval}.json"
    configuration.write_text(f'{{"modules-right": [{modules}],\n{settings}}}')
    style = folder / "waybar.css"
    style.write_text("* { font-family: Inter; font-size: 13px; }\n")
    return ["waybar", "-c", configuration, "-s", style]


def contenders(folder, programs, x, wayland, options):
    """Of each display its own; `x` and `wayland` are pairs of session and display."""
    (folder / "conky.conf").write_text(
        CONKY % (EACH_SECOND, "".join(CONKY_ADAPTER.format(each) for each in ADAPTERS)))
    bare = [programs / "Benchmarks" / "lanternfold-bare-window"]
    for session, display in (x, wayland):
        yield Contender("five widgets", session, display,
                        host_of(folder, programs, session, options))
    for interval in (STOCK_BAR_SECONDS, EACH_SECOND):
        yield Contender(f"waybar, every {interval} s", *wayland, waybar_of(folder, interval))
    yield Contender(f"conky, every {EACH_SECOND} s", *x, ["conky", "-c", folder / "conky.conf"])
    for session, display in (x, wayland):
        yield Contender("bare GTK 3 window", session, display, bare)


def measure(everyone, seconds, starts):
    paints = {each: [] for each in everyone}
    for each in everyone:
        each.seconds_to_paint()  # the files come into memory
    for _ in range(starts):
        for each in everyone:
            paints[each].append(each.seconds_to_paint())
    alone = {each: each.mebibytes_alone() for each in everyone}
    processes = [each.start() for each in everyone]
    time.sleep(SETTLE_SECONDS)
    costs = [process_costs.Costs(process.pid) for process in processes]
    time.sleep(seconds)
    figures = [each.end() for each in costs]
    for each, process in zip(everyone, processes):
        if process.poll() is not None:
            raise SystemExit(f"{each.name} has ended with {process.returncode}")
        end(process)
    print_table(everyone, paints, alone, figures)


def print_table(everyone, paints, alone, figures):
    in_table("beside each other", "start to paint ms", "PSS alone, at rest MiB", *figures[0])
    in_table("---", *["---:"] * (2 + len(figures[0])))
    for each, costs in zip(everyone, figures):
        digits = {"CPU s a minute": 3, "wake-ups a minute": 0}
        in_table(each.name, f"{statistics.median(paints[each]) * 1000:.0f}", f"{alone[each]:.1f}",
                 *(f"{value:.{digits.get(name, 1)}f}" for name, value in costs.items()))


def run(programs, folder, seconds, starts):
    networks = folder / "networks.json"
    networks.write_text(TABLE)
    with echo_service.EchoService("--geolocation-table", networks) as echo, \
            desktop_session.DesktopSession() as x_session, \
            desktop_session.DesktopSession() as wayland_session:
        url = "http://{}:{}".format(*echo.addresses[0])
        options = ["--ipv4-echo", url, "--ipv6-echo", "http://[::1]:9", "--geolocation", url]
        x = x_session, displays.XDisplay(x_session)
        wayland = wayland_session, displays.SwayDisplay(wayland_session)
        everyone = list(contenders(folder, programs, x, wayland, options))
        measure(everyone, seconds, starts)


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("folder", type=Path)
    parser.add_argument("--seconds", type=int, default=600)
    parser.add_argument("--starts", type=int, default=11)
    chosen = parser.parse_args()
    if os.geteuid() != 0:
        raise SystemExit("desktop_host.py: needs root, to make a network namespace")
    programs = chosen.folder.resolve()
    import_helpers(programs)
    namespaces.unshare(namespaces.CLONE_NEWNS | namespaces.CLONE_NEWNET)
    namespaces.make_mounts_private()
    namespaces.mount("sysfs", "/sys", "sysfs")
    make_adapters()
    with tempfile.TemporaryDirectory(prefix="lanternfold-") as folder:
        run(programs, Path(folder), chosen.seconds, chosen.starts)


def import_helpers(programs):
    """They read the environment when they are imported."""
    os.environ["LANTERNFOLD_WIDGETS"] = str(programs / "lanternfold-widgets")
    sys.dont_write_bytecode = True
    sys.path[:0] = [str(Path(__file__).resolve().parent),
                    str(Path(__file__).resolve().parents[1] / "Tests" / "System")]
    for name in ("namespaces", "echo_service", "desktop_session", "displays", "process_tree",
                 "process_costs", "first_paint"):
        globals()[name] = __import__(name)


if __name__ == "__main__":
    main()
