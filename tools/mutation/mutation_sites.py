"""Where a source can be changed so that a good test should notice."""
from dataclasses import dataclass
import hashlib
import re

import clang.cindex as clang

OPERATORS = {
    '<': '<=', '<=': '<', '>': '>=', '>=': '>', '==': '!=', '!=': '==', '&&': '||', '||': '&&',
    '+': '-', '-': '+', '*': '/', '/': '*', '%': '*', '<<': '>>', '>>': '<<', '&': '|', '|': '&',
    '^': '&', '+=': '-=', '-=': '+=', '*=': '/=', '|=': '&=', '&=': '|=', '^=': '|=',
    '<<=': '>>=', '>>=': '<<=',
}
STEPS = {'++': '--', '--': '++'}
CALLS_AND_ASSIGNMENTS = (clang.CursorKind.CALL_EXPR, clang.CursorKind.BINARY_OPERATOR,
                         clang.CursorKind.COMPOUND_ASSIGNMENT_OPERATOR)
# Clang keeps the clean-up of temporaries around a statement as an expression without a kind.
WRAPPERS = (clang.CursorKind.UNEXPOSED_EXPR,)


@dataclass(frozen=True)
class Edit:
    """Replaces the bytes from start to end."""
    start: int
    end: int
    text: str


@dataclass
class Site:
    """One possible mutant. The edits put `{mutant}` where its number belongs."""
    path: str
    kind: str
    start: int
    end: int
    first_line: int
    last_line: int
    description: str
    edits: list
    key: str = ''

    def overlaps(self, other):
        return self.path == other.path and self.start < other.end and other.start < self.end


class SourceSites:
    """The sites of one source, by the compiler's own view of it."""

    def __init__(self, root, path, arguments):
        self.root, self.path = root, path
        self.text = (root / path).read_bytes()
        self.sites = []
        unit = clang.Index.create().parse(str(root / path), args=arguments)
        for cursor in unit.cursor.get_children():
            if cursor.location.file and cursor.location.file.name == str(root / path):
                self._visit(cursor, None)
        self._name_sites()

    def _visit(self, cursor, parent):
        self._operator(cursor)
        self._negation(cursor)
        self._step(cursor)
        self._truth(cursor)
        self._number(cursor)
        self._constant(cursor)
        if parent is not None and parent.kind == clang.CursorKind.COMPOUND_STMT:
            self._statement(cursor)
        for child in cursor.get_children():
            self._visit(child, cursor)

    def _operator(self, cursor):
        operands = list(cursor.get_children())
        overloaded = (cursor.kind == clang.CursorKind.CALL_EXPR and len(operands) == 3
                      and cursor.spelling.startswith('operator'))
        if overloaded:
            operands = [operands[0], operands[2]]
        elif cursor.kind not in CALLS_AND_ASSIGNMENTS[1:]:
            return
        if len(operands) != 2:
            return
        left, right = operands
        between = self._between(left, right)
        match = re.fullmatch(rb'\s*([-+*/%<>=!&|^]+)\s*', between)
        word = match.group(1).decode() if match else ''
        if word not in OPERATORS:
            return
        other = OPERATORS[word]
        # Of the same type, else the conversion to a common one would change what sleeps, too.
        mutated = (b'static_cast<decltype(' + self._of(cursor) + b')>(' + self._of(left) + b' '
                   + other.encode() + b' ' + self._of(right) + b')')
        self._replace_expression(cursor, 'operator', f'{word} -> {other}', mutated)

    def _negation(self, cursor):
        text = self._of(cursor)
        if cursor.kind == clang.CursorKind.UNARY_OPERATOR and text.startswith(b'!'):
            self._replace_expression(cursor, 'operator', '! left out',
                                     b'static_cast<bool>(' + text[1:] + b')')

    def _step(self, cursor):
        text = self._of(cursor)
        if cursor.kind != clang.CursorKind.UNARY_OPERATOR or text[:2].decode() not in STEPS:
            return
        word = text[:2].decode()
        self._replace_expression(cursor, 'operator', f'{word} -> {STEPS[word]}',
                                 STEPS[word].encode() + text[2:])

    def _truth(self, cursor):
        text = self._of(cursor)
        if cursor.kind == clang.CursorKind.CXX_BOOL_LITERAL_EXPR and text in (b'true', b'false'):
            other = b'false' if text == b'true' else b'true'
            self._replace_expression(cursor, 'constant', f'{text.decode()} flipped', other)

    def _number(self, cursor):
        text = self._of(cursor)
        if cursor.kind == clang.CursorKind.INTEGER_LITERAL and re.match(rb'\d', text):
            self._replace_expression(cursor, 'constant', f'{text.decode()} + 1', text + b' + 1')

    def _constant(self, cursor):
        """A constexpr number becomes one that is computed at start."""
        if cursor.kind != clang.CursorKind.VAR_DECL:
            return
        match = re.fullmatch(rb'constexpr (.*[=({]\s*)(\d[\w.\']*)(\s*[)}]?)', self._of(cursor), re.S)
        if not match:
            return
        start, number = cursor.extent.start.offset, match.group(2)
        at = start + match.start(2)
        self._add(cursor, 'constant', f'{number.decode()} + 1', [
            Edit(start, start + len(b'constexpr'), 'const'),
            Edit(at, at + len(number),
                 f'(::tarvio_mutation::isActive({{mutant}}) ? {number.decode()} + 1 '
                 f': {number.decode()})')])

    def _statement(self, cursor):
        inner = cursor
        while inner.kind in WRAPPERS and len(list(inner.get_children())) == 1:
            inner = next(inner.get_children())
        if inner.kind not in CALLS_AND_ASSIGNMENTS:
            return
        start, end = self._extent(cursor)
        if not re.match(rb'\s*;', self.text[end:]):
            return
        self._add(cursor, 'statement', 'left out', [
            Edit(start, start, 'if (!::tarvio_mutation::isActive({mutant})) ')])

    def _replace_expression(self, cursor, kind, description, mutated):
        start, end = self._extent(cursor)
        if b'//' in mutated or cursor.location.file is None:
            return
        flat = mutated.replace(b'\n', b' ').decode()
        opening = f'(::tarvio_mutation::isActive({{mutant}}) ? ({_escaped(flat)}) : ('
        self._add(cursor, kind, description, [Edit(start, start, opening), Edit(end, end, '))')])

    def _add(self, cursor, kind, description, edits):
        start, end = self._extent(cursor)
        if start >= end or self._is_in_macro(cursor):
            return
        self.sites.append(Site(self.path, kind, start, end, cursor.extent.start.line,
                               cursor.extent.end.line, description, edits))

    def _is_in_macro(self, cursor):
        # A use of a macro spells the macro's name where the expression should begin.
        return bool(re.match(rb'[A-Z][A-Z0-9_]{3,}\(', self._of(cursor)))

    def _extent(self, cursor):
        return cursor.extent.start.offset, cursor.extent.end.offset

    def _of(self, cursor):
        start, end = self._extent(cursor)
        return self.text[start:end]

    def _between(self, left, right):
        return self.text[left.extent.end.offset:right.extent.start.offset]

    def _name_sites(self):
        """Keys that stay the same while other lines change."""
        counts, lines = {}, self.text.decode().splitlines()
        for site in sorted(self.sites, key=lambda each: each.start):
            line = ' '.join(lines[site.first_line - 1].split())
            key = f'{site.path} | {line} | {site.description}'
            counts[key] = counts.get(key, 0) + 1
            site.key = key if counts[key] == 1 else f'{key} | {counts[key]}'


def _escaped(text):
    return text.replace('{', '{{').replace('}', '}}')


def order_of(site):
    """An order like a dice's that only depends on the site itself."""
    return hashlib.sha256(site.key.encode()).hexdigest()


def chosen_sites(sites, count):
    """The first `count` sites by `order_of` of which no two overlap."""
    chosen, by_path = [], {}
    for site in sorted(sites, key=order_of):
        if len(chosen) == count:
            break
        if any(site.overlaps(other) for other in by_path.get(site.path, [])):
            continue
        chosen.append(site)
        by_path.setdefault(site.path, []).append(site)
    return chosen


def mutated_text(text, sites_by_number):
    """The source with every mutant in it, each asleep until its number is called."""
    edits = [(edit.start, edit.end, edit.text.format(mutant=number))
             for number, site in sites_by_number.items() for edit in site.edits]
    for start, end, replacement in sorted(edits, reverse=True):
        text = text[:start] + replacement.encode() + text[end:]
    return text
