#!/usr/bin/env python3
"""Writes the vector sources of the skin's images into white/, one SVG each.

Every family of images is one function from a state to an SVG body, so that a state looks the same
wherever it occurs. ../render.sh turns the SVGs into the PNGs that the program carries.
"""
from pathlib import Path

BORDER, ACCENT, TEXT = "#6F9CCF", "#004EA1", "#024184"
PANEL, PALE, WHITE = "#BBD4EE", "#E0EEFF", "#FFFFFF"
BUTTON, HOVER = "#78AADC", "#64A0DC"
GREEN, AMBER, RED = "#3C9D5A", "#E9A125", "#CF3F45"

STATES = ("", "Hover", "Pressed")


def stroke(colour, width):
    ends = 'stroke-linecap="round" stroke-linejoin="round"'
    return f'fill="none" stroke="{colour}" stroke-width="{width}" {ends}'


def path(data, attributes):
    return f'<path d="{data}" {attributes}/>'


# --- arrows ---------------------------------------------------------------------------------------------
def turned(body, degrees, size=12):
    return f'<g transform="rotate({degrees} {size / 2:g} {size / 2:g})">{body}</g>' if degrees else body


def triangle(colour, degrees):
    """A filled triangle that points down before it is turned."""
    shape = path("M2.5 4.2h7L6 8.6z", f'fill="{colour}" stroke="{colour}" stroke-linejoin="round"')
    return turned(shape, degrees)


def chevron(colour, degrees):
    """An open angle that points down before it is turned."""
    return turned(path("M2.2 4.2 6 8l3.8-3.8", stroke(colour, 1.8)), degrees)


def spin_arrow(degrees):
    return turned(path("M2.2 3.7h5.6L5 6.9z", f'fill="{ACCENT}" stroke="{ACCENT}" stroke-linejoin="round"'),
                  degrees, 10)


# --- check boxes and radio buttons ----------------------------------------------------------------------
# state: (fill, outline, mark)
EMPTY = {"": (WHITE, BORDER, None), "Hover": (PALE, ACCENT, None), "Pressed": (PANEL, ACCENT, None)}
FILLED = {"": (BUTTON, BUTTON, WHITE), "Hover": (HOVER, ACCENT, WHITE), "Pressed": (ACCENT, ACCENT, WHITE)}


def check_box(state, mark):
    fill, line, ink = (FILLED if mark else EMPTY)[state]
    box = f'<rect x="1.5" y="1.5" width="13" height="13" rx="2.5" fill="{fill}" stroke="{line}"/>'
    marks = {"Checked": "M4.3 8.2 7 10.9l4.9-5.6", "Indeterminate": "M4.8 8h6.4"}
    return box + (path(marks[mark], stroke(ink, 2)) if mark else "")


def radio_button(state, checked):
    fill, line, ink = (FILLED if checked else EMPTY)[state]
    ring = f'<circle cx="8" cy="8" r="6.5" fill="{fill}" stroke="{line}"/>'
    return ring + (f'<circle cx="8" cy="8" r="2.8" fill="{ink}"/>' if checked else "")


# --- buttons with a plate: clear, hover blue, accent -----------------------------------------------------
PLATE = {"": ("none", TEXT), "Hover": (HOVER, WHITE), "Pressed": (ACCENT, WHITE)}


def plated(state, size, glyph):
    """A glyph (a function from its ink to a body) on the plate of its state."""
    plate, ink = PLATE[state]
    body = glyph(ink)
    if plate != "none":
        body = f'<rect x="0" y="0" width="{size}" height="{size}" rx="3" fill="{plate}"/>' + body
    return body


WINDOW_GLYPHS = {
    "close": lambda ink: path("M6 6l8 8M14 6l-8 8", stroke(ink, 1.8)),
    "maximize": lambda ink: path("M5.5 5.5h9v9h-9z", stroke(ink, 1.4)) + path("M5.5 6.6h9", stroke(ink, 2)),
    "minimize": lambda ink: path("M5.5 13.5h9", stroke(ink, 2)),
    "restore": lambda ink: path("M7.5 7V4.5h8v8H13", stroke(ink, 1.4))
    + path("M4.5 7.5h8v8h-8z", stroke(ink, 1.4)),
}


def folder(ink):
    return (path("M3 16.5V4.5h5l1.6 2.2H15V9", stroke(ink, 1.5)) +
            path("M3 16.5 5.6 9.2h12L15 16.5z", stroke(ink, 1.5)))


def feedback(ink):
    bubble = path("M4 5.5h16v11h-8.5L7.5 20v-3.5H4z", stroke(ink, 1.7))
    return bubble + path("M8 9.3h8M8 12.7h5", stroke(ink, 1.7))


def skin(ink):
    shirt = "M8.6 4.5 3.5 7.6l2 4 2-1v9h9v-9l2 1 2-4-5.1-3.1a3.6 3.6 0 0 1-6.8 0z"
    return path(shirt, stroke(ink, 1.7))


# --- the small round button that closes a tab ------------------------------------------------------------
DISC = {"": (WHITE, ACCENT), "Hover": (PALE, RED), "Pressed": (RED, WHITE)}


def delete(state):
    disc, ink = DISC[state]
    cross = path("M4.9 4.9l4.2 4.2M9.1 4.9 4.9 9.1", stroke(ink, 1.5))
    return f'<circle cx="7" cy="7" r="6" fill="{disc}"/>' + cross


# --- message icons ---------------------------------------------------------------------------------------
def message(colour, mark, shape=None):
    shape = shape or '<circle cx="24" cy="24" r="20" {}/>'
    plate = shape.format(f'fill="{colour}"')
    return plate + path(mark, stroke(WHITE, 4.4))


WARNING_SHAPE = '<path d="M24 7.5 43 40H5z" {0} stroke="#E9A125" stroke-width="5" stroke-linejoin="round"/>'
QUESTION_MARK = "M17.8 19.2a6.3 6.3 0 1 1 9.6 5.3c-2.2 1.3-3.4 2.4-3.4 4.9M24 36.2v.1"

MESSAGES = {
    "error": (RED, "M17 17l14 14M31 17 17 31"),
    "information": (HOVER, "M24 14v.1M24 22v12.5"),
    "question": (ACCENT, QUESTION_MARK),
    "success": (GREEN, "M14.6 24.6l6.6 6.8 12.2-13.6"),
    "warning": (AMBER, "M24 18.5v10.2M24 36v.1", WARNING_SHAPE),
}


# --- signs ------------------------------------------------------------------------------------------------
def nscc():
    """The product's sign: a warehouse with two crates before it."""
    house = path("M4 13.5 16 5l12 8.5V28H4z", f'fill="{BUTTON}" stroke="{ACCENT}" stroke-width="1.8" '
                 'stroke-linejoin="round"')
    gate = f'<rect x="8" y="15" width="16" height="13" fill="{WHITE}"/>'
    crates = "".join(f'<rect x="{x}" y="{y}" width="6" height="5" fill="{ACCENT}"/>'
                     for x, y in ((9.4, 22), (16.6, 22), (13, 16)))
    return house + gate + crates


def scan():
    corners = "M4 8.5V4h4.5M15.5 4H20v4.5M20 15.5V20h-4.5M8.5 20H4v-4.5"
    bars = "M8.2 8.5v7M11 8.5v7M13.6 8.5v7M15.9 8.5v7"
    return (path(corners, stroke(TEXT, 1.7)) + path(bars, stroke(BORDER, 1.5)) +
            path("M3.5 12h17", stroke(ACCENT, 1.7)))


def transfer():
    return (path("M4 8.5h14M14.5 5 18 8.5 14.5 12", stroke(ACCENT, 1.8)) +
            path("M20 15.5H6M9.5 12 6 15.5 9.5 19", stroke(BORDER, 1.8)))


# --- progress bar: both are stretched between their rounded ends -----------------------------------------
def progress_bar():
    return f'<rect x=".5" y=".5" width="31" height="15" rx="4" fill="{PALE}" stroke="{BORDER}"/>'


def progress_bar_chunk():
    stops = "".join(f'<stop offset="{offset}" stop-color="{colour}"/>'
                    for offset, colour in ((0, "#8FBBE8"), (0.5, BUTTON), (1, HOVER)))
    shade = f'<linearGradient id="shade" x1="0" y1="0" x2="0" y2="1">{stops}</linearGradient>'
    return f'<defs>{shade}</defs><rect x="0" y="0" width="16" height="12" rx="3" fill="url(#shade)"/>'


def images():
    """Every image by name: (width, height, body)."""
    made = {}
    for name, degrees in (("Bottom", 0), ("Left", 90), ("Top", 180), ("Right", 270)):
        made["arrow" + name] = (12, 12, triangle(ACCENT, degrees))
    for name, degrees in (("left", 90), ("right", 270)):
        made[name] = (12, 12, chevron(ACCENT, degrees))
    for name, degrees in (("bottomArrow", 0), ("topArrow", 180)):
        made[name] = (12, 12, chevron(BORDER, degrees))
        made[name + "Hover"] = (12, 12, chevron(ACCENT, degrees))
    made["upButton"] = (10, 10, spin_arrow(180))
    made["downButton"] = (10, 10, spin_arrow(0))
    for state in STATES:
        for mark in ("", "Checked", "Indeterminate"):
            made["checkBox" + mark + state] = (16, 16, check_box(state, mark))
        for mark in ("", "Checked"):
            made["radioButton" + mark + state] = (16, 16, radio_button(state, mark))
        for name, glyph in WINDOW_GLYPHS.items():
            made[name + state] = (20, 20, plated(state, 20, glyph))
        made["open" + state] = (20, 20, plated(state, 20, folder))
        made["feedback" + state] = (24, 24, plated(state, 24, feedback))
        made["skin" + state] = (24, 24, plated(state, 24, skin))
        made["delete" + state] = (14, 14, delete(state))
    for name, facts in MESSAGES.items():
        made[name] = (48, 48, message(*facts))
    made["nscc"] = (32, 32, nscc())
    made["scan"] = (24, 24, scan())
    made["transfer"] = (24, 24, transfer())
    made["progressBar"] = (32, 16, progress_bar())
    made["progressBarChunk"] = (16, 12, progress_bar_chunk())
    return made


def main():
    folder_of_sources = Path(__file__).parent / "white"
    folder_of_sources.mkdir(exist_ok=True)
    for name, (width, height, body) in images().items():
        text = (f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
                f'viewBox="0 0 {width} {height}">{body}</svg>\n')
        (folder_of_sources / f"{name}.svg").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
