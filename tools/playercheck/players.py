# SPDX-License-Identifier: GPL-3.0-or-later

"""The players. Each plays a movie and returns the pictures that it showed, and for how long.

mpv and VLC play in the only window of an X server, whose screen is recorded meanwhile. Chromium runs without a screen,
and a page in it reads the pictures (see page.html).
"""

import http.server
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import threading
import time
from typing import NamedTuple, Optional

import numpy

from numbered import CELL_HEIGHT, HEIGHT, READ_ROWS, WIDTH, Picture, cell_means, read_cells

REFRESH = 1 / 60
STARTING = 3       # seconds that a player may take to its first picture
LONGEST_PLAY = 90  # seconds until the browser counts as stuck


class Stand(NamedTuple):
    """A picture that was shown, and for how long. Without picture: something unreadable was shown."""
    picture: Optional[Picture]
    seconds: float


class Seek(NamedTuple):
    time: float
    picture: Optional[Picture]


class NoDecoder(Exception):
    pass


def joined(moments):
    """Joins consecutive readings (picture, time). The last reading only ends the one before it."""
    stands = []
    for (picture, start), (_, end) in zip(moments, moments[1:]):
        if stands and stands[-1].picture == picture:
            stands[-1] = Stand(picture, stands[-1].seconds + end - start)
        else:
            stands.append(Stand(picture, end - start))
    return stands


class Screen:
    """An X server with a screen of the size of a test picture, for one player."""

    def __init__(self):
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", "1", "-screen", "0", f"{WIDTH}x{HEIGHT}x24", "-nolisten", "tcp", "-ac"],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.display = ":" + self.server.stdout.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.server.terminate()
        self.server.wait()

    def play(self, command, seconds, folder):
        """Runs a player that stays on the last picture, for `seconds` plus the time to start. Returns what was shown
        from the first readable picture on."""
        recording = folder / "screen.gray"
        recorder = subprocess.Popen(
            ["ffmpeg", "-v", "error", "-y", "-f", "x11grab", "-draw_mouse", "0", "-framerate", str(round(1 / REFRESH)),
             "-video_size", f"{WIDTH}x{READ_ROWS * CELL_HEIGHT}", "-i", self.display, "-vsync", "cfr", "-f", "rawvideo",
             "-pix_fmt", "gray", "-flush_packets", "1", str(recording)], stdin=subprocess.PIPE)
        while not (recording.exists() and recording.stat().st_size):
            time.sleep(0.05)
        player = subprocess.Popen(command, env={**os.environ, "DISPLAY": self.display}, stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        time.sleep(seconds + STARTING)
        recorder.communicate(b"q")
        player.terminate()
        player.wait()
        grabs = numpy.fromfile(recording, numpy.uint8).reshape(-1, READ_ROWS * CELL_HEIGHT, WIDTH)
        read = [read_cells(cell_means(grab)) for grab in grabs]
        recording.unlink()
        readable = [i for i, picture in enumerate(read) if picture]
        if not readable:
            return []
        first, last = readable[0], readable[-1]
        return joined([(read[i], i * REFRESH) for i in range(first, last + 1)] + [(None, (last + 1) * REFRESH)])


def first_line(*command):
    return subprocess.run(command, capture_output=True, text=True).stdout.splitlines()[0]


class Mpv:
    name = "mpv"
    programs = {"mpv": "mpv", "Xvfb": "xvfb"}

    def version(self):
        return " ".join(first_line("mpv", "--version").split()[:2])

    def check(self, movie, seconds, seek_times, folder):
        with Screen() as screen:
            command = ["mpv", "--no-config", "--vo=x11", "--ao=null", "--osc=no", "--osd-level=0",
                       "--no-border", "--geometry=0:0", "--keep-open=yes", str(movie)]
            return screen.play(command, seconds, folder), []


class Vlc:
    name = "VLC"
    programs = {"cvlc": "vlc-bin", "Xvfb": "xvfb"}

    def version(self):
        return "VLC " + first_line(*self.unprivileged(), "cvlc", "--version").split()[2]

    @staticmethod
    def unprivileged():
        """VLC refuses to run as root, so root runs it as the user nobody."""
        home = os.path.join(tempfile.gettempdir(), "playercheck-vlc")
        os.makedirs(home, mode=0o700, exist_ok=True)
        if os.geteuid() != 0:
            return ["env", f"HOME={home}"]
        shutil.chown(home, "nobody", "nogroup")
        return ["setpriv", "--reuid=nobody", "--regid=nogroup", "--clear-groups", "env", f"HOME={home}",
                f"XDG_RUNTIME_DIR={home}"]

    def check(self, movie, seconds, seek_times, folder):
        with Screen() as screen:
            command = [*self.unprivileged(), "cvlc", "--vout=xcb_x11", "--aout=dummy", "--no-osd", "--no-spu",
                       "--no-video-title-show", "--play-and-pause", str(movie)]
            return screen.play(command, seconds, folder), []


class Chromium:
    name = "Chromium"
    programs = {"chromium": "chromium"}

    def version(self):
        return " ".join(first_line("chromium", "--version").split()[:2])

    def check(self, movie, seconds, seek_times, folder):
        report = self.visit(movie, seek_times, folder)
        if "error" in report:
            raise NoDecoder(report["error"])
        moments = [(read_cells(moment["cells"]), moment["time"] / 1000) for moment in report["played"]]
        sought = [Seek(seek["time"], read_cells(seek["cells"])) for seek in report["sought"]]
        return joined(moments + [(None, report["end"] / 1000)]), sought

    @staticmethod
    def visit(movie, seek_times, folder):
        """Lets the page play the movie and waits for its report."""
        answers = {"/": (pathlib.Path(__file__).with_name("page.html").read_bytes(), "text/html"),
                   "/movie": (movie.read_bytes(), "video/mp4"),
                   "/seeks": (json.dumps(seek_times).encode(), "application/json")}
        reports, arrived = [], threading.Event()

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                body, kind = answers.get(self.path, (b"", "text/plain"))
                self.send_response(200 if self.path in answers else 404)
                self.send_header("Content-Type", kind)
                self.send_header("Content-Length", str(len(body)))
                self.end_headers()
                self.wfile.write(body)

            def do_POST(self):
                reports.append(json.loads(self.rfile.read(int(self.headers["Content-Length"]))))
                self.send_response(204)
                self.end_headers()
                arrived.set()

            def log_message(self, *_):
                pass

        with http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler) as server:
            threading.Thread(target=server.serve_forever, daemon=True).start()
            browser = subprocess.Popen(
                ["chromium", "--headless=new", *(["--no-sandbox"] if os.geteuid() == 0 else []), "--disable-gpu",
                 "--autoplay-policy=no-user-gesture-required", f"--window-size={WIDTH},{HEIGHT}", "--no-first-run",
                 f"--user-data-dir={folder / 'chromium'}", f"http://127.0.0.1:{server.server_port}/"],
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            try:
                if not arrived.wait(LONGEST_PLAY):
                    raise RuntimeError("Chromium did not reach the end of the movie")
            finally:
                browser.terminate()
                browser.wait()
                server.shutdown()
        return reports[0]
