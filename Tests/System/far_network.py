"""A second network namespace at the other end of a cable: where the services are."""

import contextlib
import os

from namespaces import CLONE_NEWNET, enter_network, ip, unshare

NEAR4, GATEWAY4, SERVICE4 = "192.0.2.2", "192.0.2.1", "203.0.113.9"
NEAR6, GATEWAY6, SERVICE6 = "2001:db8:1::2", "2001:db8:1::1", "2001:db8:9::9"
# Where packets end up without an answer: the far side has no such address and sends nothing on.
SILENT4 = "203.0.113.53"


class FarNetwork:
    """The link en0 leads there. The near side has no address and no route until it is given some."""

    def __init__(self):
        near = os.open("/proc/thread-self/ns/net", os.O_RDONLY)
        unshare(CLONE_NEWNET)
        self._far = os.open("/proc/thread-self/ns/net", os.O_RDONLY)
        enter_network(near)
        os.close(near)
        ip("link add en0 address 0a:00:00:00:00:02 type veth peer name far0",
           f"link set far0 netns /proc/{os.getpid()}/fd/{self._far}", "link set en0 up")
        with self.inside():
            ip("link set lo up", "link set far0 up",
               f"address add {SERVICE4}/32 dev lo", f"address add {GATEWAY4}/24 dev far0",
               f"address add {SERVICE6}/128 dev lo nodad",
               f"address add {GATEWAY6}/64 dev far0 nodad")

    def __exit__(self, *_):
        os.close(self._far)

    @contextlib.contextmanager
    def inside(self):
        """The calling thread, and what it starts, is on the far side."""
        near = os.open("/proc/thread-self/ns/net", os.O_RDONLY)
        enter_network(self._far)
        try:
            yield
        finally:
            enter_network(near)
            os.close(near)


def give_ipv4():
    ip(f"address add {NEAR4}/24 dev en0", f"route add default via {GATEWAY4} dev en0")


def give_ipv6():
    ip(f"-6 address add {NEAR6}/64 dev en0 nodad",
       f"-6 route add default via {GATEWAY6} dev en0")
