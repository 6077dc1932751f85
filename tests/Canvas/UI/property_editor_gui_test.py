#!/usr/bin/env python3
"""The property editor for real: live design on in the gallery under Xvfb (with openbox when
installed), the editor opened with the E key, windows selected with xdotool and their properties
edited through the editor's fields, the colour picker, a combo box and the key-path menu, read
back through the test bridge. Exits 77 (skipped) without a display."""

import os
import sys
import time

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "support"))
import design_aid_gui_test  # noqa: E402
import design_gui_test  # noqa: E402
import gui_test  # noqa: E402

EDITOR = "PropertyEditor|"
PAGE = design_gui_test.PAGE
SWATCH = PAGE + "|Split Panes|Left Pane"


class PropertyEditor(design_aid_gui_test.DesignAid):

    def rows(self, d):
        """The editor's rows as {property label: row index}."""
        count = int(d.widget_info("PropertyEditor")["rows"])
        return {self.field_of(d, "Property Edit Label %d" % i): i for i in range(count)}

    def field_of(self, d, name, key="text"):
        return d.widget_info(EDITOR + name)[key]

    def wait_row(self, d, label, name, expected, key="text"):
        """Waits until the row labelled `label` shows `expected` in its `name` field."""
        last = [None]

        def ready():
            row = self.rows(d).get(label)
            last[0] = None if row is None else self.field_of(d, name % row, key)
            return last[0] == expected
        try:
            d.wait_until(ready, timeout=5)
        except design_gui_test.tvdriver.DriverError:
            pass
        self.assertEqual(expected, last[0], "%s in %s" % (label, self.rows(d)))

    def select(self, d, path):
        """Selects the window at `path` with a click near its top-left corner, off its
        children."""
        self.focus("Gallery")
        info = d.widget_info(path)
        self.click((int(info["screenX"]) + 3, int(info["screenY"]) + 3))
        self.wait_field(d, "Window Name Text", path.split("|")[-1])

    def in_picker(self, d, path, dx=None):
        """A point on the picker's widget at `path`, `dx` from its left or at its centre."""
        info = d.wait_for_widget("Color Picker|" + path, timeout=10)
        self.focus("Color Picker")
        x = int(info["screenX"]) + (int(info["width"]) // 2 if dx is None else dx)
        return x, int(info["screenY"]) + int(info["height"]) // 2

    def colour(self, d):
        return d.widget_info(SWATCH)["color"]

    def test_the_editor_edits_colour_number_enumeration_and_key_path(self):
        self.setting("com.tavorin", "RuntimeDesignEnable", "-bool", "true")
        p, d = self.design_on("tv-gallery", "APP:Gallery", SWATCH, "Gallery")
        self.key("e")
        host = self.window("Property Editor", timeout=10)
        self.assertIsNotNone(host)
        gui_test.xdotool(self.display, "windowmove", "--sync", host, 640, 200)
        # The panel, kept above other windows, would cover the editor's fields.
        gui_test.xdotool(self.display, "windowmove", "--sync", self.window("Design Aid"), 1010, 0)
        self.assertEqual("No windows selected", self.field_of(d, "Selected Window Text"))
        self.assertEqual("true", self.field_of(d, "No Editable Properties Text", "visible"))

        # The swatch: its rows in name order, the colour with its swatch button.
        self.select(d, SWATCH)
        self.wait_field(d, "Window Name Text", "Left Pane")
        self.assertEqual("Left Pane", self.field_of(d, "Selected Window Text"))
        self.assertEqual("", self.field_of(d, "Dynamic Layout Text"))
        self.assertEqual("Parent: Split Panes", self.field_of(d, "Parent Text"))
        rows = self.rows(d)
        labels = sorted(rows, key=rows.get)
        self.assertEqual(labels, sorted(labels))
        self.assertIn("Fill Color (Color)", rows)
        original = self.colour(d)
        self.wait_row(d, "Fill Color (Color)", "Property Edit %d", original[2:].upper())

        # The colour picker previews live; Cancel restores, OK keeps. A slider's left end
        # takes its channel to 0.
        swatch = "Color Swatch %d" % rows["Fill Color (Color)"]
        no_red = original[:2] + "00" + original[4:]
        no_blue = original[:6] + "00"
        for slider, picked, button, kept in (("Red", no_red, "Cancel Button", original),
                                             ("Blue", no_blue, "OK Button", no_blue)):
            self.focus("Property Editor")
            self.click(self.centre(d.widget_info(EDITOR + swatch)))
            self.click(self.in_picker(d, "RGBA Sliders|%s Slider" % slider, 2))
            d.wait_until(lambda: self.colour(d) == picked, timeout=5)
            self.click(self.in_picker(d, button))
            d.wait_until(lambda: self.window("Color Picker", 0) is None, timeout=10)
            d.wait_until(lambda: self.colour(d) == kept, timeout=5)
        self.wait_row(d, "Fill Color (Color)", "Property Edit %d", no_blue[2:].upper())

        # A number typed into its field; a text that is no number is refused and the row stays.
        field = "Property Edit %d" % self.rows(d)["Color (Color)"]
        before = self.field_of(d, field)
        self.type_into_field(d, "Property Editor", EDITOR + field, "not a colour")
        self.wait_row(d, "Color (Color)", "Property Edit %d", before)

        # The enumeration through its combo box: the next item after "None".
        combo = "Property ComboBox %d" % self.rows(d)["Border Style (Border Style)"]
        self.assertEqual("None", self.field_of(d, combo, "caption"))
        self.focus("Property Editor")
        self.click(self.centre(d.widget_info(EDITOR + combo)))
        self.assertIsNotNone(self.window("ComboBox Popup Host Window", timeout=5))
        time.sleep(0.2)
        self.key("Down")
        self.key("Return")
        self.wait_row(d, "Border Style (Border Style)", "Property ComboBox %d", "Outline",
                      "caption")

        # A number on another kind of window: the tool tip target's border type.
        self.select(d, PAGE + "|ToolTip Target")
        field = "Property Edit %d" % self.rows(d)["Border Type (Int)"]
        number = "0" if self.field_of(d, field) != "0" else "1"
        self.type_into_field(d, "Property Editor", EDITOR + field, number)
        self.wait_row(d, "Border Type (Int)", "Property Edit %d", number)
        # Read again from the window after another selection.
        self.select(d, PAGE + "|Check Box")
        self.select(d, PAGE + "|ToolTip Target")
        self.wait_row(d, "Border Type (Int)", "Property Edit %d", number)

        # The check box's key path from the menu of the canvas's keys.
        self.select(d, PAGE + "|Check Box")
        row = self.rows(d)["Controller Key Path (KeyPath)"]
        self.assertEqual("true", self.field_of(d, "KVC Menu Button %d" % row, "visible"))
        self.focus("Property Editor")
        self.click(self.centre(d.widget_info(EDITOR + "KVC Menu Button %d" % row)))
        self.assertIsNotNone(self.window("Popup Menu", timeout=5))
        time.sleep(0.2)
        self.key("s")
        self.wait_row(d, "Controller Key Path (KeyPath)", "Property Edit %d", "Shared Switch")

        # Two windows: the combo of the selection, "--" where they differ.
        self.focus("Gallery")
        self.click(self.centre(d.widget_info(PAGE + "|On Off Button")), ("ctrl",))
        self.wait_field(d, "Window Name Text", "2 windows selected")
        d.wait_until(lambda: self.field_of(d, "Selected Windows ComboBox", "caption")
                     == "All selected windows (2)", timeout=5)
        self.wait_row(d, "Controller Key Path (KeyPath)", "Property Edit %d", "--")

        # E again hides the editor.
        self.focus("Gallery")
        self.key("e")
        d.wait_until(lambda: self.window("Property Editor", 0) is None, timeout=10)


def main(argv):
    return design_gui_test.main(argv, PropertyEditor)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
