"""Writes what the parameters of every OpenGL entry point mean, as rows of C++ macros.

A header gives the C type of a parameter; whether a GLuint is an enumerator or a number, and how many
elements a pointer has, stands only in the OpenGL registry that comes with the generator glad.

Usage: gl_signatures.py <generated gl.h> <entry_points.inc> <output>

The rows (read by gl_signatures.cpp):
  VELLIS_GL_COMMAND(name, first, count)        an entry point and its rows below, in the order of
                                               entry_points.inc
  VELLIS_GL_PARAMETER(form, meaning, group, argument, factor)
  VELLIS_GL_ENUM(name)                         the one name of a value, by rising value
  VELLIS_GL_GROUP(group)                       a group that has names of its own
  VELLIS_GL_GROUP_ENUM(group, name)            a name that holds in that group only, or a bit of it,
                                               by rising value within each group
  VELLIS_GL_PNAME(name, count, meaning, group) what the values are that a parameter name stands for,
                                               by rising value
"""

import os
import re
import sys
import xml.etree.ElementTree as ElementTree

import glad

# Below this, values mean something else in every group: 1 is GL_LINES, GL_ONE and GL_TRUE.
FIRST_UNAMBIGUOUS = 0x100
LAST_UNAMBIGUOUS = 0xFFFFFFFE

# Names preferred over others of the same value, against the rule of canonical_names().
PREFERRED = {
    "GL_DRAW_FRAMEBUFFER_BINDING",
    "GL_POINT_SIZE_GRANULARITY",
    "GL_POINT_SIZE_RANGE",
    "GL_VERTEX_PROGRAM_POINT_SIZE",
}

# The parameter names whose values are several, or no numbers: (values, meaning, group).
PNAMES = {
    "GL_AMBIENT": (4, "Number", None),
    "GL_AMBIENT_AND_DIFFUSE": (4, "Number", None),
    "GL_COLOR": (4, "Number", None),
    "GL_COLOR_INDEXES": (3, "Number", None),
    "GL_COMBINE_ALPHA": (1, "Enum", None),
    "GL_COMBINE_RGB": (1, "Enum", None),
    "GL_COORD_REPLACE": (1, "Boolean", None),
    "GL_DEPTH_TEXTURE_MODE": (1, "Enum", None),
    "GL_DIFFUSE": (4, "Number", None),
    "GL_EMISSION": (4, "Number", None),
    "GL_EYE_PLANE": (4, "Number", None),
    "GL_FOG_COLOR": (4, "Number", None),
    "GL_FOG_COORD_SRC": (1, "Enum", None),
    "GL_FOG_MODE": (1, "Enum", None),
    "GL_GENERATE_MIPMAP": (1, "Boolean", None),
    "GL_LIGHT_MODEL_AMBIENT": (4, "Number", None),
    "GL_LIGHT_MODEL_COLOR_CONTROL": (1, "Enum", None),
    "GL_LIGHT_MODEL_LOCAL_VIEWER": (1, "Boolean", None),
    "GL_LIGHT_MODEL_TWO_SIDE": (1, "Boolean", None),
    "GL_MAP_COLOR": (1, "Boolean", None),
    "GL_MAP_STENCIL": (1, "Boolean", None),
    "GL_OBJECT_PLANE": (4, "Number", None),
    "GL_OPERAND0_ALPHA": (1, "Enum", None),
    "GL_OPERAND0_RGB": (1, "Enum", None),
    "GL_OPERAND1_ALPHA": (1, "Enum", None),
    "GL_OPERAND1_RGB": (1, "Enum", None),
    "GL_OPERAND2_ALPHA": (1, "Enum", None),
    "GL_OPERAND2_RGB": (1, "Enum", None),
    "GL_PACK_LSB_FIRST": (1, "Boolean", None),
    "GL_PACK_SWAP_BYTES": (1, "Boolean", None),
    "GL_POINT_DISTANCE_ATTENUATION": (3, "Number", None),
    "GL_POINT_SPRITE_COORD_ORIGIN": (1, "Enum", None),
    "GL_POSITION": (4, "Number", None),
    "GL_SPECULAR": (4, "Number", None),
    "GL_SPOT_DIRECTION": (3, "Number", None),
    "GL_SRC0_ALPHA": (1, "Enum", None),
    "GL_SRC0_RGB": (1, "Enum", None),
    "GL_SRC1_ALPHA": (1, "Enum", None),
    "GL_SRC1_RGB": (1, "Enum", None),
    "GL_SRC2_ALPHA": (1, "Enum", None),
    "GL_SRC2_RGB": (1, "Enum", None),
    "GL_TEXTURE_BORDER_COLOR": (4, "Number", None),
    "GL_TEXTURE_COMPARE_FUNC": (1, "Enum", None),
    "GL_TEXTURE_COMPARE_MODE": (1, "Enum", "TextureCompareMode"),
    "GL_TEXTURE_ENV_COLOR": (4, "Number", None),
    "GL_TEXTURE_ENV_MODE": (1, "Enum", None),
    "GL_TEXTURE_GEN_MODE": (1, "Enum", None),
    "GL_TEXTURE_MAG_FILTER": (1, "Enum", None),
    "GL_TEXTURE_MIN_FILTER": (1, "Enum", None),
    "GL_TEXTURE_WRAP_R": (1, "Enum", None),
    "GL_TEXTURE_WRAP_S": (1, "Enum", None),
    "GL_TEXTURE_WRAP_T": (1, "Enum", None),
    "GL_UNPACK_LSB_FIRST": (1, "Boolean", None),
    "GL_UNPACK_SWAP_BYTES": (1, "Boolean", None),
}

# Groups of parameters that the registry gives an integer type to, but that hold enumerators.
ENUM_GROUPS = {"InternalFormat"}

# Parameters that are offsets into the buffer bound at the matching target, where one is bound.
UNPACKED = re.compile(r"gl(Bitmap|DrawPixels|PolygonStipple|(Compressed)?Tex(Sub)?Image[123]D)$")
PACKED = re.compile(r"gl(ReadPixels|GetTexImage|GetCompressedTexImage|GetPolygonStipple)$")
OFFSET_NAMES = {"pointer", "indices"}

# The kinds of objects, by the registry's class of the parameters that take their names.
OBJECT_KINDS = {
    "buffer": "Buffer",
    "framebuffer": "Framebuffer",
    "program": "Program",
    "query": "Query",
    "renderbuffer": "Renderbuffer",
    "shader": "Shader",
    "texture": "Texture",
    "vertex array": "VertexArray",
}


class Registry:
    """The enumerators of the registry that the generated header defines."""

    def __init__(self, root, header):
        defined = set(re.findall(r"#define (GL_[A-Za-z0-9_]+) ", header))
        self.values = {}
        self.groups = {}
        self.bits = set()
        for block in root.findall("enums"):
            for enum in block.findall("enum"):
                if enum.get("name") in defined and enum.get("api") in (None, "gl"):
                    self._add(block, enum)
        self.versions = {}
        for feature in root.findall("feature"):
            if feature.get("api") == "gl":
                for enum in feature.iter("enum"):
                    self.versions.setdefault(enum.get("name"), float(feature.get("number")))

    def _add(self, block, enum):
        name = enum.get("name")
        self.values[name] = int(enum.get("value"), 0)
        if block.get("type") == "bitmask":
            self.bits.add(name)
        for group in (enum.get("group") or block.get("group") or "").split(","):
            self.groups.setdefault(group, []).append(name)

    def canonical_names(self):
        """One name for each value that means the same everywhere."""
        names = {}
        for name, value in self.values.items():
            if FIRST_UNAMBIGUOUS <= value <= LAST_UNAMBIGUOUS and name not in self.bits:
                names.setdefault(value, []).append(name)
        return {value: min(candidates, key=self._rank) for value, candidates in names.items()}

    def _rank(self, name):
        """The newest name that GL 2.1 knows comes first, names of extensions come last."""
        version = self.versions.get(name)
        if name in PREFERRED:
            return (0, 0.0)
        if version is None:
            return (3, 0.0)
        return (1, -version) if version <= 2.1 else (2, version)


class Parameter:
    """One parameter of an entry point, as the registry has it."""

    def __init__(self, command, element):
        self.command = command
        self.name = element.find("name").text
        self.type = "".join(element.itertext())[: -len(self.name)].strip()
        self.group = element.get("group")
        self.length = element.get("len") or ""
        self.is_pointer = "*" in self.type
        self.is_input = "const" in self.type
        self.object_class = element.get("class")

    def object_kind(self):
        """The kind of the objects whose names the call uses here; None where it uses none, but makes
        them or asks whether they are there."""
        is_used = not self.is_pointer or self.is_input
        if not is_used or re.match(r"glIs[A-Z]", self.command):
            return None
        return OBJECT_KINDS.get(self.object_class)

    def row(self, names):
        """(form, meaning, group, argument, factor)"""
        if not self.is_pointer:
            meaning, argument = self._meaning(names)
            form = "Offset" if self.type == "GLsync" else "Value"
            return (form, meaning, self.group, argument, 0)
        if self.is_input:
            return self._input(names)
        if re.match(r"glGen[A-Z]\w*s$", self.command) and "GLuint" in self.type:
            return ("Array", "Number", None, names.index(self.length), 1)
        form = "PixelOutput" if PACKED.match(self.command) else "Output"
        return (form, "Number", None, -1, 0)

    def _meaning(self, names):
        """What a value, or each element of an array, is, and the argument that it depends on."""
        if "GLbitfield" in self.type and self.group:
            return "Bits", -1
        if "GLboolean" in self.type:
            return "Boolean", -1
        if "GLenum" in self.type or self.group in ENUM_GROUPS:
            return "Enum", -1
        if self.name in ("param", "params") and "pname" in names:
            return "ByPname", names.index("pname")
        return "Number", -1

    def _input(self, names):
        if "GLchar" in self.type:
            if self.type.count("*") == 1:
                return ("Text", "Number", None, -1, 0)
            return ("Texts", "Number", None, *self._count(names))
        if UNPACKED.match(self.command):
            return ("PixelInput", "Number", None, -1, 0)
        if self.type == "const void *":
            return ("Offset" if self.name in OFFSET_NAMES else "Data", "Number", None, -1, 0)
        count = self._count(names)
        if count is None:
            return ("Data", "Number", None, -1, 0)
        return ("Array", self._meaning(names)[0], self.group, *count)

    def _count(self, names):
        """The number of elements: an argument times a factor, a factor alone, or (factor 0) the
        number of values that the parameter name in an argument stands for."""
        if self.length.isdigit():
            return (-1, int(self.length))
        match = re.fullmatch(r"(\w+)\*(\d+)", self.length)
        if match:
            return (names.index(match[1]), int(match[2]))
        match = re.fullmatch(r"(?:COMPSIZE\()?(\w+)\)?", self.length)
        if match is None:
            return None
        return (names.index(match[1]), 0 if match[1] in ("pname", "buffer") else 1)


class Groups:
    """The groups that name a value as no other does, and the names in them."""

    def __init__(self, registry, canonical):
        self._registry = registry
        self._canonical = canonical
        self.names = {}

    def use(self, group, meaning):
        """The group to write for a parameter: None where the canonical names say it all."""
        if group is None or meaning not in ("Enum", "Bits"):
            return None
        if group not in self.names:
            self.names[group] = self._own_names(group, meaning)
        return group if self.names[group] else None

    def _own_names(self, group, meaning):
        own = {}
        for name in self._registry.groups.get(group, []):
            value = self._registry.values[name]
            is_bit = meaning == "Bits" and value != 0
            if is_bit or value not in self._canonical:
                own.setdefault(value, name)
        return [own[value] for value in sorted(own)]


def commands(root, names):
    """The parameters of each entry point of that name."""
    found = {}
    for command in root.find("commands"):
        name = command.find("proto/name").text
        if name in names:
            found[name] = [Parameter(name, element) for element in command.findall("param")]
    missing = [name for name in names if name not in found]
    if missing:
        sys.exit("The OpenGL registry does not know " + ", ".join(missing))
    return found


def write_rows(out, macro, rows):
    for row in rows:
        out.append(f"{macro}({', '.join(str(field) for field in row)})")


def main(header_path, entry_points_path, output_path):
    with open(header_path, encoding="utf-8") as file:
        header = file.read()
    with open(entry_points_path, encoding="utf-8") as file:
        names = re.findall(r"VELLIS_ENTRY_POINT\((\w+),", file.read())
    registry_path = os.path.join(os.path.dirname(glad.__file__), "files", "gl.xml")
    root = ElementTree.parse(registry_path).getroot()

    registry = Registry(root, header)
    canonical = registry.canonical_names()
    groups = Groups(registry, canonical)
    signatures = commands(root, names)

    command_rows, parameter_rows = [], []
    for name in names:
        parameters = signatures[name]
        command_rows.append((name, len(parameter_rows), len(parameters)))
        parameter_names = [parameter.name for parameter in parameters]
        for parameter in parameters:
            form, meaning, group, argument, factor = parameter.row(parameter_names)
            group = groups.use(group, meaning) or "None"
            kind = parameter.object_kind()
            named = f"ObjectKind::{kind}" if kind else "std::nullopt"
            parameter_rows.append((form, meaning, group, argument, factor, named))
    if all(row[-1] == "std::nullopt" for row in parameter_rows):
        sys.exit("The OpenGL registry does not say which parameters are names of objects: install a "
                 "newer glad")
    pname_rows = [
        (name, count, meaning, groups.use(group, meaning) or "None")
        for name, (count, meaning, group) in PNAMES.items()
    ]
    pname_rows.sort(key=lambda row: registry.values[row[0]])
    used = [group for group in sorted(groups.names) if groups.names[group]]

    tables = {
        "VELLIS_GL_COMMAND": command_rows,
        "VELLIS_GL_PARAMETER": parameter_rows,
        "VELLIS_GL_ENUM": [(canonical[value],) for value in sorted(canonical)],
        "VELLIS_GL_GROUP": [(group,) for group in used],
        "VELLIS_GL_GROUP_ENUM": [(group, name) for group in used for name in groups.names[group]],
        "VELLIS_GL_PNAME": pname_rows,
    }
    out = ["// Made by gl_signatures.py from the OpenGL registry. A macro that is not defined is empty."]
    for macro in tables:
        out += [f"#ifndef {macro}", f"#define {macro}(...)", "#endif"]
    for macro, rows in tables.items():
        write_rows(out, macro, rows)
    out += [f"#undef {macro}" for macro in tables]
    with open(output_path, "w", encoding="utf-8") as file:
        file.write("\n".join(out) + "\n")


if __name__ == "__main__":
    main(*sys.argv[1:])
