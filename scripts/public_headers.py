"""Reads the public headers: their comments, groups, classes and functions.

    public_headers.py FILE         prints one header as Doxygen reads it (its input filter)
    public_headers.py --page FILE  prints the page of names as it should be: its own text down to the mark, then the tables

The headers are as clang-format writes them, so the indentation says which lines begin a declaration. A comment stands above its
declaration and holds for those that follow it without a blank line; "// ---- Title ----" begins a group of members.
"""
import pathlib
import re
import sys

MARK = "<!-- What follows is written by scripts/docs --update. -->"
LIBRARY = pathlib.Path(__file__).resolve().parent.parent / "krosac"
FIELD = re.compile(r"KROSAC_FIELD\((.+), (\w+), (\w+)\);")
TABLE = re.compile(r"KROSAC_TT_TABLE\((\w+), \d+\)$")
OPENING = re.compile(r"^\s*(typedef struct|class|struct) .*\{$")
GROUP = re.compile(r"---- (.+?)(?: \([^)]*\.cc\))? ----")


def public_headers():
    listed = (LIBRARY / "folders.txt").read_text().splitlines()
    for folder in " ".join(line for line in listed if not line.startswith("#")).split():
        yield from sorted((LIBRARY / folder).glob("*.h"))


class Item:
    """A piece of a header: file, namespace, group, open (a class), access, close, macro or member, with its comment."""

    def __init__(self, kind, text="", comment=()):
        self.kind, self.text, self.comment = kind, text, list(comment)


def is_whole(text):
    return TABLE.match(text) or text.endswith((";", "}")) and text.count("{") == text.count("}") and text.count("(") == text.count(")")


def spelled_out(declaration):
    """The members that a declaration declares: the functions of a macro, or its variables one by one."""
    field, table = FIELD.search(declaration), TABLE.match(declaration)
    if field:
        kind, name, setter = field.groups()
        return [f"{kind} {name}() const;", f"void set{setter}({kind} value);"]
    if table:
        return [f"const float* t{table[1]}() const;", f"std::int32_t n{table[1]}() const;"]
    variables = re.match(r"((?:static constexpr )?[\w:]+) ([\w =.]+(?:, [\w =.]+)+);$", declaration)
    if variables:
        return [f"{variables[1]} {name};" for name in variables[2].split(", ")]
    return [declaration]


class Lines:
    """Iterates over the lines of a header."""

    def __init__(self, path):
        self.path, self.lines, self.at = path, path.read_text().splitlines(), 0

    def next(self):
        return self.lines[self.at].strip() if self.at < len(self.lines) else ""

    def take(self):
        self.at += 1
        return self.lines[self.at - 1]

    def take_comment(self):
        comment = []
        while self.next().startswith("//"):
            comment.append(re.sub(r"^\s*// ?", "", self.take()))
        return comment

    def take_macro(self):
        """Returns the name and the parameters of the macro that the line defines, if any."""
        line = first = self.take()
        while line.endswith("\\"):
            line = self.take()
        return re.match(r"#\s*define (\w+(?:\([^)]*\))?)", first)

    def take_declaration(self):
        """Returns a declaration in one line, and the trailing comments of its lines."""
        declaration, behind = "", []
        while not is_whole(declaration) and self.at < len(self.lines):
            code, _, comment = self.take().partition("  // ")
            declaration = f"{declaration} {code.strip()}".strip()
            behind += [comment] if comment else []
        return declaration, behind


def group(comment):
    """Returns the group that a comment begins, if any."""
    title = GROUP.match(" ".join(comment))
    if not title:
        return None
    ends = next(i for i, line in enumerate(comment) if line.endswith("----"))
    return Item("group", title[1], comment[ends + 1:])


def items(path):
    lines, level, comment = Lines(path), 0, []
    about = lines.take_comment()
    yield Item("file", path.name, about)
    while lines.at < len(lines.lines):
        text = lines.next()
        if not text:
            comment = []
            lines.take()
        elif text.startswith("//"):
            comment = lines.take_comment()
            if group(comment):
                yield group(comment)
            elif not lines.next():
                print(f"{path}:{lines.at}: warning: the comment belongs to no declaration", file=sys.stderr)
        elif text.startswith("#"):
            macro = lines.take_macro()
            if macro and comment:
                yield Item("macro", macro[1], comment)
            comment = []
        elif re.match(r"KROSAC_C_BEGIN|namespace krosac \{", text):
            yield Item("namespace", lines.take())
        elif re.match(r"KROSAC_C_END|\}  // namespace krosac", text):
            yield Item("end", lines.take())
        elif text in ("public:", "protected:", "private:"):
            yield Item("access", lines.take().strip())
        elif OPENING.match(text) or text.startswith("template") and OPENING.match(lines.lines[lines.at + 1]):
            opening = lines.take().strip()
            if not OPENING.match(opening):
                opening += " " + lines.take().strip()
            level += 1
            # The file's comment serves a class that has no comment of its own.
            yield Item("open", opening, comment or about)
            comment, about = [], []
        elif level and re.match("  " * (level - 1) + r"\}.*;$", lines.lines[lines.at]):
            level -= 1
            yield Item("close", lines.take().strip())
        else:
            declaration, behind = lines.take_declaration()
            for member in spelled_out(declaration):
                yield Item("member", member, behind or comment)


# ---- For Doxygen ----

def escaped(line):
    """Escapes a line for Doxygen; code between backquotes stays code."""
    parts = line.split("`")
    parts[::2] = (re.sub(r'([\\@#<>%*~|"])', r"\\\1", part) for part in parts[::2])
    return "`".join(parts)


def block(lines, command=""):
    """A Doxygen comment. Indented lines stay as they are typed."""
    print("/**" + command)
    for line in lines:
        print(line if line.startswith("    ") or not line else escaped(line))
    print("*/")


def for_doxygen(path):
    folder, hidden, grouped, outer = path.parent.name, False, False, []

    def close_group():
        nonlocal grouped
        if grouped:
            print("/**@}*/")
        grouped = False

    for item in items(path):
        if item.kind == "file":
            block(item.comment, f" @file {folder}/{item.text}\n")
        elif item.kind == "namespace":
            print(f"namespace krosac {{\n/** @addtogroup {folder} */\n/**@{{*/")
        elif item.kind == "end":
            print("/**@}*/\n}")
        elif item.kind == "group":
            close_group()
            block(item.comment, f" @name {item.text}\n")
            print("/**@{*/")
            grouped = True
        elif item.kind == "access":
            if (item.text != "public:") != hidden:
                close_group()
                hidden = not hidden
                print("/** @cond */" if hidden else "/** @endcond */")
            print(item.text)
        else:
            if item.kind == "close":
                close_group()
                if hidden != outer[-1]:
                    print("/** @endcond */")
                hidden = outer.pop()
            if item.kind == "open":
                outer.append(hidden)
            if item.comment:
                block(item.comment)
            # A macro is shown as the functions that a caller sees.
            print(f"#define {item.text}" if item.kind == "macro" else re.sub("KROSAC_API |KROSAC_CONSTANT ", "", item.text))


# ---- For the page of names ----

def arguments(parameters):
    """Returns the number of parameters; commas in templates do not count."""
    flat = re.sub(r"<[^<>]*>", "", re.sub(r"<[^<>]*>", "", parameters)).strip()
    return 0 if flat in ("", "void") else flat.count(",") + 1


def labelled(name, count):
    """Returns the labelled name: underscores separate labels, and missing labels are empty."""
    parts = name.split("_")
    labels = len(parts) if 2 <= len(parts) <= count else 1
    return (":".join(parts) if labels > 1 else name) + ":" * (count - labels + 1 if count else 0)


def labels_of(path):
    """Returns the labelled names of the methods by class, each with its name in C++."""
    found, owner, visible = {}, None, True
    for item in items(path):
        if item.kind == "open":
            is_object = re.search(r"(\w+)(?: final)? : public \w+ \{$", item.text)
            owner, visible = is_object and is_object[1], True
        elif item.kind == "close":
            owner = None
        elif item.kind == "access":
            visible = item.text == "public:"
        elif item.kind == "member" and owner and visible:
            method = re.search(r"(\w+)\((.*?)\)(?: const| override| \{|;)", item.text)
            if method:
                found.setdefault(owner, {})[labelled(method[1], arguments(method[2]))] = method[1]
    return found


def print_page(page):
    print(page.read_text().split(MARK)[0] + MARK)
    for path in public_headers():
        if path.parent.name == "platform":
            continue
        for owner, names in labels_of(path).items():
            print(f"\n## {owner}\n\n`krosac/{path.parent.name}/{path.name}`\n\n| labelled name | in C++ |\n|---|---|")
            for label, name in names.items():
                print(f"| `{label}` | `{name}` |")


if __name__ == "__main__":
    if sys.argv[1] == "--page":
        print_page(pathlib.Path(sys.argv[2]))
    else:
        for_doxygen(pathlib.Path(sys.argv[1]).resolve())
