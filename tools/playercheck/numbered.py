# SPDX-License-Identifier: GPL-3.0-or-later

"""Movies whose pictures show their number, and functions that read it back from any screen.

A picture is a grid of 16 x 9 cells. The first row holds the 16 bits of the number, white for one and black for zero,
the second row their complement. The third row is dark and free for the marker of a freeze. Below it a texture scrolls,
so that the movie is coded with real motion. (The pictures of the tests have the same layout, see
tests/support/NumberedPicture.h.)
"""

import subprocess
from typing import NamedTuple, Optional

import numpy

COLUMNS, ROWS, READ_ROWS = 16, 9, 3
WIDTH, HEIGHT, RATE = 640, 360, 30
CELL_WIDTH, CELL_HEIGHT = WIDTH // COLUMNS, HEIGHT // ROWS
MIN_CONTRAST, MARKER_THRESHOLD = 60, 125


class Picture(NamedTuple):
    number: int
    marker: Optional[int] = None  # of a freeze

    def __str__(self):
        return str(self.number) if self.marker is None else f"{self.number} frozen"


def read_cells(cells):
    """The picture with these 3 x 16 cell means, or None if they are not certain."""
    bits, complements, free = numpy.asarray(cells, dtype=float).reshape(READ_ROWS, COLUMNS)
    if numpy.abs(bits - complements).min() < MIN_CONTRAST:
        return None
    number = sum(1 << int(column) for column in numpy.flatnonzero(bits > complements))
    marked = numpy.flatnonzero(free > MARKER_THRESHOLD)
    return Picture(number, int(marked[0]) if len(marked) else None)


def cell_means(grey):
    """The means of the cells' inner parts in the upper third of a picture. Their edges are blurred by coding."""
    cells = grey.reshape(READ_ROWS, CELL_HEIGHT, COLUMNS, CELL_WIDTH)
    inner = cells[:, CELL_HEIGHT * 3 // 10 : CELL_HEIGHT * 7 // 10, :, CELL_WIDTH * 3 // 10 : CELL_WIDTH * 7 // 10]
    return inner.mean(axis=(1, 3))


def marker_shape(marker):
    """The shape of a highlight that draws a white disc into the free cell `marker`. A circle whose stroke is as wide
    as its diameter is a disc of twice its radius."""
    x, y = (marker + 0.5) / COLUMNS, 2.5 / ROWS
    radius = 0.45 * min(CELL_WIDTH, CELL_HEIGHT)
    return f"kind=circle,p1={x}:{y},p2={x + radius / 2 / WIDTH}:{y},color=#FFFFFF,stroke={radius / HEIGHT}"


def draw(number, texture):
    rows = numpy.repeat(numpy.arange(ROWS), CELL_HEIGHT)[:, None]
    bits = numpy.repeat([number >> column & 1 for column in range(COLUMNS)], CELL_WIDTH)[None, :]
    scrolled = numpy.roll(texture, -3 * number, axis=1)[:, :WIDTH]
    return numpy.select([rows == 0, rows == 1, rows == 2], [16 + 219 * bits, 235 - 219 * bits, 60], scrolled)


def make_movie(path, frames, encoder):
    """Encodes numbers 0 to `frames` - 1 with ffmpeg and its arguments `encoder`, with sound of the same length."""
    noise = numpy.random.default_rng(7).integers(60, 200, (HEIGHT, WIDTH * 2))
    texture = sum(numpy.roll(noise, (y, x), (0, 1)) for y in range(4) for x in range(4)) // 16
    ffmpeg = subprocess.Popen(
        ["ffmpeg", "-v", "error", "-y",
         "-f", "rawvideo", "-pix_fmt", "gray", "-s", f"{WIDTH}x{HEIGHT}", "-r", str(RATE), "-i", "-",
         "-f", "lavfi", "-i", f"anoisesrc=r=48000:a=0.05:d={frames / RATE}",
         "-vf", "scale=in_range=tv,format=yuv420p", *encoder, "-c:a", "aac", str(path)],
        stdin=subprocess.PIPE)
    with ffmpeg.stdin as pictures:
        for number in range(frames):
            pictures.write(draw(number, texture).astype(numpy.uint8).tobytes())
    if ffmpeg.wait() != 0:
        raise RuntimeError(f"ffmpeg could not make {path}")
