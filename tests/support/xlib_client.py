"""A few Xlib calls through ctypes, for GUI tests that must act on a window the way another
client, a window manager or a real pointing device would, where no X tool does it: paint over a
window's pixels, ask a window to close, and move the pointer with the XTEST extension. Standard
library only; libX11 and libXtst must be installed."""

import ctypes
import ctypes.util

CURRENT_TIME = 0


class XlibError(Exception):
    pass


def _library():
    name = ctypes.util.find_library("X11")
    if not name:
        raise XlibError("libX11 not found")
    x = ctypes.CDLL(name)
    x.XOpenDisplay.restype = ctypes.c_void_p
    x.XOpenDisplay.argtypes = [ctypes.c_char_p]
    x.XCloseDisplay.argtypes = [ctypes.c_void_p]
    x.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
    x.XCreateGC.restype = ctypes.c_void_p
    x.XCreateGC.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_void_p]
    x.XFreeGC.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
    x.XSetForeground.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_ulong]
    x.XFillRectangle.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_void_p, ctypes.c_int,
                                 ctypes.c_int, ctypes.c_uint, ctypes.c_uint]
    x.XInternAtom.restype = ctypes.c_ulong
    x.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                             ctypes.c_void_p]
    return x


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", ctypes.c_void_p), ("window", ctypes.c_ulong),
                ("message_type", ctypes.c_ulong), ("format", ctypes.c_int),
                ("data", ctypes.c_long * 5), ("pad", ctypes.c_long * 12)]


def _xtest():
    name = ctypes.util.find_library("Xtst")
    if not name:
        raise XlibError("libXtst not found")
    t = ctypes.CDLL(name)
    t.XTestFakeMotionEvent.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_int, ctypes.c_int,
                                       ctypes.c_ulong]
    return t


class Connection:
    """One connection to the X display `name` (":5")."""

    def __init__(self, name):
        self.x = _library()
        self.display = self.x.XOpenDisplay(name.encode())
        if not self.display:
            raise XlibError("cannot open display %s" % name)

    def close(self):
        if self.display:
            self.x.XCloseDisplay(self.display)
            self.display = None

    def __enter__(self):
        return self

    def __exit__(self, *exc):
        self.close()

    def move_pointer(self, x, y):
        """Moves the pointer to (`x`, `y`) on screen 0 as a pointing device does, through
        XTEST: unlike a warp of the pointer (`xdotool mousemove`), this makes the raw motion
        events that clients watching the whole screen see."""
        if not _xtest().XTestFakeMotionEvent(self.display, 0, x, y, CURRENT_TIME):
            raise XlibError("XTestFakeMotionEvent failed")
        self.x.XSync(self.display, 0)

    def fill_rectangle(self, window, x, y, width, height, pixel):
        """Paints `pixel` (0xRRGGBB on a TrueColor screen) straight into the window, behind its
        program's back."""
        gc = self.x.XCreateGC(self.display, window, 0, None)
        self.x.XSetForeground(self.display, gc, pixel)
        self.x.XFillRectangle(self.display, window, gc, x, y, width, height)
        self.x.XFreeGC(self.display, gc)
        self.x.XSync(self.display, 0)

    def request_close(self, window):
        """Sends the window the client message WM_DELETE_WINDOW, as a window manager does when
        the user presses its close box."""
        event = _ClientMessage(type=33, window=window, format=32)  # 33: ClientMessage
        event.message_type = self.x.XInternAtom(self.display, b"WM_PROTOCOLS", 0)
        event.data[0] = self.x.XInternAtom(self.display, b"WM_DELETE_WINDOW", 0)
        if not self.x.XSendEvent(self.display, window, 0, 0, ctypes.byref(event)):
            raise XlibError("the close request was not sent")
        self.x.XSync(self.display, 0)
