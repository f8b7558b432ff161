"""Disks on which there is little room."""

import contextlib
import os
import subprocess


def can_mount():
    """Only the administrator can make a disk of its own size, and not in every container."""
    return os.geteuid() == 0 and subprocess.run(["unshare", "--mount", "mount", "-t", "tmpfs", "none", "/mnt"], check=False,
                                                capture_output=True).returncode == 0


@contextlib.contextmanager
def small_disk(folder):
    os.makedirs(folder, exist_ok=True)
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=64k", "none", folder], check=True)
    try:
        yield
    finally:
        subprocess.run(["umount", "--lazy", folder], check=True)


@contextlib.contextmanager
def small_quota(folder):
    """A disk with room, of which what lies in the folder may take little. It is btrfs, as kernels without other quotas have that."""
    image, disk = folder + ".image", folder + ".disk"
    os.makedirs(disk)
    with open(image, "wb") as file:
        file.truncate(130 * 1024 * 1024)
    with contextlib.ExitStack() as stack:
        for command in (["mkfs.btrfs", "-q", image], ["mount", "-o", "loop", image, disk], ["btrfs", "quota", "enable", disk],
                        ["btrfs", "subvolume", "create", disk + "/part"], ["btrfs", "qgroup", "limit", "256K", disk + "/part"]):
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
            if command[0] == "mount":
                stack.callback(subprocess.run, ["umount", "--lazy", disk], check=True)
        os.rmdir(folder)
        os.symlink(disk + "/part", folder)
        yield


def fill(folder, reason):
    """Until that is why no more fits."""
    filler = os.path.join(folder, "filler")
    with open(filler, "wb", buffering=0) as file:
        try:
            while True:
                file.write(b"x" * 512)
        except OSError as error:
            assert error.errno == reason, error


def empty(folder):
    os.unlink(os.path.join(folder, "filler"))
    # What was deleted may count until then.
    subprocess.run(["sync", "--file-system", folder], check=True)
