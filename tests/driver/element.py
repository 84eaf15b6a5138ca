"""Reading the accessibility tree."""

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

DEPTH = 40


class Element:
    """A widget or a part of a page, as assistive technology finds it. Every question is asked anew; one about something
    that has gone raises GLib.Error, which a wait takes for "not yet"."""

    def __init__(self, accessible):
        self._accessible = accessible

    @staticmethod
    def application(process_id):
        """The program with this process id; None while it is not on the bus."""
        desktop = Atspi.get_desktop(0)
        for index in range(desktop.get_child_count()):
            try:
                child = desktop.get_child_at_index(index)
                if child and child.get_process_id() == process_id:
                    child.set_cache_mask(Atspi.Cache.NONE)
                    return Element(child)
            except GLib.Error:
                pass  # another program that is leaving
        return None

    @property
    def name(self):
        # What wraps another widget has its own name and that one's: "OK OK".
        name = self._accessible.get_name() or ""
        half = len(name) // 2
        return name[:half] if len(name) % 2 and name[half] == " " and name[:half] == name[half + 1:] else name

    @property
    def description(self):
        return self._accessible.get_description() or ""

    @property
    def role(self):
        return self._accessible.get_role_name()

    @property
    def text(self):
        """What it shows, where it shows text of its own."""
        texts = self._accessible.get_text_iface()
        return Atspi.Text.get_text(texts, 0, -1) if texts else ""

    def has(self, *states):
        """Whether it is in all these states, named as in Atspi.StateType."""
        held = self._accessible.get_state_set()
        return all(held.contains(getattr(Atspi.StateType, state)) for state in states)

    def children(self):
        for index in range(self._accessible.get_child_count()):
            if child := self._accessible.get_child_at_index(index):
                yield Element(child)

    def walk(self, depth=0):
        """This and everything below it, without what is hidden."""
        if depth > 1 and not self.has("VISIBLE"):
            return
        yield self
        if depth < DEPTH:
            for child in self.children():
                yield from child.walk(depth + 1)

    def find(self, name=None, role=None, description=None, *states):
        """The first below this of this name, role, description and states; None when there is none."""
        for element in self.walk():
            if ((name is None or element.name == name) and (role is None or element.role == role) and
                    (description is None or element.description == description) and (not states or element.has(*states))):
                return element
        return None

    def button(self, name):
        """What bears this name and can be pressed now; None when there is nothing of the kind."""
        for element in self.walk():
            if element.name == name and element._accessible.get_n_actions() > 0 and element.role != "label":
                if element.has("SENSITIVE"):
                    return element
        return None

    def press(self):
        self._accessible.do_action(0)

    def says(self, text):
        """Whether it or something below it shows a text with this part."""
        return any(text in element.name or text in element.text for element in self.walk())

    def outline(self):
        """The tree as lines of text, for the reader of a failure."""
        lines = []

        def draw(element, depth):
            try:
                states = [state for state in ("ACTIVE", "FOCUSED", "CHECKED", "PRESSED") if element.has(state)]
                off = [] if element.has("SENSITIVE") or depth < 2 else ["disabled"]
                lines.append(f"{'  ' * depth}{element.role} {element.name!r} {' '.join(states + off).lower()}".rstrip())
                for child in element.children():
                    draw(child, depth + 1)
            except GLib.Error:
                pass

        draw(self, 0)
        return "\n".join(lines)
