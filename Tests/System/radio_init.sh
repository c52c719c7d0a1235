#!/bin/busybox sh
# The first process of the machine with simulated radios. It makes the system ready, and then runs
# one script after the other: it reads a number from its second serial line, runs the script of that
# number in the shared folder, and answers with the script's exit status.
/bin/busybox mkdir -p /proc /sys /dev /run /tmp /shared /bin
/bin/busybox --install -s /bin
export PATH=/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 TERM=dumb
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs dev /dev
mkdir -p /dev/pts /dev/shm /root
mount -t devpts pts /dev/pts
mount -t tmpfs -o mode=1777 tmp /tmp
mount -t tmpfs -o mode=755 run /run
mkdir -p /var && ln -s /run /var/run
chmod 755 /
stty -F /dev/ttyS1 raw -echo

# The radios come when a test wants them.
while read -r module; do
  case $module in mac80211_hwsim.ko) continue ;; esac
  insmod "/modules/$module" || echo "insmod $module failed" >/dev/console
done </modules/modules.order
mount -t 9p -o trans=virtio,version=9p2000.L shared /shared ||
  echo "the shared folder cannot be mounted" >/dev/console
# Frames of IPv6 come when they like, and change the rates that the tests compare.
for scope in all default; do echo 1 >/proc/sys/net/ipv6/conf/$scope/disable_ipv6; done
ip link set lo up

exec </dev/ttyS1 >/dev/ttyS1
echo ready
while read -r number; do
  timeout -s KILL 200 sh "/shared/$number.sh" >"/shared/$number.out" 2>"/shared/$number.err" </dev/null
  echo "$number $?"
done
