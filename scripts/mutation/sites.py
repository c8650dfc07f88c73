"""Finds the places of a source where a mutant can be put, and puts mutants there.

A mutant is a small fault: a comparison, a constant, a call that is wrong. All of them are compiled
in at once, and each works only when it is selected (qn740_mutant.h), so that the sources are built
once however many mutants there are.
"""
import re

from mutation import cxx

# operator: the kinds of faults, each with its class in qn740_mutant.h
OPERATORS = {
    '<': (('< to <=', 'LessToLessEqual'), ('< to >=', 'LessToGreaterEqual')),
    '<=': (('<= to <', 'LessEqualToLess'), ('<= to >', 'LessEqualToGreater')),
    '>': (('> to >=', 'GreaterToGreaterEqual'), ('> to <=', 'GreaterToLessEqual')),
    '>=': (('>= to >', 'GreaterEqualToGreater'), ('>= to <', 'GreaterEqualToLess')),
    '==': (('== to !=', 'EqualToNotEqual'),),
    '!=': (('!= to ==', 'NotEqualToEqual'),),
    '+': (('+ to -', 'PlusToMinus'),),
    '-': (('- to +', 'MinusToPlus'),),
    '*': (('* to /', 'TimesToDivide'),),
    '/': (('/ to *', 'DivideToTimes'),),
    '%': (('% to *', 'ModuloToTimes'),),
}
CHOOSERS = {'min': 'smaller', 'qMin': 'smaller', 'max': 'larger', 'qMax': 'larger'}
# What begins a statement that is left alone with everything in it.
CONSTANT_STATEMENTS = {'constexpr', 'static_assert', 'using', 'enum', 'case', 'typedef'}
# What a statement that can be left out does not begin with.
NO_CALLS = {'static', 'return', 'if', 'for', 'while', 'do', 'switch', 'break', 'continue', 'default', 'else',
            'auto', 'const', 'delete', 'throw', 'try', 'goto', 'new', 'sizeof', 'template', 'Q_UNUSED'}
ASSIGNMENTS = {'=', '+=', '-=', '*=', '/=', '|=', '&=', '%='}
# What writes for the developer alone.
LOGGING = {'logIgnored', 'qCDebug', 'qCWarning', 'qCInfo', 'qDebug', 'qWarning'}
CONSTANT = re.compile(r'[A-Z][A-Za-z0-9]*$')


class Site:
    """A place and a fault there. Its key stays the same when lines before it come or go."""

    def __init__(self, file, kind, token, line_text):
        self.file, self.kind, self.what = file, kind, token.text
        self.start = token.start
        self.line = self.column = self.id = 0
        self.line_text = line_text
        self.nth = 1
        self.edits = []  # (start, end, text before, text instead or None, text behind)

    @property
    def key(self):
        nth = f' #{self.nth}' if self.nth > 1 else ''
        return f'{self.file} | {self.kind}{nth} | {self.line_text}'

    @property
    def place(self):
        return f'{self.file}:{self.line}:{self.column}'

    @property
    def room(self):
        return self.file.split('/')[1]

    def put(self, start, end, before, behind, instead=None):
        self.edits.append((start, end, before, instead, behind))


class Finder:
    """Finds the sites of one source."""

    def __init__(self, file, text):
        self.file, self.text = file, text
        self.tokens = cxx.tokens_of(text)
        self.sites = []
        self.constants = set(re.findall(
            r'constexpr (?:int|qsizetype|qint64|size_t|double|float|char|quint8)\s+(\w+)\s*[={]', text))

    def find(self):
        self.skip_constant_statements()
        for at, token in enumerate(self.tokens):
            if token.in_function:
                self.look(at, token)
        self.name_sites()
        return self.sites

    def skip_constant_statements(self):
        for at, token in enumerate(self.tokens):
            if not (token.in_function and token.text in CONSTANT_STATEMENTS) or \
                    self.tokens[at - 1].text == 'if':
                continue
            end, start = ({':', ';'} if token.text == 'case' else {';'}), at
            while self.tokens[at].text not in end:
                at = (self.tokens[at].opens or at) + 1
            for skipped in self.tokens[start:at]:
                skipped.in_function = False

    def look(self, at, token):
        before = self.tokens[at - 1]
        after = self.tokens[at + 1] if at + 1 < len(self.tokens) else token
        if token.kind == 'operator':
            self.look_operator(at, token, before, after)
        elif token.kind == 'number':
            self.add('constant', token).put(
                token.start, token.end, 'mut::constant({id}, ', ')')
        elif token.text in ('true', 'false') and before.text == 'return':
            self.add('constant', token).put(
                token.start, token.end, 'mut::constant({id}, ', ')')
        elif token.text in self.constants and CONSTANT.match(token.text) and \
                before.text not in ('::', '.', '->') and after.text not in ('(', '{', '::'):
            self.add('constant', token).put(
                token.start, token.end, 'mut::constant({id}, ', ')')
        elif token.text == 'if' and after.text == '(':
            self.look_condition(at + 1)
        elif token.text in CHOOSERS and after.text == '(':
            self.look_chooser(at, token, before, after)
        if self.begins_statement(at):
            self.look_statement(at)

    def look_operator(self, at, token, before, after):
        binary = token.spaced and after.spaced
        if token.text in OPERATORS and binary and before.text not in ('operator', 'return', ','):
            for kind, name in OPERATORS[token.text]:
                self.add(kind, token).put(token.start, token.end, '', '',
                                          f'{token.text} mut::{name}({{id}}) {token.text}')
        elif token.text in ('&&', '||') and binary:
            end = self.operand_end(at + 1)
            opened = '(mut::on({id}) || (' if token.text == '&&' else '(!mut::on({id}) && ('
            self.add(f'{token.text} without its right side', token).put(
                after.start, self.tokens[end - 1].end, opened, '))')
        elif token.text == '!' and not after.spaced:
            self.add('! left out', token).put(token.start, token.end, '', '',
                                              'mut::Not({id}) ->* ')

    def operand_end(self, at):
        """Returns the index behind the operand of "&&" or "||" that begins at this index."""
        while self.tokens[at].text not in ('&&', '||', '?', ':', ')', ']', '}', ';', ','):
            at = (self.tokens[at].opens or at) + 1
        return at

    def look_condition(self, at):
        close = self.tokens[at].opens
        inside = self.tokens[at + 1:close]
        depth, words = 0, []
        for token in inside:
            depth += {'(': 1, '[': 1, '{': 1, ')': -1, ']': -1, '}': -1}.get(token.text, 0)
            if depth == 0:
                words.append(token.text)
        if ';' in words or '=' in words or not inside:
            return
        self.add('condition negated', self.tokens[at - 1]).put(
            inside[0].start, inside[-1].end, 'mut::flip({id}, ', ')')

    def look_chooser(self, at, token, before, after):
        start = token.start
        if before.text == '::':
            if self.tokens[at - 2].text != 'std':
                return
            start = self.tokens[at - 2].start
        elif token.text in ('min', 'max'):
            return
        self.add('smaller and larger exchanged', token).put(
            start, after.end, '', '', f'mut::{CHOOSERS[token.text]}({{id}}, ')

    def begins_statement(self, at):
        # Within an initializer there are no statements, but no ";" either; in the head of a "for"
        # the last part ends with a bracket.
        return self.tokens[at - 1].text in (';', '{', '}', 'else')

    def look_statement(self, at):
        first = self.tokens[at]
        if first.text == 'return' and self.tokens[at + 1].text == ';':
            self.add('return left out', first).put(first.start, first.start,
                                                   'if (mut::on({id})) {{}} else ', '')
            return
        if first.text in ('break', 'continue') and self.tokens[at + 1].text == ';':
            return
        end = self.expression_statement_end(at)
        if end is not None:
            kind = 'assignment' if self.assigns(at, end) else 'call'
            self.add(f'{kind} left out', first).put(first.start, first.start,
                                                    'if (mut::on({id})) {{}} else ', '')

    def assigns(self, at, end):
        while at < end:
            if self.tokens[at].text in ASSIGNMENTS:
                return True
            at = (self.tokens[at].opens or at) + 1
        return False

    def expression_statement_end(self, at):
        """Returns the index of the ";" of a call or assignment that begins here, or None."""
        tokens = self.tokens
        if tokens[at].text in ('emit', '*', '++', '--'):
            at += 1
        if tokens[at].kind != 'name' or tokens[at].text in NO_CALLS | CONSTANT_STATEMENTS | LOGGING:
            return None
        at += 1
        while True:
            text = tokens[at].text
            if text in ('::', '.', '->') and tokens[at + 1].kind == 'name':
                if tokens[at + 1].text in LOGGING:
                    return None
                at += 2
            elif text in ('(', '['):
                at = tokens[at].opens + 1
            else:
                break
        if text in ('++', '--'):
            at += 1
        elif text in ASSIGNMENTS:
            while tokens[at].text not in (';', ')', ']', '}'):
                at = (tokens[at].opens or at) + 1
        elif tokens[at - 1].text != ')':
            return None
        return at if tokens[at].text == ';' else None

    def add(self, kind, token):
        line_start = self.text.rfind('\n', 0, token.start) + 1
        line_end = self.text.find('\n', token.start)
        line = ' '.join(self.text[line_start:line_end].split())
        if kind == 'constant':
            kind = f'constant {token.text}'
        site = Site(self.file, kind, token, line)
        site.line = self.text.count('\n', 0, token.start) + 1
        site.column = token.start - line_start + 1
        self.sites.append(site)
        return site

    def name_sites(self):
        seen = {}
        for site in self.sites:
            same = (site.kind, site.line_text)
            seen[same] = site.nth = seen.get(same, 0) + 1


def find(file, text):
    """Returns the sites of a source, in the order of the text."""
    return Finder(file, text).find()


def instrument(text, sites):
    """Returns the source with these mutants in it, its lines where they were."""
    openers, closers, instead = {}, {}, {}
    for site in sites:
        for start, end, before, replaced, behind in site.edits:
            if replaced is not None:
                instead[start] = (end, replaced.format(id=site.id))
            if before:
                openers.setdefault(start, []).append((end, before.format(id=site.id)))
            if behind:
                closers.setdefault(end, []).append((start, behind.format(id=site.id)))
    places = sorted({*openers, *closers, *instead})
    parts, at = [], 0
    for place in places:
        parts.append(text[at:place])
        at = place
        # Of the pairs that close here the inner one first, of those that open here the outer one.
        parts += [part for _, part in sorted(closers.get(place, ()), key=lambda pair: -pair[0])]
        parts += [part for _, part in sorted(openers.get(place, ()), key=lambda pair: -pair[0])]
        if place in instead:
            at, replaced = instead[place]
            parts.append(replaced)
    parts.append(text[at:])
    return '#include "qn740_mutant.h"\n#line 1\n' + ''.join(parts)
