#!/usr/bin/env python3
"""The Design Aid panel for real: live design switched on in the gallery and the updater under
Xvfb (with openbox when installed), windows and guides selected with xdotool, and the panel's
fields read and typed into through the test bridge. Exits 77 (skipped) without a display."""

import os
import shutil
import sys
import tempfile
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import design_gui_test  # noqa: E402
import gui_test  # noqa: E402
from loopback_site import Site  # noqa: E402

AID = "DesignAid|"
PAGE = design_gui_test.PAGE
NO_FOLDER_TIP = "Set Resource Override Folder to specify where to save layout files"


class DesignAid(design_gui_test.Design):
    """The live design test's helpers, with tests of the panel only."""

    def field(self, d, name, key="text"):
        return d.widget_info(AID + name)[key]

    def wait_field(self, d, name, expected, key="text"):
        self.wait_text(d, AID + name, expected, key)

    def design_on(self, program, name, widget, title, env=None):
        p, d = self.start(program, name, widget, env)
        self.focus(title)
        self.caps(True)
        panel = self.window("Design Aid", timeout=10)
        self.assertIsNotNone(panel)
        self.wait_field(d, "Window Name Text", "No selection")
        # Off the program's window, which the panel's default place may cover.
        gui_test.xdotool(self.display, "windowmove", "--sync", panel, 700, 50)
        self.focus(title)
        return p, d

    def test_the_panel_shows_and_edits_the_selection(self):
        self.setting("com.tavorin", "RuntimeDesignEnable", "-bool", "true")
        p, d = self.design_on("tv-gallery", "APP:Gallery", PAGE + "|About Button", "Gallery")
        for i in "XY":
            self.assertEqual("false", self.field(d, "Geometry Edit " + i, "enabled"))

        # One window: its name, pointer and rectangle in its parent.
        button = PAGE + "|About Button"
        self.click(self.centre(d.widget_info(button)))
        self.key("p")
        self.wait_field(d, "Window Name Text", "About Button")
        x, y, w, h = self.rect(d, button)
        # The fields hold the rectangle in the parent; the bridge gives it in the frame.
        px, py = self.rect(d, PAGE)[:2]
        self.assertEqual([str(x - px), str(y - py), str(w), str(h)],
                         [self.field(d, "Geometry Edit " + n)
                          for n in ("X", "Y", "Width", "Height")])
        pointer = self.field(d, "Window ptr Edit")
        self.assertTrue(pointer.startswith("0x"), pointer)
        # The pointer field only copies: whatever is typed, it shows the pointer again.
        self.type_into_field(d, "Design Aid", AID + "Window ptr Edit", "0x1234")
        self.wait_field(d, "Window ptr Edit", pointer)

        # Several windows: the count, the smallest corner, "[...]" for differing sizes, which
        # can't be typed into.
        name = PAGE + "|Name Edit"
        self.focus("Gallery")
        self.click(self.centre(d.widget_info(name)), ("ctrl",))
        self.wait_field(d, "Window Name Text", "2 windows selected")
        nx, ny, nw, nh = self.rect(d, name)
        left = min(x, nx) - px
        self.assertEqual(str(left), self.field(d, "Geometry Edit X"))
        self.assertEqual(str(min(y, ny) - py), self.field(d, "Geometry Edit Y"))
        self.assertEqual("", self.field(d, "Window ptr Edit"))
        self.assertNotEqual(w, nw)
        self.assertEqual("[...]", self.field(d, "Geometry Edit Width"))
        self.assertEqual("false", self.field(d, "Geometry Edit Width", "enabled"))
        self.click(self.centre(d.widget_info(AID + "Geometry Edit Width")))
        self.assertIsNone(self.window("Inline Editor", timeout=1))

        # Typing X moves both as a group: the smallest left lands on the value.
        self.type_into_field(d, "Design Aid", AID + "Geometry Edit X", str(left + 15))
        d.wait_until(lambda: self.rect(d, button)[0] == x + 15, timeout=5)
        self.assertEqual((nx + 15, ny, nw, nh), self.rect(d, name))
        self.assertEqual((x + 15, y, w, h), self.rect(d, button))
        self.wait_field(d, "Geometry Edit X", str(left + 15))

        # A double click makes a selected vertical guide; typing X moves it.
        self.focus("Gallery")
        page = d.widget_info(PAGE)
        gx = int(page["screenX"]) + 5
        gy = int(page["screenY"]) + int(page["height"]) - 5
        time.sleep(0.2)
        gui_test.xdotool(self.display, "mousemove", gx, gy, "click", "--repeat", "2",
                         "--delay", "40", 1)
        self.wait_field(d, "Window Name Text", "One vertical guide selected")
        self.assertEqual("true", self.field(d, "Geometry Edit X", "enabled"))
        self.assertEqual("false", self.field(d, "Geometry Edit Width", "enabled"))
        guide = int(self.field(d, "Geometry Edit X"))
        self.type_into_field(d, "Design Aid", AID + "Geometry Edit X", str(guide + 20))
        self.wait_field(d, "Geometry Edit X", str(guide + 20))

        # Force keeps design on without caps lock; hiding the panel switches it off, and
        # design follows caps lock again.
        self.click(self.centre(d.widget_info(AID + "Force Design Enabled CheckBox")))
        d.wait_until(lambda: d.widget_info("DesignAid")["force"] == "true", timeout=5)
        self.focus("Gallery")
        self.caps(False)
        time.sleep(0.5)
        self.assertIsNotNone(self.window(design_gui_test.READOUT_WINDOW, timeout=1))
        self.click(self.centre(d.widget_info(AID + "Toggle Visibility Button")))
        d.wait_until(lambda: self.window(design_gui_test.READOUT_WINDOW, 0) is None,
                     timeout=10)
        info = d.widget_info("DesignAid")
        self.assertEqual(("false", "false"), (info["force"], info["shown"]))

    def test_the_save_button_waits_for_the_override_folder(self):
        site = Site({})
        self.addCleanup(site.stop)
        site.pages["/products/versions/versions.txt"] = b""
        self.setting("com.tavorin", "RuntimeDesignEnable", "-bool", "true")
        env = dict(self.env, TV_UPDATE_HOST=site.host, TV_WEB_HOST=site.host)
        close = design_gui_test.UPDATER + "|Close Button"
        p, d = self.design_on("tavorin-updater", "APP:Updater", close, "Tavorin Updater", env)
        save = "Save Layout Button"
        self.assertEqual("false", self.field(d, save, "enabled"))
        self.assertEqual(NO_FOLDER_TIP, d.widget_info("DesignAid")["saveToolTip"])

        # Force keeps design on, so that caps lock can go off before a path is typed.
        self.click(self.centre(d.widget_info(AID + "Force Design Enabled CheckBox")))
        d.wait_until(lambda: d.widget_info("DesignAid")["force"] == "true", timeout=5)
        self.caps(False)
        override = tempfile.mkdtemp(prefix="tvda", dir="/tmp")
        self.addCleanup(shutil.rmtree, override, True)
        os.makedirs(os.path.join(override, "UI", "Layout"))
        self.type_into_field(d, "Design Aid", AID + "Resource Path Edit", override)
        self.wait_field(d, "Resource Path Edit", override)
        self.wait_field(d, save, "true", "enabled")
        self.assertEqual("Save all the layout files to Override Folder",
                         d.widget_info("DesignAid")["saveToolTip"])

        # Shift+S in the updater and the button both write the main window's layout.
        layout = os.path.join(override, "UI", "Layout", "MainWindow.layout")
        self.focus("Tavorin Updater")
        cx, cy = self.centre(d.widget_info(close))
        self.click((cx, cy))
        self.key("1")
        self.click((cx, cy))
        self.readout(d, lambda t: t.startswith("Close Button ["))
        self.key("shift+s")
        self.readout(d, "Saved layout to MainWindow.layout")
        self.assertTrue(os.path.exists(layout))
        os.remove(layout)
        self.click(self.centre(d.widget_info(AID + save)))
        d.wait_until(lambda: os.path.exists(layout), timeout=5)
        self.wait_field(d, "ObjectInfoText", "Saved layout to MainWindow.layout")

        # Clearing the folder disables the button again.
        self.click(self.centre(d.widget_info(AID + "Resource Path Clear Button")))
        self.wait_field(d, save, "false", "enabled")
        self.assertEqual("", self.field(d, "Resource Path Edit"))


def main(argv):
    return design_gui_test.main(argv, DesignAid)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
