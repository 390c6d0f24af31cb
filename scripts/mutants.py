"""Draws small mistakes by chance from C++ sources: the same sources and seed give the same mistakes."""
import dataclasses
import random
import re

# Whatever of these stands between two spaces is an operator with two operands: .clang-format leaves no space around the
# brackets of a template and none before a pointer's star.
SWAPPED = {'<': ('<=', '>='), '<=': ('<', '>'), '>': ('>=', '<='), '>=': ('>', '<'), '==': ('!=',), '!=': ('==',),
           '&&': ('||',), '||': ('&&',), '+': ('-',), '-': ('+',), '*': ('/',), '/': ('*',), '%': ('*',), '&': ('|',),
           '|': ('&',), '^': ('|',), '<<': ('>>',), '>>': ('<<',), '+=': ('-=',), '-=': ('+=',)}
WORDS = {'min': 'max', 'max': 'min', 'true': 'false', 'false': 'true'}
HIDDEN = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|(?<![0-9A-Fa-f])\'(?:\\.|[^\'\\\n])+\''
                    r'|^[ \t]*#[^\n]*|\b(?:static_assert|using|template)\b[^;{]*', re.S | re.M)
OPERATOR = re.compile('(?<= )(' + '|'.join(map(re.escape, sorted(SWAPPED, key=len, reverse=True))) + ')(?=[ \n])')
NUMBER = re.compile(r'(?<![\w.])(0[xX][0-9A-Fa-f\']+|\d[\d\']*(?:\.\d+)?(?:e[-+]?\d+)?)([uUlLfF]*)(?![\w.])')
WORD = re.compile(r'\b(?:min|max)(?=[(<])|\b(?:true|false)\b')
CONDITION = re.compile(r'\b(?:if|while) \(')
# A call, an assignment or a step, from the beginning of a line: no declaration has its name before the first space.
STATEMENT = re.compile(r'^[ \t]+(?!return\b|throw\b|case\b|default\b|[A-Z_]+\()(?:(?:\+\+|--|\*)?[\w:]+(?:<[\w:]+>)?'
                       r'(?:\(|\.|->|\[| [-+*/%|&^]?= |(?:\+\+|--);)|(?:\+\+|--)\w+;|(?:break|continue|return);)', re.M)


@dataclasses.dataclass(frozen=True)
class Mutant:
    """One mistake: what stands at `start` to `end` of a file becomes `new`."""
    file: str
    start: int
    end: int
    new: str
    line: int
    before: str
    after: str

    def name(self):
        """Tells it from others for as long as its line stands, wherever that is."""
        return f'{self.file}: {self.before} ==> {self.after}'

    def apply(self, text):
        return text[:self.start] + self.new + text[self.end:]


def hide(text):
    """The text with blanks for all that is no code to change: comments, words in quotes, directives."""
    return HIDDEN.sub(lambda match: re.sub(r'[^\n]', ' ', match.group()), text)


def close_of(code, at, stops):
    """Where the first of `stops` stands outside of brackets; None when a bracket is closed that was not opened."""
    depth = 0
    for i in range(at, len(code)):
        if depth == 0 and code[i] in stops:
            return i
        depth += (code[i] in '([{') - (code[i] in ')]}')
        if depth < 0:
            return None
    return None


def one_off(number, suffix):
    """The number and its neighbours; the one below only where there is one."""
    digits = number.replace("'", '')
    if digits[:2] in ('0x', '0X'):
        value = int(digits, 16)
        return [f'0x{other:X}{suffix}' for other in (value + 1, value - 1) if other >= 0]
    whole, point, rest = digits.partition('.')
    if 'e' in digits:
        return []
    return [f'{other}{point}{rest}{suffix}' for other in (int(whole) + 1, int(whole) - 1) if other >= 0]


def conditions(code):
    for match in CONDITION.finditer(code):
        begin = match.end()
        end = close_of(code, begin, ')')
        # One that declares something has no plain opposite.
        if end and not re.search(r'[^=!<>]=[^=]|;', code[begin:end]):
            yield begin, end


def statements(code):
    for match in STATEMENT.finditer(code):
        before = code[:match.start()].rstrip()
        begin = match.start() + len(match.group()) - len(match.group().lstrip())
        end = close_of(code, begin, ';{')
        declares = re.search(r'= (?:delete|default)$', code[begin:end or begin])
        if end and code[end] == ';' and before[-1:] in (';', '{', '}', ':', ')') and not declares:
            yield begin, end + 1


def changes(text):
    """Every mistake that can be made in a source, as start, end and what to put there."""
    code = hide(text)
    for match in OPERATOR.finditer(code):
        yield from ((match.start(), match.end(), new) for new in SWAPPED[match.group()])
    for match in NUMBER.finditer(code):
        yield from ((match.start(), match.end(), new) for new in one_off(*match.groups()))
    for match in WORD.finditer(code):
        yield match.start(), match.end(), WORDS[match.group()]
    for begin, end in conditions(code):
        yield begin, end, f'!({text[begin:end]})'
    for begin, end in statements(code):
        yield begin, end, ';'


def in_one_line(text):
    return ' '.join(text.split())


def mutant_at(file, text, start, end, new):
    first = text.rfind('\n', 0, start) + 1
    last = (text + '\n').find('\n', end)
    return Mutant(file, start, end, new, text.count('\n', 0, start) + 1, in_one_line(text[first:last]),
                  in_one_line(text[first:start] + new + text[end:last]))


def draw(sources, seed):
    """All mistakes that can be made in these sources, a dictionary of texts by file, in an order by chance."""
    every = [mutant_at(file, text, *change) for file, text in sorted(sources.items()) for change in sorted(changes(text))]
    random.Random(seed).shuffle(every)
    return every
