"""A few Xlib calls through ctypes, for GUI tests that must act on a window the way a window
manager, another client or a real pointing device would, where no X tool does it: ask a window
to close with WM_DELETE_WINDOW, paint over a window's pixels, and move the pointer with the
XTEST extension. Standard library only; libX11 and libXtst must be installed."""

import ctypes
import ctypes.util


class XClientMessageEvent(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong),
                ("send_event", ctypes.c_int), ("display", ctypes.c_void_p),
                ("window", ctypes.c_ulong), ("message_type", ctypes.c_ulong),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5)]


class XEvent(ctypes.Union):
    _fields_ = [("xclient", XClientMessageEvent), ("pad", ctypes.c_long * 24)]


CLIENT_MESSAGE = 33
NO_EVENT_MASK = 0
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
    x.XInternAtom.restype = ctypes.c_ulong
    x.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                             ctypes.POINTER(XEvent)]
    x.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
    x.XGetWMProtocols.argtypes = [ctypes.c_void_p, ctypes.c_ulong,
                                  ctypes.POINTER(ctypes.POINTER(ctypes.c_ulong)),
                                  ctypes.POINTER(ctypes.c_int)]
    x.XFree.argtypes = [ctypes.c_void_p]
    x.XCreateGC.restype = ctypes.c_void_p
    x.XCreateGC.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_void_p]
    x.XFreeGC.argtypes = [ctypes.c_void_p, ctypes.c_void_p]
    x.XSetForeground.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_ulong]
    x.XFillRectangle.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_void_p, ctypes.c_int,
                                 ctypes.c_int, ctypes.c_uint, ctypes.c_uint]
    return x


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

    def atom(self, name):
        return self.x.XInternAtom(self.display, name.encode(), 0)

    def protocols(self, window):
        """The atom names in the window's WM_PROTOCOLS."""
        atoms = ctypes.POINTER(ctypes.c_ulong)()
        count = ctypes.c_int()
        if not self.x.XGetWMProtocols(self.display, window, ctypes.byref(atoms),
                                      ctypes.byref(count)):
            return []
        values = [atoms[i] for i in range(count.value)]
        self.x.XFree(atoms)
        names = {self.atom(n): n for n in ("WM_DELETE_WINDOW", "WM_TAKE_FOCUS", "_NET_WM_PING")}
        return [names.get(v, v) for v in values]

    def request_close(self, window):
        """What a window manager does for the close box: a WM_PROTOCOLS client message with
        WM_DELETE_WINDOW sent to the window's own client. The window is not destroyed; its
        program decides. XlibError when the window doesn't take WM_DELETE_WINDOW."""
        if "WM_DELETE_WINDOW" not in self.protocols(window):
            raise XlibError("window 0x%x does not take WM_DELETE_WINDOW" % window)
        event = XEvent()
        event.xclient.type = CLIENT_MESSAGE
        event.xclient.window = window
        event.xclient.message_type = self.atom("WM_PROTOCOLS")
        event.xclient.format = 32
        event.xclient.data[0] = self.atom("WM_DELETE_WINDOW")
        event.xclient.data[1] = CURRENT_TIME
        if not self.x.XSendEvent(self.display, window, 0, NO_EVENT_MASK, ctypes.byref(event)):
            raise XlibError("XSendEvent failed")
        self.x.XSync(self.display, 0)

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
