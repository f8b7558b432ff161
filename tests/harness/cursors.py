"""A theme of mouse pointers that are told apart by their colour."""

import os
import struct

# What a theme calls a shape: the name by which compositors ask for it, and others that toolkits try.
NAMES = {
    "default": ("left_ptr", "arrow"),
    "text": ("ibeam", "xterm"),
    "ew-resize": ("size_hor", "sb_h_double_arrow", "h_double_arrow", "col-resize"),
    "ns-resize": ("size_ver", "sb_v_double_arrow", "v_double_arrow", "row-resize"),
    "nwse-resize": ("size_fdiag", "fd_double_arrow", "top_left_corner", "bottom_right_corner"),
    "nesw-resize": ("size_bdiag", "bd_double_arrow", "top_right_corner", "bottom_left_corner"),
}
COLOURS = {
    "default": (255, 255, 255), "text": (255, 0, 0), "ew-resize": (0, 255, 0), "ns-resize": (0, 0, 255),
    "nwse-resize": (255, 255, 0), "nesw-resize": (255, 0, 255),
}
SIZE = 24


def _picture(colour):
    """A square of one colour in the format of pointers, which points with its upper left corner."""
    red, green, blue = colour
    image, version = 0xFFFD0002, 0x10000
    header = struct.pack("<4s3I", b"Xcur", 16, version, 1)
    contents = struct.pack("<3I", image, SIZE, 28)
    chunk = struct.pack("<9I", 36, image, SIZE, 1, SIZE, SIZE, 0, 0, 0)
    return header + contents + chunk + struct.pack("<I", 0xFF000000 | red << 16 | green << 8 | blue) * (SIZE * SIZE)


def write_theme(folder):
    """Returns what has to stand in the environment of whoever draws pointers."""
    pointers = os.path.join(folder, "pointers", "colours", "cursors")
    os.makedirs(pointers)
    for shape, others in NAMES.items():
        for name in (shape, *others):
            with open(os.path.join(pointers, name), "wb") as file:
                file.write(_picture(COLOURS[shape]))
    return {"XCURSOR_PATH": os.path.join(folder, "pointers"), "XCURSOR_THEME": "colours", "XCURSOR_SIZE": str(SIZE)}
