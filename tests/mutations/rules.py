"""The rules by which mutate.py changes C++: every change that is made is found here, none by hand.

A mutant changes one place of one file:

  neighbour   a constant for its neighbour: a GL name for the one nearest to it by name, an enumerator
              for the next of its enumeration, a cell of a table for that of the next row, a text or a
              character for the next one of the file, true for false, a number for another
  dropped     a statement, or the body of a condition, for nothing
  off by one  a comparison or a logical operator for its sibling, a whole number or an index for the
              next one, a sum for a difference, a negation for nothing
  exchanged   an argument of a call for the one behind it, and the other way round

What cannot change behaviour is left alone: comments, declarations, static assertions, includes and
what is compiled only for Windows.
"""

import re
from typing import NamedTuple

TOKEN = re.compile(r"""
    (?P<space>(?:\s|\\\n)+)
  | (?P<comment>//[^\n]*|/\*.*?\*/)
  | (?P<text>"(?:[^"\\\n]|\\.)*")
  | (?P<character>'(?:[^'\\\n]|\\.)+')
  | (?P<number>\.?\d(?:[\w.]|(?<=[eE])[+-])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<sign>::|->|\+\+|--|<=|>=|==|!=|&&|\|\||<<|\+=|-=|\#\#|\.\.\.|.)
""", re.VERBOSE | re.DOTALL)
DIRECTIVE = re.compile(r"^[ \t]*#[ \t]*(\w+)((?:[^\n\\]|\\.|\\\n)*)", re.MULTILINE)
ENUMERATION = re.compile(r"\benum\s+(class\s+)?(\w+)[^{};]*\{([^}]*)\}")
GL_CONSTANT = re.compile(r"^#define (GL_\w+) (0x[0-9A-Fa-f]+|\d+)$", re.MULTILINE)
GL_CALL = re.compile(r"^GLAD_API_CALL PFN\w+ glad_(gl\w+);", re.MULTILINE)
GL_CALL_TYPE = re.compile(r"^typedef (.*?)\(GLAD_API_PTR \*PFN(GL\w+)PROC\)\((.*)\);", re.MULTILINE)
ASSERTION = re.compile(r"#define (VELLIS_\w+)\([^)]*\)[\s\\]*static_assert")
ROW = re.compile(r"^VELLIS_\w+(?=\()", re.MULTILINE)

SIBLINGS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "&&": "||",
            "||": "&&", "+": "-", "-": "+"}
OPENING = {"(": ")", "[": "]", "{": "}"}
# What a declaration, or what is no statement to drop, can begin with.
NOT_DROPPED = {"return", "using", "namespace", "case", "default", "static", "const", "constexpr",
               "auto", "template", "public", "private", "protected", "struct", "class", "enum", "if",
               "for", "while", "switch", "else", "do", "unsigned", "goto", "friend", "typedef"}


class Mutant(NamedTuple):
    path: str
    begin: int
    end: int
    rule: str
    new: str

    def applied(self, source):
        return source[:self.begin] + self.new + source[self.end:]


class Token(NamedTuple):
    kind: str
    text: str
    begin: int
    end: int


class Names:
    """What a name can be exchanged for."""

    def __init__(self, sources, gl_header):
        """`gl_header` is the loader's."""
        words = {token.text for source in sources for token in tokens(source)}
        values = dict(GL_CONSTANT.findall(gl_header))
        self._gl_values = {name: int(value, 0) for name, value in values.items() if name in words}
        types = {name: (result, re.sub(r"\w+(?=,|$)", "", parameters))
                 for result, name, parameters in GL_CALL_TYPE.findall(gl_header)}
        self._gl_types = {name: types[name.upper()] for name in GL_CALL.findall(gl_header)
                          if name in words}
        self.assertions = {name for source in sources for name in ASSERTION.findall(source)}
        self._scoped, self._unscoped = {}, {}
        for source in sources:
            for is_class, name, body in ENUMERATION.findall(without_comments(source)):
                members = re.findall(r"(\w+)\s*(?:=[^,]*)?(?:,|$)", body.strip())
                for member, following in zip(members, members[1:] + members[:1]):
                    if member != following:
                        self._scoped[name, member] = following
                        if not is_class:
                            self._unscoped[member] = following

    def enumerator(self, scope, name):
        return self._scoped.get((scope, name)) if scope else self._unscoped.get(name)

    def gl_name(self, name):
        """The GL name with which this one shares the most words; of several, the next in order. A
        constant of the same value is none, nor a function of another type."""
        if name in self._gl_values:
            value = self._gl_values[name]
            others = [other for other, its in self._gl_values.items() if its != value]
        elif name in self._gl_types:
            others = [other for other, its in self._gl_types.items()
                      if its == self._gl_types[name] and other != name]
        else:
            return None
        others.sort(key=lambda other: (other < name, other))
        return max(others, key=lambda other: shared_words(name, other), default=None)


def words_of(name):
    return re.findall(r"[A-Z]?[a-z]+|\d+|[A-Z]+(?![a-z])", name)


def shared_words(a, b):
    count = 0
    for one, other in zip(words_of(a), words_of(b)):
        if one != other:
            break
        count += 1
    return count


def tokens(source):
    return [Token(match.lastgroup, match.group(), match.start(), match.end())
            for match in TOKEN.finditer(source) if match.lastgroup not in ("space", "comment")]


def without_comments(source):
    return "".join(match.group() for match in TOKEN.finditer(source) if match.lastgroup != "comment")


def blank(source, begin, end):
    """The source with that part made spaces, so that places stay what they are."""
    return source[:begin] + re.sub(r"[^\n]", " ", source[begin:end]) + source[end:]


def code_of(source):
    """The source with all blank that is no code of this system: directives, but for the bodies of
    macros, and what is compiled only for Windows."""
    code = source
    inactive_from, depth = None, 0
    for match in DIRECTIVE.finditer(source):
        directive, rest = match.groups()
        begin, end = match.span()
        if directive == "define":
            end = match.start(2) + re.match(r"\s*\w+(\([^)]*\))?", rest).end()
        code = blank(code, begin, end)
        if inactive_from is None:
            if directive in ("if", "ifdef") and rest.strip() == "_WIN32":
                inactive_from, depth = match.start(), 0
        elif directive.startswith("if"):
            depth += 1
        elif depth == 0 and directive in ("else", "endif"):
            code = blank(code, inactive_from, match.end())
            inactive_from = None
        elif directive == "endif":
            depth -= 1
    return code


class File:
    """The code of a file as tokens, with what belongs together."""

    def __init__(self, source, assertions):
        """`assertions` are the macros that make static assertions."""
        self.source = source
        code = code_of(source)
        self.tokens = tokens(code)
        self.partner = self._partners()
        self.asserted = self._static_assertions(assertions | {"static_assert"})

    def text(self, index):
        return self.tokens[index].text if 0 <= index < len(self.tokens) else ""

    def spaced(self, index):
        """Whether there is space on both sides, as around an operator between two operands."""
        token = self.tokens[index]
        return self.source[token.begin - 1].isspace() and self.source[token.end].isspace()

    def between(self, first, last):
        """The source from one token to another, both included."""
        return self.source[self.tokens[first].begin:self.tokens[last].end]

    def arguments(self, opening):
        """The arguments behind an opening parenthesis, as first and last token."""
        closing = self.partner.get(opening)
        if closing is None or closing == opening + 1:
            return []
        found, first, index = [], opening + 1, opening + 1
        while index < closing:
            if self.text(index) == ",":
                found.append((first, index - 1))
                first = index + 1
            index = self.partner.get(index, index) + 1
        return found + [(first, closing - 1)]

    def declares(self, first, last):
        """Whether these tokens declare a parameter or a variable: a type, then a name."""
        for index in range(first, last):
            here, following = self.tokens[index], self.tokens[index + 1]
            if here.kind == "word" and following.kind == "word" and \
                    here.text not in ("new", "sizeof", "return", "delete", "const", "throw"):
                return True
            if here.text in ("&", "*", ">") and following.kind == "word" and not self.spaced(index) \
                    and index > first and here.begin == self.tokens[index - 1].end:
                return True
        return False

    def _partners(self):
        partner, opened = {}, []
        for index, token in enumerate(self.tokens):
            if token.kind != "sign":
                continue
            if token.text in OPENING:
                opened.append(index)
            elif token.text in OPENING.values() and opened:
                partner[opened.pop()] = index
        return partner

    def _static_assertions(self, assertions):
        return {index for start, token in enumerate(self.tokens) if token.text in assertions
                for index in range(start, self.partner.get(start + 1, start) + 1)}

    def statements(self):
        """The statements of functions, as first and last token."""
        for opening, closing in self.partner.items():
            if self.text(opening) == "{" and self._is_code_block(opening):
                yield from self._statements_within(opening, closing)

    def _is_code_block(self, opening):
        return self.text(opening - 1) in (")", "]", "else", "do", "const", "noexcept", "override", "{",
                                          ";", "}", ":") and self.text(opening + 1) != "{"

    def _statements_within(self, opening, closing):
        first, index = opening + 1, opening + 1
        while index < closing:
            text = self.text(index)
            if text in ("if", "for", "while", "switch"):
                condition = index + 2 if self.text(index + 1) == "constexpr" else index + 1
                index = self.partner[condition]
                first = index + 1
            elif text in (";", ":", "else", "do"):
                if text == ";" and index > first:
                    yield first, index
                first = index + 1
            elif text == "{" and index == first:
                index = self.partner[index]
                first = index + 1
            else:
                index = self.partner.get(index, index)
            index += 1


def number_mutants(text):
    if re.fullmatch(r"\d+[uU]?", text):
        value, suffix = int(text.rstrip("uU")), text[len(text.rstrip("uU")):]
        yield f"{value + 1}{suffix}"
        if value > 0:
            yield f"{value - 1}{suffix}"
    elif re.fullmatch(r"0x[0-9a-fA-F]+[uU]?", text):
        yield hex(int(text.rstrip("uU"), 16) + 1)
    elif re.fullmatch(r"[\d.]+f?", text):
        value = float(text.rstrip("f"))
        yield f"{1.0 if value == 0 else 0.0 if value == 1 else 2 * value}{'f' * text.endswith('f')}"


def constants(file, names):
    literals = {kind: [token.text for token in file.tokens if token.kind == kind]
                for kind in ("text", "character")}
    seen = {"text": 0, "character": 0}
    for index, token in enumerate(file.tokens):
        if token.kind in literals:
            place = seen[token.kind]
            seen[token.kind] += 1
            following = literals[token.kind][place + 1:] + literals[token.kind][:place]
            news = [next((other for other in following if other != token.text), None)]
        elif token.kind == "word":
            scope = file.text(index - 2) if file.text(index - 1) == "::" else None
            news = [{"true": "false", "false": "true"}.get(token.text),
                    names.enumerator(scope, token.text), names.gl_name(token.text)]
        elif token.kind == "number":
            for new in number_mutants(token.text):
                yield "off by one" if "." not in new else "neighbour", index, index, new
            continue
        else:
            continue
        for new in filter(None, news):
            yield "neighbour", index, index, new


def operators(file):
    for index, token in enumerate(file.tokens):
        if token.kind != "sign" or file.text(index - 1) == "operator":
            continue
        if token.text in SIBLINGS and file.spaced(index):
            yield "off by one", index, index, SIBLINGS[token.text]
        elif token.text == "!":
            yield "off by one", index, index, ""
        elif token.text == "[" and index in file.partner and file.partner[index] > index + 1:
            first, last = index + 1, file.partner[index] - 1
            is_index = file.tokens[index - 1].kind == "word" or file.text(index - 1) in (")", "]")
            if is_index and file.tokens[first].kind != "number":
                yield "off by one", first, last, f"{file.between(first, last)} + 1"


def dropped_statements(file):
    for first, last in file.statements():
        is_body = file.text(first - 1) in (")", "else")
        word = file.text(first)
        if word in ("break", "continue") or (word == "return" and (is_body or last == first + 1)):
            yield "dropped", first, last, ";"
        elif word not in NOT_DROPPED and word != "static_assert" and is_expression(file, first, last):
            yield "dropped", first, last, ";"


def is_expression(file, first, last):
    """Whether a statement is no declaration: no type stands before its first call or assignment."""
    for index in range(first, last):
        if file.text(index) in ("(", "=", "+=", "-=", "<<", "++", "--", "["):
            return not file.declares(first, index)
    return False


def exchanged_arguments(file):
    for opening in file.partner:
        if file.text(opening) != "(" or file.text(opening - 1) in ("if", "for", "while", "switch"):
            continue
        if file.tokens[opening - 1].kind != "word" and file.text(opening - 1) not in (">", ")"):
            continue
        arguments = file.arguments(opening)
        if any(file.declares(first, last) for first, last in arguments):
            continue
        for one, other in zip(arguments, arguments[1:]):
            texts = [file.between(*argument) for argument in (one, other)]
            if texts[0] != texts[1]:
                gap = file.source[file.tokens[one[1]].end:file.tokens[other[0]].begin]
                yield "exchanged", one[0], other[1], texts[1] + gap + texts[0]


def table_cells(file):
    """The cells of tables that are made of rows `VELLIS_NAME(cell, cell ...)` at the start of lines."""
    at = {token.begin: index for index, token in enumerate(file.tokens)}
    tables = {}
    for row in ROW.finditer(file.source):
        if row.start() in at:
            tables.setdefault(row.group(), []).append(file.arguments(at[row.start()] + 1))
    for rows in tables.values():
        for place, cells in enumerate(rows):
            others = rows[place + 1:] + rows[:place]
            for column, (first, last) in enumerate(cells):
                texts = (file.between(*other[column]) for other in others if column < len(other))
                old = file.between(first, last)
                new = next((text for text in texts if text != old), None)
                if new is not None:
                    yield "neighbour", first, last, new


def mutants(path, source, names):
    """Every mutant of a file, in the order of their places; none twice."""
    file = File(source, names.assertions)
    found = {}
    for rule, first, last, new in (*constants(file, names), *operators(file),
                                   *dropped_statements(file), *exchanged_arguments(file),
                                   *table_cells(file)):
        begin, end = file.tokens[first].begin, file.tokens[last].end
        if first not in file.asserted:
            found.setdefault((begin, end, new), Mutant(path, begin, end, rule, new))
    return [found[key] for key in sorted(found)]
