"""An X server with two monitors beside each other, of which one can be unplugged."""

from displays import XDisplay

LEFT, RIGHT = "DUMMY0", "DUMMY1"
WIDTH, HEIGHT = 640, 900
MODE = f"{WIDTH}x{HEIGHT}"
CONFIGURATION = f"""
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
EndSection
Section "Device"
  Identifier "card"
  Driver "dummy"
  VideoRam 65536
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 1-200
  VertRefresh 1-200
  Modeline "{MODE}" 60 640 660 700 800 900 910 920 940
EndSection
Section "Screen"
  Identifier "screen"
  Device "card"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "{MODE}"
    Virtual {2 * WIDTH} {HEIGHT}
  EndSubSection
EndSection
"""


class XorgDisplay(XDisplay):
    """Xorg without any hardware."""

    def __init__(self, session):
        super().__init__(session, size=(2 * WIDTH, HEIGHT))
        self.run("xrandr", "--addmode", RIGHT, MODE)
        self.plug()

    def plug(self):
        """The monitor to the right."""
        self.run("xrandr", "--output", RIGHT, "--mode", MODE, "--right-of", LEFT)
        self._look_at_connectors()

    def unplug(self):
        self.run("xrandr", "--output", RIGHT, "--off")
        self._look_at_connectors()

    def _look_at_connectors(self):
        """As a cable makes a server do it: only then is the output a connected one, or is not."""
        self.run("xrandr", "--query")

    def _server(self):
        configuration = self._session.folder / "xorg.conf"
        configuration.write_text(CONFIGURATION)
        return ["/usr/lib/xorg/Xorg", "-config", str(configuration), "-novtswitch", "-sharevts",
                "-logfile", str(self._session.folder / "xorg.log")]
