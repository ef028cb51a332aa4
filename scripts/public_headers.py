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
FOLDERS = "platform sacio timegeo dsp traveltimes source seismogram catalog collections".split()
FIELD = re.compile(r"KROSAC_FIELD\((.+), (\w+), (\w+)\);")
TABLE = re.compile(r"KROSAC_TT_TABLE\((\w+), \d+\)$")
OPENING = re.compile(r"^\s*(typedef struct|class|struct) .*\{$")
GROUP = re.compile(r"---- (.+?)(?: \([^)]*\.cc\))? ----")


def public_headers():
    root = pathlib.Path(__file__).resolve().parent.parent
    for folder in FOLDERS:
        yield from sorted(p for p in (root / folder).glob("*.h") if not p.stem.endswith("Internal"))


class Item:
    """A piece of a header: file, namespace, group, open (a class), access, close, macro or member, with its comment."""

    def __init__(self, kind, text="", comment=()):
        self.kind, self.text, self.comment = kind, text, list(comment)


def is_whole(text):
    return TABLE.match(text) or text.endswith((";", "}")) and text.count("{") == text.count("}") and text.count("(") == text.count(")")


def comment_text(lines):
    return [re.sub(r"^\s*// ?", "", line) for line in lines]


def trailing(line):
    """A line of code and the comment behind it."""
    code, mark, comment = line.partition("  // ")
    return code.rstrip(), [comment] if mark else []


def spelled_out(declaration):
    """The members that a declaration makes: the functions of a macro, or one variable after the other."""
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


def items(path):
    lines = path.read_text().splitlines()
    level, at, comment = 0, 0, []
    while at < len(lines) and lines[at].startswith("//"):
        at += 1
    about = comment_text(lines[:at])
    yield Item("file", path.name, about)
    while at < len(lines):
        line = lines[at]
        text, at = line.strip(), at + 1
        if not text:
            comment = []
        elif text.startswith("//"):
            first = at - 1
            while at < len(lines) and lines[at].strip().startswith("//"):
                at += 1
            comment = comment_text(lines[first:at])
            title = GROUP.match(" ".join(comment))
            if title:
                ends = next(i for i, part in enumerate(comment) if part.endswith("----"))
                yield Item("group", title[1], comment[ends + 1:])
                comment = []
            elif at == len(lines) or not lines[at].strip():
                print(f"{path}:{first + 1}: warning: the comment belongs to no declaration", file=sys.stderr)
        elif text.startswith("#"):
            while line.endswith("\\"):
                line, at = lines[at], at + 1
            define = re.match(r"#\s*define (\w+(?:\([^)]*\))?)(.*)", text)
            if define and comment:
                yield Item("macro", define[1], comment)
                comment = []
        elif re.match(r"KROSAC_C_BEGIN|namespace krosac \{", text):
            yield Item("namespace")
        elif re.match(r"KROSAC_C_END|\}  // namespace krosac", text):
            yield Item("end")
        elif text in ("public:", "protected:", "private:"):
            yield Item("access", text)
        elif OPENING.match(line) or (text.startswith("template") and OPENING.match(lines[at])):
            if text.startswith("template"):
                text, at = text + " " + lines[at].strip(), at + 1
            level += 1
            # The comment of the file is that of its class, where this has none of its own.
            yield Item("open", text, comment or about)
            comment, about = [], []
        elif level and re.match(r"\}.*;$", text) and len(line) - len(line.lstrip()) == 2 * (level - 1):
            level -= 1
            yield Item("close", text)
        else:
            code, behind = trailing(line)
            declaration = code.strip()
            while not is_whole(declaration) and at < len(lines):
                code, more = trailing(lines[at])
                behind, at = behind + more, at + 1
                declaration += " " + code.strip()
            for member in spelled_out(declaration):
                yield Item("member", member, behind or comment)


# ---- For Doxygen ----

def escaped(line):
    """The line as Doxygen shows it as it stands; code between backquotes stays code."""
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
            # A macro is shown as what a caller sees of it.
            print(f"#define {item.text}" if item.kind == "macro" else re.sub("KROSAC_API |KROSAC_SAC_CONSTANT ", "", item.text))


# ---- For the page of names ----

def arguments(parameters):
    """The number of parameters, where commas in templates do not count."""
    flat = re.sub(r"<[^<>]*>", "", re.sub(r"<[^<>]*>", "", parameters)).strip()
    return 0 if flat in ("", "void") else flat.count(",") + 1


def labelled(name, count):
    """The labelled name: an underscore parts two labels, labels that are left over are empty."""
    parts = name.split("_")
    labels = len(parts) if 2 <= len(parts) <= count else 1
    return (":".join(parts) if labels > 1 else name) + ":" * (count - labels + 1 if count else 0)


def labels_of(path):
    """The labelled names of the methods by class, each with its name in C++."""
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
            print(f"\n## {owner}\n\n`{path.parent.name}/{path.name}`\n\n| labelled name | in C++ |\n|---|---|")
            for label, name in names.items():
                print(f"| `{label}` | `{name}` |")


if __name__ == "__main__":
    if sys.argv[1] == "--page":
        print_page(pathlib.Path(sys.argv[2]))
    else:
        for_doxygen(pathlib.Path(sys.argv[1]).resolve())
