"""C++ source text as tokens, as far as the changes need it."""

import re
from dataclasses import dataclass

PATTERN = re.compile(
    r"""
    (?P<space>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.|\\\n)*)
  | (?P<raw>R"(?P<mark>[^(]*)\(.*?\)(?P=mark)")
  | (?P<string>"(?:[^"\\\n]|\\.)*")
  | (?P<char>'(?:[^'\\\n]|\\.)*')
  | (?P<number>\d(?:[\w.']|[eEpP][+-])*)
  | (?P<word>[A-Za-z_]\w*)
  | (?P<mark2><<=|>>=|<=>|->\*|\.\.\.|::|->|\+\+|--|<=|>=|==|!=|&&|\|\||[+\-*/%&|^]=|<<|.)
    """,
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

OPENING = {"(": ")", "[": "]", "{": "}"}


@dataclass
class Token:
    kind: str
    text: str
    line: int

    @property
    def is_space(self):
        return self.kind == "space"


def tokens_of(text):
    """All tokens; their texts together are the text."""
    found = []
    line = 1
    for match in PATTERN.finditer(text):
        kind = match.lastgroup
        if kind in ("mark", "mark2"):
            kind = "raw" if match.group("raw") else "mark"
        found.append(Token(kind, match.group(), line))
        line += match.group().count("\n")
    return found


def closing(tokens, start):
    """The place of the bracket that closes the one at `start`."""
    depth = 0
    for place in range(start, len(tokens)):
        if tokens[place].kind != "mark":
            continue
        if tokens[place].text in OPENING:
            depth += 1
        elif tokens[place].text in OPENING.values():
            depth -= 1
            if depth == 0:
                return place
    raise ValueError(f"line {tokens[start].line}: nothing closes {tokens[start].text}")


def split(tokens, marks):
    """The pieces between those marks that stand outside all brackets, and the marks between them."""
    pieces, found, depth = [[]], [], 0
    for token in tokens:
        if token.kind == "mark":
            if token.text in OPENING:
                depth += 1
            elif token.text in OPENING.values():
                depth -= 1
            elif depth == 0 and token.text in marks:
                pieces.append([])
                found.append(token)
                continue
        pieces[-1].append(token)
    return pieces, found


def text_of(tokens):
    return "".join(token.text for token in tokens)


def trimmed(tokens):
    """Without the space at both ends, which comes along: before, tokens, behind."""
    begin, end = 0, len(tokens)
    while begin < end and tokens[begin].is_space:
        begin += 1
    while end > begin and tokens[end - 1].is_space:
        end -= 1
    return text_of(tokens[:begin]), tokens[begin:end], text_of(tokens[end:])
