"""Another program, as far as the panel has to do with it."""

import Xlib.protocol.event
import Xlib.X

from virtualdesktop import wait


class OtherWindow:
    """A window of another program; it has the keyboard at first."""

    def __init__(self, desktop, title):
        self._display = desktop.connect()
        self._root = self._display.screen().root
        self._active = self._display.intern_atom("_NET_ACTIVE_WINDOW")
        self._window = self._root.create_window(0, 0, 300, 200, 0, self._display.screen().root_depth)
        self._window.set_wm_name(title)
        self._window.map()
        wait(f"the keyboard to be in {title!r}", lambda: self.is_active() and desktop.has_focus(title))

    def is_active(self):
        active = self._root.get_full_property(self._active, Xlib.X.AnyPropertyType)
        return bool(active) and active.value[0] == self._window.id

    def activate(self):
        """Brings it to the front as a task bar does."""
        request = Xlib.protocol.event.ClientMessage(window=self._window, client_type=self._active,
                                                    data=(32, [2, Xlib.X.CurrentTime, 0, 0, 0]))
        self._root.send_event(request, Xlib.X.SubstructureRedirectMask | Xlib.X.SubstructureNotifyMask)
        self._display.sync()

    def close(self):
        self._display.close()
