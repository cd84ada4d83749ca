#!/usr/bin/python3
"""The panel stands beside its item at every edge of the screen, with and without a compositor."""

import sys

import harness
from harness import check, check_equal
from selvanedriver import Selvane
from virtualdesktop import Area, Desktop, Failure, TRAY_HEIGHT

EDGE_MARGIN = 8
ITEM_GAP = 6


def free_area(desktop):
    """What the tray along its edge leaves of the screen."""
    width, height = desktop.size
    return {"top": Area(0, TRAY_HEIGHT, width, height - TRAY_HEIGHT), "bottom": Area(0, 0, width, height - TRAY_HEIGHT),
            "left": Area(TRAY_HEIGHT, 0, width - TRAY_HEIGHT, height),
            "right": Area(0, 0, width - TRAY_HEIGHT, height)}[desktop.edge]


def check_edge(program, tray, edge, compositor):
    with Desktop(tray=tray, edge=edge, compositor=compositor) as desktop:
        selvane = Selvane(desktop, program)
        selvane.start()
        selvane.open_panel()
        card, free = selvane.card, free_area(desktop)
        where = f"{tray}, {edge}, {'with' if compositor else 'without'} a compositor: {card}"
        right = free.x + free.width - card.width - EDGE_MARGIN
        check_equal(card.x, free.x + EDGE_MARGIN if edge == "left" else right, f"left edge; {where}")
        below = free.y + free.height - (card.y + card.height)
        if edge == "top":
            check_equal(card.y, TRAY_HEIGHT + ITEM_GAP, f"upper edge; {where}")
        elif edge == "bottom":
            check_equal(below, ITEM_GAP, f"room below; {where}")
        else:
            # Trays at the sides have their items at the lower end. The panel is told of the item itself or of the
            # pointer in its middle.
            check(selvane.dial.y - ITEM_GAP - 4 <= card.y + card.height <= selvane.dial.middle[1] - ITEM_GAP + 1,
                  f"above the item at {selvane.dial}; {where}")
        check_equal(selvane.quit(), 0, "exit status")


def main(program, trays):
    try:
        for tray in trays:
            for edge in ("top", "bottom", "left", "right"):
                for compositor in (False, True):
                    check_edge(program, tray, edge, compositor)
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
