"""A virtual server: QEMU with Debian's own kernel, the host's root file system under a throw-away layer, and ipmi_sim as
its management controller behind a KCS port at CA2h. No KVM needed; a boot to the command takes under ten seconds."""

import os
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from .bench import ROOT, Simulator
from .processes import BenchError, end, spawn, tail

VM = ROOT / "tools" / "vm"
MODULES = ("virtio_pci", "9pnet_virtio", "9p", "overlay")
SYSTEM_PATH = os.environ["PATH"] + ":/usr/sbin:/sbin"


def newest_kernel():
    kernels = [p.name.removeprefix("vmlinuz-") for p in Path("/boot").glob("vmlinuz-*")]
    usable = sorted((k for k in kernels if Path("/lib/modules", k).is_dir()), key=_version)
    if not usable:
        raise BenchError("no kernel under /boot with its modules under /lib/modules")
    return usable[-1]


def _version(text):
    return [int(part) if part.isdigit() else -1 for part in text.replace("-", ".").split(".")]


def _initramfs(folder, kernel):
    """Builds the first file system: busybox, a few modules, the init script."""
    tree = folder / "initramfs"
    for name in ("bin", "dev", "proc", "sys", "lower", "layer", "newroot", "modules"):
        (tree / name).mkdir(parents=True)
    shutil.copy(shutil.which("busybox", path=SYSTEM_PATH), tree / "bin" / "busybox")
    shutil.copy(VM / "init", tree / "init")
    (tree / "init").chmod(0o755)
    order = []
    for module in MODULES:
        shown = subprocess.run(["modprobe", "-S", kernel, "--show-depends", module], capture_output=True, text=True,
                               env=dict(os.environ, PATH=SYSTEM_PATH), check=True).stdout
        for line in shown.splitlines():
            words = line.split()
            if words[0] == "insmod" and Path(words[1]).name not in order:
                shutil.copy(words[1], tree / "modules")
                order.append(Path(words[1]).name)
    (tree / "modules" / "order").write_text("\n".join(order) + "\n")
    names = subprocess.run(["find", "."], cwd=tree, capture_output=True, check=True).stdout
    with open(folder / "initramfs.cpio", "wb") as out:
        subprocess.run(["cpio", "-o", "-H", "newc", "--quiet"], cwd=tree, input=names, stdout=out, check=True)
    return folder / "initramfs.cpio"


def _shared(tag, path, readonly=False):
    return ["-fsdev", f"local,id={tag},path={path},security_model=none,multidevs=remap" + (",readonly=on" if readonly else ""),
            "-device", f"virtio-9p-pci,fsdev={tag},mount_tag={tag}"]


def run_in_machine(command, share, serial_port=None, driver=True, smbios=(), timeout=300, memory=768,
                   systemd=False, root="/", entry_point=32):
    """Runs the shell text `command` as root in a fresh machine and returns its CompletedProcess. `share` is the folder
    that is /share inside; what else the command writes is lost. `serial_port`: VM line of the controller; `driver` False
    leaves the KCS port to the command and hides the kernel's driver. `systemd`: the first process is systemd. `root`: the
    folder that is its root in place of the host's; `entry_point`: bits of that of the firmware's tables. BenchError when the
    machine does not get through."""
    with tempfile.TemporaryDirectory(prefix="machine.") as name:
        folder = Path(name)
        control = folder / "control"
        control.mkdir()
        shutil.copy(VM / "stage2", control)
        (control / "settings").write_text(f"DRIVER={int(driver)}\nSYSTEMD={int(systemd)}\n")
        (control / "command").write_text(command)
        kernel = newest_kernel()
        arguments = ["qemu-system-x86_64", "-machine", f"pc,accel=tcg,smbios-entry-point-type={entry_point}",
                     "-cpu", "max", "-smp", "2", "-m", str(memory), "-nodefaults", "-nic", "none", "-display", "none",
                     "-no-reboot", "-kernel", f"/boot/vmlinuz-{kernel}",
                     "-initrd", _initramfs(folder, kernel), "-append",
                     "console=ttyS0 quiet loglevel=4 panic=-1 mitigations=off tsc=reliable iomem=relaxed",
                     "-chardev", f"file,id=console,path={folder / 'console'}", "-serial", "chardev:console",
                     *_shared("root", root, readonly=True), *_shared("share", share), *_shared("control", control)]
        if serial_port:
            arguments += ["-chardev", f"socket,id=bmc,host=127.0.0.1,port={serial_port},reconnect=2",
                          "-device", "ipmi-bmc-extern,id=bmc0,chardev=bmc", "-device", "isa-ipmi-kcs,bmc=bmc0"]
        for table in smbios:
            arguments += ["-smbios", table]
        if not _booted(arguments, folder, control / "reached", timeout):
            _booted(arguments, folder, control / "reached", timeout)
        return _result(command, control, folder)


def _booted(arguments, folder, reached, timeout):
    """Runs the machine to its end, `timeout` seconds at most; only half of them without a sign of the command: the emulator
    has been seen to stand still in a boot, beside much else on its host. Whether the command was reached."""
    if record := os.environ.get("HWAGENT_RECORD"):  # see scripts/summary
        with open(record, "a", encoding="ascii") as out:
            print("count 1 boots of the virtual server", file=out)
    machine = spawn(arguments, folder / "qemu.log")
    began = time.monotonic()
    try:
        while machine.poll() is None and time.monotonic() - began < (timeout if reached.exists() else timeout / 2):
            time.sleep(0.1)
    finally:
        end(machine)
    return reached.exists()


def run_by_hand(command, board, share=None, **more):
    """The same with a board's controller and this program's outputs and exit status for the command's; returns its output."""
    with tempfile.TemporaryDirectory() as name, Simulator(board, Path(name) / "bmc") as simulator:
        share = Path(share or Path(name) / "share")
        share.mkdir(exist_ok=True)
        done = run_in_machine(command, share, simulator.serial_port, **more)
    sys.stdout.write(done.stdout)
    sys.stderr.write(done.stderr)
    return done


def _result(command, control, folder):
    if not (control / "status").exists():
        where = "in the command" if (control / "reached").exists() else "before the command"
        raise BenchError(f"the machine stopped or took too long {where}:\n" + tail(folder / "console") + "\n"
                         + tail(folder / "qemu.log") + "\n" + tail(control / "errors"))
    return subprocess.CompletedProcess(command, int((control / "status").read_text()),
                                       (control / "output").read_text(errors="replace"),
                                       (control / "errors").read_text(errors="replace"))
