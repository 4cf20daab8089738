"""Asks a window whether it still answers, as a window manager does before it calls one frozen."""
import select
import threading
import time

from Xlib import X, display
from Xlib.protocol import event

# Set in the type of an event that another program sent.
SENT = 0x80


class WindowPing:
    """The question goes the way of key presses through the program's event loop."""

    def __init__(self, window):
        self._display = display.Display()
        self._root = self._display.screen().root
        self._root.change_attributes(event_mask=X.SubstructureNotifyMask | X.StructureNotifyMask)
        self._window = self._display.create_resource_object("window", window)
        self._protocols = self._display.intern_atom("WM_PROTOCOLS")
        self._ping = self._display.intern_atom("_NET_WM_PING")
        self._number = 0

    def seconds(self, patience_s=30):
        """How long the answer takes; None when none comes."""
        self._number += 1
        question = event.ClientMessage(
            window=self._window, client_type=self._protocols,
            data=(32, [self._ping, self._number, self._window.id, 0, 0]))
        start = time.perf_counter()
        self._window.send_event(question, event_mask=X.NoEventMask)
        self._display.flush()
        while time.perf_counter() - start < patience_s:
            if self._is_answered():
                return time.perf_counter() - start
            select.select([self._display], [], [], 0.1)
        return None

    def _is_answered(self):
        while self._display.pending_events():
            answer = self._display.next_event()
            if (answer.type & ~SENT == X.ClientMessage and answer.client_type == self._protocols
                    and answer.data[1][1] == self._number):
                return True
        return False


class StallWatch:
    """Asks the window again and again from a thread of its own."""

    def __init__(self, window, pause_s=0.02):
        self._ping, self._pause_s = WindowPing(window), pause_s
        self._lock, self._seconds, self._stopped = threading.Lock(), [], threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)
        self._thread.start()

    def _watch(self):
        while not self._stopped.wait(self._pause_s):
            seconds = self._ping.seconds()
            with self._lock:
                self._seconds.append(float("inf") if seconds is None else seconds)

    def take(self):
        """The times of all answers since the last call, in seconds."""
        with self._lock:
            taken, self._seconds = self._seconds, []
        return taken

    def stop(self):
        self._stopped.set()
        self._thread.join(40)
