# SPDX-License-Identifier: MIT
"""Icons: documents whose layers switch with a state, and that are loaded again when their files change."""

import warnings
import weakref

from . import _core, _documents

_icons = weakref.WeakValueDictionary()
_UNSET = 0xFFFFFFFF


class Icon(_documents.Document):
    """A vector icon: a document whose layers are shown by state or by hand.

        icon = orvan_svg.Icon.open("lamp.svg")
        icon.state = 2
        icon.on_reload = lambda icon, is_loaded: redraw()
        icon.live_reload = True
        asyncio.get_running_loop().call_soon(orvan_svg.follow_changes)

    A followed file that changes is loaded inside of `dispatch_changes`, with state and layers as they were set.
    """

    _is_icon = True

    #: Called with the icon, and whether its changed file could be loaded; what cannot be loaded leaves it as it was.
    on_reload = None

    def __init__(self, **options):
        super().__init__(**options)
        self._follows = False
        _icons[_core._icon_address(self)] = self

    @property
    def state(self):
        """The number of the state, 0 to 3 for "State:EnabledActivatedHighlight", "…NoHighlight",
        "State:EnabledDeactivatedHighlight", "…NoHighlight"; None until it is set. A missing layer is a warning."""
        state = _core._icon_state(self)
        return None if state == _UNSET else state

    @state.setter
    def state(self, number):
        for text in _core._set_icon_state(self, number):
            warnings.warn(text, stacklevel=2)

    def show(self, layer, shown=True):
        """Shows or hides the layer with this id. KeyError when there is none."""
        _core._set_icon_layer(self, layer, shown)

    def toggle(self, layer):
        """Hides the layer with this id when it is shown, and the other way around. KeyError when there is none."""
        _core._toggle_icon_layer(self, layer)

    @property
    def live_reload(self):
        """Whether the icon's file is followed. A file that cannot be watched is a warning."""
        return self._follows

    @live_reload.setter
    def live_reload(self, is_enabled):
        self._follows = bool(is_enabled)
        for text in _core._set_live_reload(self, self._follows):
            warnings.warn(text, stacklevel=2)


def dispatch_changes():
    """Loads the icons whose files have changed, and calls their `on_reload`. Never waits; a burst of changes is used
    when it has been quiet for a moment. Returns how many files changed."""
    changed = _core._dispatch_changes()
    for address, is_loaded in changed:
        icon = _icons.get(address)
        if icon is not None and icon.on_reload is not None:
            icon.on_reload(icon, is_loaded)
    return len(changed)


def follow_changes(loop=None):
    """Has an asyncio loop, the running one unless given, dispatch changes as they come. The result is a function that
    ends it. One loop of a process at a time."""
    if loop is None:
        import asyncio  # Not above: it takes longer than all else of the package.

        loop = asyncio.get_running_loop()
    descriptor = _core._changes_descriptor()
    timer = None

    def dispatch():
        nonlocal timer
        if timer is not None:
            timer.cancel()
        dispatch_changes()
        timeout = _core._changes_timeout()
        timer = loop.call_later(timeout / 1000, dispatch) if timeout >= 0 else None

    def stop():
        loop.remove_reader(descriptor)
        if timer is not None:
            timer.cancel()

    loop.add_reader(descriptor, dispatch)
    dispatch()
    return stop
