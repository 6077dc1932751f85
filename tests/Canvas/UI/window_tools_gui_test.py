#!/usr/bin/env python3
"""The window maker and the window tree for real, on the gallery under Xvfb (with openbox when
installed): windows made through the maker, placed with a click, reparented through the tree,
saved to the override folder and found again after a restart; the tree's and the design's
selections followed both ways. Exits 77 (skipped) without a display."""

import os
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import design_gui_test  # noqa: E402
import gui_test  # noqa: E402

MAKER = "WindowMaker|"
TREE = "WindowTree|"
PANEL = design_gui_test.PAGE + "|Images Panel"
# A representative few of the registered types: a widget with a label, a parameter control and
# a plain window. Every registered type is made through the maker in process.
TYPES = ("CheckBox", "Knob", "Window")


class WindowTools(design_gui_test.Design):
    """The live design test's helpers, with the window tools' session."""

    def tool(self, key, title, y, height):
        """Opens a tool with its key in the gallery and puts it right of the places clicked
        in the gallery."""
        self.focus("Gallery")
        self.key(key)
        window = self.window(title, timeout=10)
        self.assertIsNotNone(window, title)
        gui_test.xdotool(self.display, "windowsize", "--sync", window, 300, height)
        gui_test.xdotool(self.display, "windowmove", "--sync", window, 620, y)
        return window

    def tree_row(self, d, row):
        """The screen point of the tree's visible row `row`."""
        info = d.widget_info(TREE + "TreeList")
        return (int(info["screenX"]) + 60, int(info["screenY"]) + row * 18 + 9)

    def test_windows_are_made_placed_reparented_saved_and_found_again(self):
        override = os.path.join(self.work, "override")
        os.makedirs(os.path.join(override, "UI", "Layout"))
        self.setting("com.tavorin", "DesignAidVisible", "-bool", "false")
        self.setting("com.tavorin", "RuntimeDesignEnable", "-bool", "true")
        self.setting("com.tavorin", "ResourceOverridePath.Gallery", "-string", override)
        p, d = self.start("tv-gallery", "APP:Gallery", PANEL)
        gallery = self.focus("Gallery")
        gui_test.xdotool(self.display, "windowmove", "--sync", gallery, 0, 0)
        self.caps(True)
        self.readout(d, "No windows selected")
        self.tool("m", "Window Maker", 0, 380)
        self.tool("t", "Window Tree", 420, 320)
        self.assertEqual("No parent (select a window to use it as a parent)",
                         d.widget_info(MAKER + "Parent Text")["text"])

        # Design to tree: a click on the panel between its picture and its button selects it in
        # both.
        px, py, pw, ph = self.rect(d, PANEL)
        page = d.widget_info(PANEL)
        free = (int(page["screenX"]) + 168, int(page["screenY"]) + 50)
        self.click(free)
        self.readout(d, "Images Panel [%d,%d %dx%d]" % (px, py, pw, ph))
        d.wait_until(lambda: d.widget_info(TREE + "TreeList")["selectedItem"] == "Images Panel",
                     timeout=5)
        # The search leaves the panel's lineage: the main window, the page and the panel. It
        # ignores case, which caps lock swaps as it types.
        self.type_into_field(d, "Window Tree", TREE + "Search Edit", "Images Panel")
        d.wait_until(lambda: d.widget_info(TREE + "TreeList")["visibleRows"] == "3", timeout=5)

        names = []
        for index, kind in enumerate(TYPES):
            # Digits only: caps lock, which keeps live design on, swaps the case of letters.
            name = "%d" % (7001 + index)
            names.append(name)
            # No parent: the new window is a top window of the frame, where the click falls.
            self.focus("Gallery")
            self.key("ctrl+d")
            self.readout(d, "No windows selected")
            item = d.widget_info(MAKER + "Window Scroll View|Example Item " + kind)
            # The list shows a dozen types: the wheel brings the others in.
            view = self.centre(d.widget_info(MAKER + "Window Scroll View"))
            for _ in range(20):
                if item["visible"] == "true":
                    break
                gui_test.xdotool(self.display, "mousemove", view[0], view[1], "click", 5)
                item = d.widget_info(MAKER + "Window Scroll View|Example Item " + kind)
            self.click(self.centre(item))
            d.wait_until(lambda: d.widget_info(MAKER + "Windows ComboBox")["selectedItem"] == kind,
                         timeout=5)
            self.type_into_field(d, "Window Maker", MAKER + "Window Name Edit", name)
            d.wait_until(lambda: d.widget_info(MAKER + "Create Button")["enabled"] == "true",
                         timeout=5)
            self.click(self.centre(d.widget_info(MAKER + "Create Button")))
            self.assertEqual("Click to place the new %s '%s'" % (kind, name),
                             d.widget_info(MAKER + "Parent Text")["text"])
            page = d.widget_info(design_gui_test.PAGE)
            self.focus("Gallery")
            self.click((int(page["screenX"]) + 40 + 120 * index, int(page["screenY"]) + 10))
            self.readout(d, lambda t, n=name: t.startswith(n + " ["))
            self.assertEqual("", d.widget_info(MAKER + "Window Name Edit")["text"])
            # The tree has a row for it, selected as in the design.
            d.wait_until(lambda n=name: d.widget_info(TREE + "TreeList")["selectedItem"] == n,
                         timeout=5)

            # Reparent it: "R", then the panel's row in the tree, the third of the search.
            self.focus("Gallery")
            self.key("r")
            self.readout(d, lambda t: t.startswith("Select a window to use as the new parent"))
            self.click(self.tree_row(d, 2))
            self.readout(d, "Reparented " + name)
            d.wait_for_widget(PANEL + "|" + name, timeout=5)

        # Tree to design: the selection follows a click on a row.
        self.click(self.tree_row(d, 1))
        self.readout(d, lambda t: t.startswith("Gallery Page ["))
        # Saved from the panel, chosen in the tree: the new windows now cover its free spot.
        self.click(self.tree_row(d, 2))
        self.readout(d, lambda t: t.startswith("Images Panel ["))
        self.focus("Gallery")
        self.key("shift+s")
        self.readout(d, "Saved layout to GalleryImages.layout")
        with open(os.path.join(override, "UI", "Layout", "GalleryImages.layout")) as f:
            saved = f.read()
        for kind, name in zip(TYPES, names):
            self.assertIn('Type="%s"' % kind, saved)
            self.assertIn('Name="%s"' % name, saved)

        # A fresh start reads the panel from the override folder, new windows and all.
        self.caps(False)
        gui_test.request_close(self.display, gallery)
        self.assertIsNotNone(p.wait(15))
        p, d = self.start("tv-gallery", "APP:Gallery", PANEL)
        for name in names:
            d.wait_for_widget(PANEL + "|" + name, timeout=10)


def main(argv):
    return design_gui_test.main(argv, WindowTools)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
