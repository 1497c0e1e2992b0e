#!/usr/bin/env bash
# Checks the parallel port against a real kernel: boots Debian's kernel with its ppdev and a PC's
# port in an emulator and compares what the port library and vorelctl say there with what is
# expected. Above all, a port that a process holds is busy for others, and is free again whatever
# signal ends the process. Nothing is behind the port, so no chain is found.
#
# usage: ppdev_guest.sh BUILD_FOLDER [WORK_FOLDER]
# Needs the packages qemu-system-x86, busybox-static and cpio, and downloads the kernel's package
# (70 MB) into the work folder, build/guest without a choice. Takes about a minute.
set -euo pipefail

build=$(readlink -f "$1")
work=${2:-$build/../guest}
mkdir -p "$work"
work=$(readlink -f "$work")
here=$(dirname "$(readlink -f "$0")")
for tool in qemu-system-x86_64 busybox cpio; do
    command -v $tool >/dev/null || { echo "$tool is not installed"; exit 77; }
done

# The kernel, unpacked and not installed.
if ! compgen -G "$work/kernel/boot/vmlinuz-*" >/dev/null; then
    package=$(apt-cache depends linux-image-amd64 | awk '/Depends:/ { print $2; exit }')
    (cd "$work" && apt-get download "$package")
    dpkg-deb -x "$work/$package"_*.deb "$work/kernel"
fi
modules=$(echo "$work"/kernel/lib/modules/*/kernel/drivers)

# The guest's files: busybox, the modules, the installation and the libraries that it needs.
root=$work/root
rm -rf "$root"
mkdir -p "$root"/{bin,dev,proc,sys,tmp,modules,vorel/System}
cp "$(command -v busybox)" "$root/bin/"
cp "$modules"/parport/{parport,parport_pc}.ko "$modules"/char/{ppdev,lp}.ko "$root/modules/"
cp "$build"/vorel/System/{vorelctl,*.so,*.VOR,*.JTGBRD,*.txt} "$root/vorel/System/"
cp "$build/tests/guest/port_probe" "$root/bin/"
for file in "$root"/vorel/System/{vorelctl,*.so,*.VOR} "$root/bin/port_probe"; do
    ldd "$file" | awk '$3 ~ /^\// { print $3 } $1 ~ /^\// { print $1 }'
done | sort -u | while read -r library; do
    mkdir -p "$root$(dirname "$library")"
    cp -L "$library" "$root$library"
done
cp "$here/guest_init" "$root/init"
chmod +x "$root/init"
(cd "$root" && find . | cpio --quiet -o -H newc | gzip -1) >"$work/initramfs.gz"

timeout 150 qemu-system-x86_64 -accel tcg -m 512 -nodefaults -display none -no-reboot \
    -parallel null -serial stdio -kernel "$work"/kernel/boot/vmlinuz-* \
    -initrd "$work/initramfs.gz" -append "console=ttyS0 quiet panic=-1" </dev/null |
    tr -d '\r' | tee "$work/console" | sed -n 's/^.*guest> //p' >"$work/answers"
diff "$here/expected_answers" "$work/answers" || { tail -20 "$work/console"; exit 1; }
echo "all $(wc -l <"$work/answers") answers as expected"
