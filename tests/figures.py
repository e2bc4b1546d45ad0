"""Every figure of every device is the same by the queries of the class, by the host library, in the JSON of typdesc and in
Python, from a GSD file and from the type file that is compiled of it.

Arguments: the program that prints queries, typdesc, a folder of GSD files, the folder of the Python package (none: without
Python). More folders may stand in TYPDESCRIPTOR_GSD_FOLDERS, parted by colons."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

# What no query tells: counts of what is listed, texts made of other figures, and what only GSD files have.
NOT_ASKED = re.compile(
    r"^(gsd|slots/count|features/dpv1|slots/preset/\d+/name|warnings/\d+/text)$|^gsd/|^diagnostics/types/|/allowed/"
    r"|^modules/\d+/channelErrors/|^(modules|blocks)/\d+/number$|/(slot|visible|changeable|help|setHelp|clearHelp|fullName|reference|infoText|mayBeShortened"
    r"|safetyParameters)$|/identifier/text$")
# Types of a GSD file that the class keeps as others, and in so many bits.
KEPT_AS = {"int8": ("uint8",), "int32": ("int16", "uint16"), "uint32": ("uint16",)}
failures = []


def run(*command):
    return subprocess.run(list(map(str, command)), check=True, capture_output=True).stdout


def flat(value, path=""):
    """The leaves of a tree by their paths. None, true and false are words, as the queries write them."""
    if isinstance(value, dict):
        return {key: leaf for name, item in value.items() for key, leaf in flat(item, f"{path}/{name}").items()}
    if isinstance(value, (list, tuple)):
        return {key: leaf for i, item in enumerate(value) for key, leaf in flat(item, f"{path}/{i}").items()}
    return {path[1:]: value if isinstance(value, str) else json.dumps(value)}


def readable(text):
    """A text of a type file as the host library hands it out."""
    try:
        text = text.decode("utf-8")
    except UnicodeDecodeError:
        text = text.decode("latin-1")
    return re.sub(r"[\x00-\x1f\x7f-\x9f]", "\N{REPLACEMENT CHARACTER}", text).rstrip(" ")


def queries(program, file):
    lines = run(program, "queries", file).split(b"\n")
    return {path.decode("ascii"): readable(value) for path, value in (line.split(b"\t", 1) for line in lines if line)}


def asked(device):
    """The figures of the JSON that queries can tell; bits and areas by their places, in the form in which the class keeps
    them: an area of one bit as texts of that bit, a wide one up to the end of its byte."""
    diagnostics = device["diagnostics"]
    rest = {**device, "diagnostics": {**diagnostics, "bits": [], "areas": []}}
    figures = flat(rest)
    for bit in diagnostics["bits"]:
        figures.update(flat({"set": bit["set"], "clear": bit["clear"]}, f"/diagnostics/bits/{bit['byte']}.{bit['bit']}"))
    for area in diagnostics["areas"]:
        byte, first, last = area["byte"], area["firstBit"], min(area["lastBit"], 7)
        texts = [{**text, "value": text["value"] % (2 << (last - first))} for text in area["texts"]]
        if first == last:
            for text in texts:
                figures[f"diagnostics/bits/{byte}.{first}/{'set' if text['value'] else 'clear'}"] = text["text"]
        else:
            figures.update(flat(texts, f"/diagnostics/areas/{byte}.{first}-{last}"))
    return {path: value for path, value in figures.items() if not NOT_ASKED.search(path)}


def area_of(path):
    """The path of the area, and the figure's own below its parameter; none where it is not about one."""
    found = re.match(r"(parameters|blocks/\d+)/parameters/(\d+)/(.*)", path)
    return (found[1], int(found[2]), found[3]) if found else (None, None, None)


def is_kept(path, value, answer, figures, is_gsd):
    """Whether a query's answer is all that the class can say of a figure: it keeps fewer types, and as much of a text as has
    room, after leaving out some blanks. A type file alone does not say which of its types are signed."""
    area, number, figure = area_of(path)
    if figure is not None and answer is not None:
        kind = figures[f"{area}/parameters/{number}/type"]
        if re.search("(default|minimum|maximum|value)$", figure):
            return (kind in KEPT_AS or int(value) < 0) and is_congruent(figure, kind, value, answer)
        if figure == "type":
            return is_gsd and answer in KEPT_AS.get(kind, ())
    if not is_gsd:
        return False
    if re.match(r"diagnostics/bits/", path) and not answer: # it does not read Unit_Diag_Not_Bit
        return path.endswith("/clear") or not value
    if re.match(r"(parameters|blocks/\d+)/bytes/\d+$", path):
        return is_in_kept_parameter(path, figures)
    is_text = answer and re.search(r"/(name|text|set|clear|orderNumber)$", path)
    return bool(is_text) and len(answer) >= 20 and value.replace(" ", "").startswith(answer.replace(" ", ""))


def is_congruent(figure, kind, value, answer):
    """Whether a number is kept in the bits of its type, those of the texts always in 16."""
    modulus = 1 << (8 if kind in ("int8", "uint8") and not figure.startswith("texts") else 16)
    return (int(value) - int(answer)) % modulus == 0


def is_in_kept_parameter(path, figures):
    area, byte = path.split("/bytes/")
    for key, kind in figures.items():
        if key.startswith(f"{area}/parameters/") and key.endswith("/type") and kind in KEPT_AS:
            begin = int(figures[key[:-len("type")] + "byte"])
            if begin <= int(byte) < begin + (1 if kind == "int8" else 4):
                return True
    return False


def compare(file, by_queries, device):
    figures = asked(device)
    for path in sorted(set(figures) | set(by_queries)):
        value, answer = figures.get(path), by_queries.get(path)
        if value == answer:
            continue
        if value is None or not is_kept(path, value, answer, figures, device["gsd"] is not None):
            failures.append(f"{file}: {path}: a query answers {answer}, the host library has {value}")
    return len(figures)


def same(file, name, left, right):
    left, right = flat(left), flat(right)
    for path in sorted(set(left) | set(right)):
        if left.get(path) != right.get(path):
            failures.append(f"{file}: {path}: {left.get(path)} in {name}, {right.get(path)} by the host library")


# The attributes of Python, in the form of the JSON.

def each(function, items):
    return [function(item) for item in items]


def texts_of(texts):
    return [{"value": text.value, "text": text.text, "help": text.help} for text in texts]


def data_of(data):
    return data and {"count": data.count, "unit": "word" if data.in_words else "byte", "bytes": data.bytes,
                     "consistency": "whole" if data.is_consistent else "unit"}


def identifier_of(identifier):
    return {"format": identifier.format, "bytes": list(identifier.file_bytes), "wireBytes": list(identifier.wire_bytes),
            "input": data_of(identifier.input), "output": data_of(identifier.output),
            "manufacturerBytes": list(identifier.manufacturer_bytes), "text": str(identifier)}


def block_of(item):
    return None if item.block is None else item.block + 1


def parameter_of(parameter):
    figures = {"name": parameter.name, "type": parameter.type, "byte": parameter.byte, "default": parameter.default,
               "minimum": parameter.minimum, "maximum": parameter.maximum, "allowed": parameter.allowed,
               "changeable": parameter.is_changeable, "visible": parameter.is_visible,
               "mayBeShortened": parameter.may_be_shortened, "texts": texts_of(parameter.texts)}
    if parameter.type in ("bit", "bitGroup"):
        figures.update(firstBit=parameter.first_bit, bitCount=parameter.bit_count)
    return figures


def parameters_of(area):
    return {"bytes": list(area.bytes), "parameters": each(parameter_of, area.parameters)}


def module_of(number, module):
    figures = {"number": number, "name": module.name, "fullName": module.full_name, "reference": module.reference,
               "infoText": module.info_text, "channelErrors": texts_of(module.channel_texts),
               "safetyParameters": module.has_safety_parameters, "fixed": module.is_fixed,
               "source": "orderNumberList" if module.is_from_order_list else "moduleList"}
    if module.kgp:
        return {**figures, "parts": [], "kgp": {"number": module.kgp.number, "values": list(module.kgp.values),
                                                "block": block_of(module.parts[0])}}
    return {**figures, "parts": [{"text": part.text, "orderNumber": part.order_number, "block": block_of(part),
                                  "identifier": identifier_of(part.identifier)} for part in module.parts]}


def diagnosis_of(texts):
    return {"bits": [{"byte": bit.byte, "bit": bit.bit, "set": bit.set, "clear": bit.clear, "setHelp": bit.set_help,
                      "clearHelp": bit.clear_help} for bit in texts.bits],
            "areas": [{"byte": area.byte, "firstBit": area.first_bit, "lastBit": area.last_bit,
                       "texts": texts_of(area.texts)} for area in texts.areas]}


def numbers_of(items):
    return [{"name": item.name, "value": item.value} for item in items]


def gsd_of(gsd):
    return gsd and {
        "modelName": gsd.model_name, "vendorName": gsd.vendor_name, "revision": gsd.revision,
        "hardwareRelease": gsd.hardware_release, "softwareRelease": gsd.software_release, "infoText": gsd.info_text,
        "maxModules": gsd.max_module, "maxTsdr": numbers_of(gsd.max_tsdr), "others": numbers_of(gsd.others),
        "safetyParameters": gsd.has_safety_parameters,
        "slotDefinitions": [{"slot": rule.slot, "name": rule.name, "preset": rule.preset,
                             "allowed": [{"first": first, "last": last} for first, last in rule.allowed]}
                            for rule in gsd.slots]}


def limits_of(device):
    names = ("maxModules", "maxInputBytes", "maxInputBits", "maxOutputBytes", "maxOutputBits", "maxDataBytes",
             "maxDiagnosticBytes", "userParameterBytes", "minSlaveIntervalMicroseconds", "eterDelay", "maxResponseDelay")
    limits = {name: getattr(device, re.sub("([A-Z])", r"_\1", name).lower()) for name in names}
    return {**limits, "stationParameterBytes": len(device.parameters.bytes)}


def python_of(device, features):
    numbering = device.slot_numbering
    return {
        "identification": {
            "modelName": device.model_name, "vendorName": device.vendor_name, "identNumber": device.ident_number,
            "orderNumber": device.order_number, "family": device.family, "periphery": device.periphery,
            "stationType": device.station_type, "chip": device.chip, "bitmapName": device.bitmap_name,
            "libraryName": device.library_name, "formatVersion": device.format_version,
            "gsdRevision": device.gsd_revision},
        "features": {**{name: name in device.features for name in features}, "modular": device.is_modular,
                     "dpv1": device.is_dpv1},
        "baudRates": device.baud_rates,
        "limits": limits_of(device),
        "slots": {"offset": device.slot_offset, "count": device.slot_count, "kgpSlots": device.kgp_slots,
                  "numbering": numbering and {"text": numbering.text, "value1": numbering.value1,
                                              "value2": numbering.value2, "digit": numbering.digit},
                  "preset": [{"slot": number, "fixed": slot.is_fixed, "name": slot.name, "block": block_of(slot),
                              "orderNumber": slot.order_number, "identifier": identifier_of(slot.identifier)}
                             for number, slot in enumerate(device.preset_slots, 1)]},
        "modules": [module_of(number, module) for number, module in enumerate(device.modules, 1)],
        "parameters": parameters_of(device.parameters),
        "blocks": [{"number": number, **parameters_of(block),
                    "slotNumbers": [{"byte": field.byte, "byteCount": field.byte_count} for field in block.slot_numbers]}
                   for number, block in enumerate(device.blocks, 1)],
        "diagnostics": {**diagnosis_of(device.diagnosis_texts), "channelErrors": texts_of(device.channel_texts),
                        "types": [{"number": kind.number, **diagnosis_of(kind.texts)}
                                  for kind in device.diagnosis_types]},
        "gsd": gsd_of(device.gsd),
        "warnings": [{"line": warning.line, "code": warning.code, "text": warning.text} for warning in device.warnings]}


def main(program, typdesc, examples, package=""):
    if package:
        sys.path.insert(0, package)
        import typdescriptor  # pylint: disable=import-outside-toplevel
    extra = [folder for folder in os.environ.get("TYPDESCRIPTOR_GSD_FOLDERS", "").split(":") if folder]
    sources = [file for folder in (examples, *extra) for file in sorted(pathlib.Path(folder).iterdir())
               if re.search(r"\.gs[a-z]$", file.name, re.IGNORECASE)]
    count = left_out = 0
    with tempfile.TemporaryDirectory() as scratch:
        for number, source in enumerate(sources):
            compiled = pathlib.Path(scratch) / f"{number}.410"
            if subprocess.run([typdesc, "compile", source, "-o", compiled], capture_output=True, check=False).returncode:
                left_out += 1 # the library refuses it
                continue
            for file in (source, compiled):
                device = json.loads(run(program, "device", file))
                count += compare(file, queries(program, file), device)
                same(file, "typdesc show --json", json.loads(run(typdesc, "show", "--json", file)), device)
                if package:
                    same(file, "Python", python_of(typdescriptor.load(file), device["features"]), device)
    examples_left_out = left_out if not extra else 0
    if count < 100 * (len(sources) - left_out) or examples_left_out:
        failures.append(f"only {count} figures of {len(sources)} files, of which {left_out} are refused")
    print("\n".join(failures[:100]) or
          f"{count} figures of {len(sources) - left_out} files, twice each, are the same everywhere"
          f"{'' if package else ' but in Python, which was not built'}; {left_out} files are refused")
    return bool(failures)


sys.exit(main(*sys.argv[1:]))
