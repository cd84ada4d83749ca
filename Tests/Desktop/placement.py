#!/usr/bin/python3
"""The panel stands beside its item at an edge of the screen, with and without a compositor, and where everything is
shown in double size."""

import sys

import harness
from harness import check, check_equal
from selvanedriver import Selvane
from virtualdesktop import Area, Desktop, Failure, TRAY_HEIGHT

EDGE_MARGIN = 8
ITEM_GAP = 6


def free_area(desktop):
    """What the tray along its edge leaves of the screen."""
    width, height = (side * desktop.scale for side in desktop.size)
    depth = TRAY_HEIGHT * desktop.scale
    return {"top": Area(0, depth, width, height - depth), "bottom": Area(0, 0, width, height - depth),
            "left": Area(depth, 0, width - depth, height), "right": Area(0, 0, width - depth, height)}[desktop.edge]


def check_edge(program, tray, edge, *, compositor=False, scale=1):
    with Desktop(tray=tray, edge=edge, compositor=compositor, scale=scale) as desktop:
        selvane = Selvane(desktop, program)
        selvane.start()
        selvane.open_panel()
        card, free = selvane.card, free_area(desktop)
        where = f"{tray}, {edge}, {'with' if compositor else 'without'} a compositor, scale {scale}: {card}"
        margin, gap = EDGE_MARGIN * scale, ITEM_GAP * scale
        right = free.x + free.width - card.width - margin
        check_equal(card.x, free.x + margin if edge == "left" else right, f"left edge; {where}")
        below = free.y + free.height - (card.y + card.height)
        if edge == "top":
            check_equal(card.y, free.y + gap, f"upper edge; {where}")
        elif edge == "bottom":
            check_equal(below, gap, f"room below; {where}")
        else:
            # Trays at the sides have their items at the lower end. The panel is told of the item itself or of the
            # pointer in its middle.
            check(selvane.dial.y - gap - 4 * scale <= card.y + card.height <= selvane.dial.middle[1] - gap + scale,
                  f"above the item at {selvane.dial}; {where}")
        check_equal(selvane.quit(), 0, "exit status")


def main(program, tray, edge):
    try:
        for compositor in (False, True):
            check_edge(program, tray, edge, compositor=compositor)
        check_edge(program, tray, edge, scale=2)
    except Failure as failure:
        print(f"FAILED: {failure}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
