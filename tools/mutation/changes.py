"""Writes every change to a source file into the file itself, where the environment switches one of them on.

All changes are compiled together, once; trying one of them is a run of the tests and no build.
"""

import re
from dataclasses import dataclass

from tokens import OPENING, closing, split, text_of, tokens_of, trimmed

BODY_AFTER = {")", "]", "else", "do", "const", "noexcept", "override", "mutable"}
NO_STATEMENT = re.compile(
    r"(return|if|for|while|do|switch|case|default|break|continue|const|constexpr|static|using|auto|namespace|struct|class|enum"
    r"|template|public|private|protected|friend|static_assert|typedef|goto|try|else|delete|new|throw|operator)\b"
)
EFFECT = re.compile(
    r"(co_await\s+)?(\*|\+\+|--)?(\(\*?\w+\))?[A-Za-z_][\w:]*((\.|->)[A-Za-z_]\w*|\[[^\]]*\])*\s*(\(|=(?!=)|[+\-*|&]=|\+\+|--|<)",
    re.DOTALL,
)
DECLARING = re.compile(r"(const\s+)?[A-Za-z_][\w:]*(<.*>)?(\s+|\s*[&*]+\s*)(const\s+)?(?P<name>\w+)\s*=(?!=)", re.DOTALL)
COMPARISON = {"<": "less", "<=": "lessOrEqual", ">": "greater", ">=": "greaterOrEqual"}


@dataclass
class Change:
    """One change, and the lines that it takes up in the file."""

    file: str
    first_line: int
    last_line: int
    what: str
    number: int = 0

    @property
    def key(self):
        return f"{self.file}: {self.what}"


def short(tokens, most=110):
    """On one line, without comments, and not for ever."""
    text = " ".join(text_of([token for token in tokens if not token.text.lstrip().startswith("//")]).split())
    return text if len(text) <= most else text[:most] + "…"


class Rewriter:
    """One pass over a file. `taken` gives each change its number, or none to leave it out."""

    def __init__(self, file, taken):
        self.file = file
        self.taken = taken

    def change(self, tokens, what):
        visible = [token for token in tokens if not token.is_space]
        last = visible[-1].line + visible[-1].text.count("\n")
        return self.taken(Change(self.file, visible[0].line, last, what))

    def rewrite(self, text):
        return self.outside(tokens_of(text))

    # Outside of functions: constants and initial values.

    def outside(self, tokens):
        result, place, before = [], 0, None
        pending = []  # the declaration so far
        while place < len(tokens):
            token = tokens[place]
            if token.kind == "mark" and token.text == "{":
                end = closing(tokens, place)
                inner = tokens[place + 1 : end]
                if before is not None and before.text in BODY_AFTER:
                    result.append(self.declaration(pending) + "{" + self.body(inner) + "}")
                    pending = []
                elif re.search(r"\b(namespace|struct|class|enum|union)\b", text_of(pending)):
                    content = text_of(inner) if "enum" in text_of(pending).split() else self.outside(inner)
                    result.append(text_of(pending) + "{" + content + "}")
                    pending = []
                else:
                    pending += tokens[place : end + 1]
                before = tokens[end]
                place = end + 1
                continue
            if token.kind == "mark" and token.text in ("(", "["):
                end = closing(tokens, place)
                pending += tokens[place : end + 1]
                before = tokens[end]
                place = end + 1
                continue
            pending.append(token)
            if token.kind == "mark" and token.text == ";":
                result.append(self.declaration(pending))
                pending = []
            if not token.is_space:
                before = token
            place += 1
        return "".join(result) + text_of(pending)

    def declaration(self, tokens):
        """A constant or a field with an initial value; anything else stays as it is."""
        words = [token.text for token in tokens if token.kind == "word"]
        if not words or "using" in words or "operator" in words or "template" in words or "friend" in words:
            return text_of(tokens)
        pieces, marks = split(tokens, {"="})
        if len(pieces) == 2:
            head, value = pieces
            mark = "="
        else:
            braces = [i for i, t in enumerate(tokens) if t.kind == "mark" and t.text == "{"]
            calls = [t for t in tokens if t.kind == "mark" and t.text == "("]
            if not braces or calls:
                return text_of(tokens)
            head, value = tokens[: braces[0]], tokens[braces[0] :]
            mark = ""
        if any(token.kind == "mark" and token.text == "(" for token in head):
            return text_of(tokens)
        changed = self.values(value, tokens)
        if changed == text_of(value):
            return text_of(tokens)
        start = text_of(head)
        if "constexpr" in words:
            start = start.replace("static constexpr", "static inline const").replace("constexpr", "const")
        return start + mark + changed

    # Inside of functions: statements, conditions, values.

    def body(self, tokens):
        result, place = [], 0
        while place < len(tokens):
            if tokens[place].is_space:
                result.append(tokens[place].text)
                place += 1
                continue
            end, text = self.statement(tokens, place)
            result.append(text)
            place = end
        return "".join(result)

    def statement(self, tokens, place):
        """Where the statement at `place` ends, and its changed text."""
        first = tokens[place]
        if first.text == "{":
            end = closing(tokens, place)
            return end + 1, "{" + self.body(tokens[place + 1 : end]) + "}"
        if first.text in ("if", "while"):
            start = next(i for i in range(place, len(tokens)) if tokens[i].text == "(")
            end = closing(tokens, start)
            head = text_of(tokens[place : start + 1])
            if "constexpr" in head:
                return end + 1, text_of(tokens[place : end + 1])
            return end + 1, head + self.head(first.text, tokens[start + 1 : end]) + ")"
        if first.text in ("for", "switch"):
            start = next(i for i in range(place, len(tokens)) if tokens[i].text == "(")
            end = closing(tokens, start)
            return end + 1, text_of(tokens[place : end + 1])
        if first.text in ("else", "do"):
            return place + 1, first.text
        if first.text in ("case", "default"):
            end = next(i for i in range(place, len(tokens)) if tokens[i].text == ":")
            return end + 1, text_of(tokens[place : end + 1])
        end = place
        while end < len(tokens) and tokens[end].text != ";":
            end = closing(tokens, end) + 1 if tokens[end].text in OPENING else end + 1
        whole = tokens[place : end + 1]
        return end + 1, self.simple(whole)

    def simple(self, tokens):
        text = text_of(tokens)
        if re.match(r"(static_)?(assert|using|typedef)\b", text) or "operator" in text.split("(")[0]:
            return text
        if re.fullmatch(r"(co_return|return|break|continue)\s*;", text):
            return self.left_out(tokens, text)
        if re.match(r"(co_)?return\b", text):
            return tokens[0].text + self.condition_or_value(tokens[1:-1]) + ";"
        if re.match(r"(struct|class|enum)\b", text):
            return text
        if tokens[0].text == "constexpr":
            return "const" + self.values(tokens[1:], tokens)
        changed = self.values(tokens)
        if not NO_STATEMENT.match(text) and EFFECT.match(text) and not DECLARING.match(text):
            return self.left_out(tokens, changed)
        return changed

    def left_out(self, tokens, text):
        number = self.change(tokens, "left out: " + short(tokens))
        return text if number is None else f"if (!::mutation::is({number})) {text}"

    def head(self, keyword, tokens):
        """What stands in the parentheses of an if or a while."""
        pieces, _ = split(tokens, {";"})
        if len(pieces) == 2:
            return self.values(pieces[0]) + ";" + self.condition(keyword, pieces[1])
        declared = DECLARING.match(text_of(tokens).strip())
        if declared:
            if keyword == "while":
                return text_of(tokens)
            number = self.change(tokens, "the other way round: " + short(tokens))
            if number is None:
                return self.values(tokens)
            return f"{self.values(tokens)}; ::mutation::flip({number}, static_cast<bool>({declared['name']}))"
        return self.condition(keyword, tokens)

    def condition(self, keyword, tokens):
        before, inner, behind = trimmed(tokens)
        if keyword == "while":
            number = self.change(inner, "never: while " + short(inner))
            text = self.logic(inner)
            if number is not None:
                text = f"!::mutation::is({number}) && ({text})"
        else:
            number = self.change(inner, "the other way round: " + short(inner))
            text = self.logic(inner)
            if number is not None:
                text = f"::mutation::flip({number}, static_cast<bool>({text}))"
        return before + text + behind

    def condition_or_value(self, tokens):
        _, marks = split(tokens, {"&&", "||", "==", "!=", "?"})
        comparing = any(self.is_spaced(tokens, i) and t.text in COMPARISON for i, t in self.outermost(tokens))
        before, inner, behind = trimmed(tokens)
        isLogical = (marks or comparing or inner and inner[0].text == "!") and "?" not in [m.text for m in marks]
        if inner and inner[0].text in ("true", "false") and len(inner) == 1 or not isLogical:
            return before + self.values(inner) + behind
        return before + self.condition("return", inner) + behind

    def logic(self, tokens):
        """An expression of && and ||: each side may be left out."""
        for mark, other in (("||", "false"), ("&&", "true")):
            pieces, marks = split(tokens, {mark})
            if marks and not split(tokens, {"?", ","})[1]:
                texts = []
                for piece in pieces:
                    before, inner, behind = trimmed(piece)
                    number = self.change(inner, f"left out of {mark}: " + short(inner))
                    text = self.logic(inner)
                    if number is not None:
                        text = (
                            f"(!::mutation::is({number}) && static_cast<bool>({text}))"
                            if mark == "||"
                            else f"(::mutation::is({number}) || static_cast<bool>({text}))"
                        )
                    texts.append(before + text + behind)
                return mark.join(texts)
        return self.comparison(tokens)

    @staticmethod
    def outermost(tokens):
        depth = 0
        for place, token in enumerate(tokens):
            if token.kind == "mark" and token.text in OPENING:
                depth += 1
            elif token.kind == "mark" and token.text in OPENING.values():
                depth -= 1
            elif depth == 0 and token.kind == "mark":
                yield place, token

    @staticmethod
    def is_spaced(tokens, place):
        """Operators stand between spaces; the angles of templates do not."""
        return 0 < place < len(tokens) - 1 and tokens[place - 1].is_space and tokens[place + 1].is_space

    def comparison(self, tokens):
        found = [
            place
            for place, token in self.outermost(tokens)
            if token.text in COMPARISON and self.is_spaced(tokens, place)
        ]
        others = split(tokens, {"?", ",", "==", "!=", "="})[1]
        if len(found) != 1 or others:
            return self.values(tokens)
        place = found[0]
        mark = tokens[place].text
        number = self.change(tokens, f"limit of {mark}: " + short(tokens))
        left, right = self.values(tokens[:place]), self.values(tokens[place + 1 :])
        if number is None:
            return left + mark + right
        return f"::mutation::{COMPARISON[mark]}({number}, {left.rstrip()},{right})"

    def values(self, tokens, context=None):
        """Numbers, truths, texts, signs and the functions inside of expressions."""
        result, place = [], 0
        where = short(context or tokens)
        visible = None
        while place < len(tokens):
            token = tokens[place]
            if token.text == "{" and visible is not None and visible.text in BODY_AFTER:
                end = closing(tokens, place)
                result.append("{" + self.body(tokens[place + 1 : end]) + "}")
                place, visible = end + 1, tokens[end]
                continue
            if token.kind == "word" and token.text in ("asm", "case"):
                return text_of(tokens)
            wrapped = None
            if token.kind == "number":
                wrapped = self.wrap("more", [token], f"one more: {token.text} in {where}")
            elif token.kind == "word" and token.text in ("true", "false"):
                wrapped = self.wrap("flip", [token], f"not {token.text} in {where}")
            elif token.kind == "string":
                end = place + 1
                following = end
                while following < len(tokens) and (tokens[following].is_space or tokens[following].kind == "string"):
                    following += 1
                    if tokens[following - 1].kind == "string":
                        end = following
                group = tokens[place:end]
                wrapped = self.wrap("text", group, f"another text: {short(group)}")
                if wrapped is not None:
                    result.append(wrapped)
                    place, visible = end, tokens[end - 1]
                    continue
            elif token.text in ("+", "-") and self.is_spaced(tokens, place):
                end = self.term_end(tokens, place + 1)
                number = self.change(tokens[place:end], f"other sign: {short(tokens[place:end])} in {where}")
                if number is not None:
                    before, inner, behind = trimmed(tokens[place + 1 : end])
                    result.append(f"{token.text}{before}::mutation::negated({number}, {self.values(inner)}){behind}")
                    place, visible = end, tokens[end - 1]
                    continue
            elif token.text == "max" and text_of(tokens[max(place - 2, 0) : place]) == "std::":
                number = self.change(tokens, "least in place of most: " + short(tokens))
                following = place + 1
                argument = ""
                if number is not None and tokens[following].text == "<":
                    end = next(i for i in range(following, len(tokens)) if tokens[i].text == ">")
                    argument = text_of(tokens[following : end + 1])
                    following = end + 1
                if number is not None and tokens[following].text == "(":
                    del result[-2:]
                    result.append(f"::mutation::larger{argument}({number}, ")
                    place, visible = following + 1, tokens[following]
                    continue
            result.append(token.text if wrapped is None else wrapped)
            if not token.is_space:
                visible = token
            place += 1
        return "".join(result)

    def wrap(self, function, tokens, what):
        number = self.change(tokens, what)
        return None if number is None else f"::mutation::{function}({number}, {text_of(tokens)})"

    def term_end(self, tokens, place):
        """Where the operand of a sum ends that begins at `place`."""
        start = place
        while place < len(tokens):
            text = tokens[place].text
            if tokens[place].kind == "mark":
                if text in OPENING:
                    place = closing(tokens, place) + 1
                    continue
                if text in (",", ";", ")", "]", "}"):
                    break
                if text in ("+", "-", "<", ">", "<=", ">=", "==", "!=", "&&", "||", "?", ":", "|", "&", "<<") and (
                    self.is_spaced(tokens, place) and place > start + 1
                ):
                    break
            place += 1
        while place > start + 1 and tokens[place - 1].is_space:
            place -= 1
        return place
