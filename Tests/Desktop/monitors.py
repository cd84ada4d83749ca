#!/usr/bin/python3
"""With two monitors of different scale the panel hangs at its item, on the item's monitor and in its size."""

import sys

import harness
from harness import check, check_equal
from monitordesktop import MonitorDesktop, ORDINARY, SHARP
from selvanedriver import CARD_WIDTH, Selvane
from virtualdesktop import Area, Failure, TRAY_HEIGHT, changed_area, wait

EDGE_MARGIN = 8
ITEM_GAP = 6
SHADOW_MARGIN = 32


def expected_card(desktop, card):
    """Where a card of that height belongs: below or above the tray, whose items are at its right end."""
    area, scale = desktop.monitor.area, desktop.monitor.scale
    width = CARD_WIDTH * scale
    distance = (TRAY_HEIGHT + ITEM_GAP) * scale
    y = area.y + distance if desktop.edge == "top" else area.y + area.height - distance - card.height
    return Area(area.x + area.width - EDGE_MARGIN * scale - width, y, width, card.height)


def check_shadow(desktop, selvane):
    """Only with a compositor the window reaches beyond the card, and shows what lies behind it there."""
    window, card = selvane.panel, selvane.card
    margin = SHADOW_MARGIN * desktop.monitor.scale if desktop.compositor else 0
    check_equal((card.x - window.x, card.y - window.y), (margin, margin), "the room for the shadow")
    if desktop.compositor:
        row = desktop.picture(Area(window.x, card.middle[1], margin, 1)).convert("L")
        lights = [row.getpixel((x, 0)) for x in range(margin)]
        check(lights[0] > lights[-1] > 0, f"the shadow grows towards the card: {lights[0]} to {lights[-1]}")


def check_panel(desktop, selvane):
    """The height of the panel, in units of windows."""
    selvane.open_panel()
    card, scale = selvane.card, desktop.monitor.scale
    reach = card.x - EDGE_MARGIN * scale, card.x + card.width + EDGE_MARGIN * scale
    check(reach[0] <= selvane.dial.middle[0] <= reach[1], f"the panel {card} hangs at the dial {selvane.dial}")
    check_equal(card, expected_card(desktop, card), "its place")
    check_equal(card.height % scale, 0, "it has whole units")
    check_shadow(desktop, selvane)
    desktop.key("Escape")
    selvane.wait_for_no_panel()
    return card.height // scale


def check_tooltip(desktop, selvane):
    """The words beside the pointer; the tray that embeds windows leaves them to the program."""
    area, scale = desktop.monitor.area, desktop.monitor.scale
    desktop.move(area.x + 10, area.y + area.height // 2)
    bare = desktop.settled_picture()
    desktop.move(*selvane.dial.middle)
    shown = wait("the tooltip", lambda: changed_area(bare, desktop.picture()))
    check(area.x <= shown.x and shown.x + shown.width <= area.x + area.width and area.y <= shown.y and
          shown.y + shown.height <= area.y + area.height, f"the tooltip {shown} lies on the monitor")
    check(16 * scale <= shown.height <= 26 * scale, "it has the monitor's size")
    desktop.move(area.x + 10, area.y + area.height // 2)
    wait("the tooltip to go", lambda: not changed_area(bare, desktop.picture()))


def test(program, tray):
    heights = set()
    for monitor in (ORDINARY, SHARP):
        for edge in ("top", "bottom"):
            # Each monitor with a compositor and without one.
            compositor = (monitor == SHARP) == (edge == "top")
            with MonitorDesktop(monitor, tray=tray, edge=edge, compositor=compositor) as desktop:
                print(f"{tray} at the {edge} of {monitor.output}, compositor: {compositor}", flush=True)
                selvane = Selvane(desktop, program)
                selvane.start()
                if tray == "xembed":
                    check_tooltip(desktop, selvane)
                heights.add(check_panel(desktop, selvane))
                selvane.open_panel()
                check_equal(selvane.quit(), 0, "exit status")
    check_equal(len(heights), 1, f"heights in units of windows: {heights}")


def main(program, tray):
    try:
        test(program, tray)
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
