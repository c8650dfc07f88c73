"""Tokens of C++ and the parts of a source that lie in function bodies."""
import re

TOKEN = re.compile(
    r'''(?P<space>\s+)
      | (?P<comment>//[^\n]*|/\*.*?\*/)
      | (?P<directive>\#(?:\\\n|[^\n])*)
      | (?P<text>(?:u8|[uUL])?R"(?P<mark>[^()\s]*)\(.*?\)(?P=mark)"|(?:u8|[uUL])?"(?:\\.|[^"\\\n])*"\w*
                |(?:u8|[uUL])?'(?:\\.|[^'\\\n])+')
      | (?P<number>\.?[0-9](?:[eEpP][+-]|'(?=\w)|[\w.])*)
      | (?P<name>[A-Za-z_]\w*)
      | (?P<operator><<=|>>=|->\*|\.\.\.|::|->|\+\+|--|<<|<=|>=|==|!=|&&|\|\||[-+*/%&|^]=|[^\w\s])
    ''', re.VERBOSE | re.DOTALL)


class Token:
    """A token with its place: text[start:end] of the source."""

    def __init__(self, kind, text, start, spaced):
        self.kind, self.text, self.start, self.spaced = kind, text, start, spaced
        self.end = start + len(text)
        self.in_function = False
        self.opens = None  # for a bracket that opens: the index of the one that closes

    def __repr__(self):
        return self.text


def tokens_of(text):
    """Returns the tokens without blanks, comments and directives."""
    tokens, at, spaced = [], 0, False
    while at < len(text):
        match = TOKEN.match(text, at)
        if match is None:
            raise ValueError(f'no token at {text[at:at + 20]!r}')
        at = match.end()
        if match.lastgroup == 'mark':
            tokens.append(Token('text', match[0], match.start(), spaced))
        elif match.lastgroup in ('space', 'comment', 'directive'):
            spaced = True
            continue
        else:
            tokens.append(Token(match.lastgroup, match[0], match.start(), spaced))
        spaced = False
    pair_brackets(tokens)
    mark_functions(tokens)
    return tokens


def pair_brackets(tokens):
    stack = []
    for index, token in enumerate(tokens):
        if token.kind == 'operator' and token.text in '([{':
            stack.append(index)
        elif token.kind == 'operator' and token.text in ')]}':
            tokens[stack.pop()].opens = index
    if stack:
        raise ValueError(f'no bracket closes the one at offset {tokens[stack[-1]].start}')


def body_kind(head):
    """Returns what a "{" at namespace or class level begins, by the tokens before it."""
    words = [token.text for token in head]
    if 'namespace' in words or ('extern' in words and head[-1].kind == 'text'):
        return 'open'
    if {'class', 'struct', 'union'} & set(words) and '(' not in words:
        return 'open'
    if '(' in words and 'constexpr' not in words and 'enum' not in words and '=' not in words:
        return 'function'
    return 'other'


def mark_functions(tokens):
    """Marks the tokens that lie in bodies of functions that are not constexpr."""

    def level(at, end):
        head = []
        while at < end:
            token = tokens[at]
            if token.text == '{':
                kind = body_kind(head)
                if kind == 'open':
                    level(at + 1, token.opens)
                elif kind == 'function':
                    for inside in tokens[at + 1:token.opens]:
                        inside.in_function = True
                at = token.opens + 1
                if kind != 'other':
                    head = []
                continue
            head = [] if token.text == ';' else [*head, token]
            at += 1

    level(0, len(tokens))
