"""A host in Python without any extension: the C interface through ctypes. Prints a device's modules and parameters.

usage: host.py LIBRARY FILE
"""

import ctypes
import sys
from ctypes import POINTER, byref, c_char, c_char_p, c_int, c_int8, c_int32, c_uint8, c_uint16, c_void_p


class Header(ctypes.Structure):
    """SLAVE_TYPE_HEADER_INFO"""
    _fields_ = [("version", c_char * 5), ("model_name", c_char * 18), ("vendor_name", c_char * 11),
                ("family", c_char * 11), ("periphery", c_char * 11), ("station_type", c_char * 16),
                ("ident_number", c_uint16), ("maker_device", c_int32), ("header_cnf", c_int32)]


class Identifier(ctypes.Structure):
    """CSLAVE_SLOT_PRESET_TYPE"""
    _fields_ = [("kind", c_int32), ("identifier", c_uint8), ("length_byte_1", c_int8), ("length_byte_2", c_int8),
                ("mfr_data", c_uint8 * 14), ("x_slot", c_int32)]


class Module(ctypes.Structure):
    """MLFB_ITEM"""
    _fields_ = [("mlfb", c_char * 31), ("preset", Identifier), ("sp_index", c_int32), ("kgp_id", c_uint16),
                ("kgp_data", c_uint8 * 3)]


class Parameter(ctypes.Structure):
    """_parastruct"""
    _fields_ = [("reference", c_char * 6), ("name", c_char * 31), ("data_type", c_char * 6),
                ("default", c_char * 9), ("minimum", c_char * 7), ("maximum", c_char * 7), ("help_number", c_int32)]


class HelpMessage(ctypes.Structure):
    """PARA_HELPMESSAGE_TYPE"""
    _fields_ = [("value", c_uint16), ("text", c_char * 31)]


class Library:
    """The functions that this host calls, with their types."""

    def __init__(self, path):
        self._library = ctypes.CDLL(path)
        device = c_void_p
        self._declare("open", device, c_char_p, c_int, c_char_p)
        self._declare("close", None, device)
        self._declare("resultText", c_char_p, c_int)
        self._declare("checkTypeFileContents", c_int, device)
        self._declare("getSlaveTypeHeader", c_uint16, device, POINTER(Header))
        self._declare("getMLFBListCnt", c_int, device)
        self._declare("getMLFBListItem", c_int, device, c_int, POINTER(Module))
        self._declare("getParaStructCnt", c_int, device)
        self._declare("getParaStruct", c_int, device, c_int, POINTER(Parameter))
        self._declare("getHelpMessageCnt", c_int, device, c_int)
        self._declare("getParaHelpMessage", c_int, device, c_int, c_int, POINTER(HelpMessage))

    def _declare(self, name, result, *arguments):
        function = getattr(self._library, "typdescriptor_" + name)
        function.restype = result
        function.argtypes = arguments
        setattr(self, name, function)


def text(characters):
    """The library's texts are 8-bit characters of Latin-1."""
    return characters.decode("latin-1")


def print_device(library, device):
    header = Header()
    library.getSlaveTypeHeader(device, byref(header))
    print(f"{text(header.model_name)} by {text(header.vendor_name)}, ident number 0x{header.ident_number:04X}")
    for i in range(library.getMLFBListCnt(device)):
        module = Module()
        library.getMLFBListItem(device, i, byref(module))
        print(f"module {text(module.mlfb)} identifier 0x{module.preset.identifier:02X}")
    for i in range(library.getParaStructCnt(device)):
        prm = Parameter()
        library.getParaStruct(device, i, byref(prm))
        print(f"parameter {text(prm.reference)[:5]} {text(prm.name)[:30]} {text(prm.data_type)[:5]} = "
              f"{text(prm.default)} ({text(prm.minimum)} to {text(prm.maximum)})")
        for line in range(library.getHelpMessageCnt(device, prm.help_number)):
            message = HelpMessage()
            library.getParaHelpMessage(device, prm.help_number, line, byref(message))
            print(f"    {message.value:5} {text(message.text)}")


def main(arguments):
    if len(arguments) != 3:
        print(__doc__, file=sys.stderr)
        return 2
    sys.stdout.reconfigure(encoding="latin-1", newline="\n")
    library = Library(arguments[1])
    device = library.open(arguments[2].encode(), 0, None)
    try:
        result = library.checkTypeFileContents(device)
        if result != 0:
            print(f"{arguments[2]}: error: {text(library.resultText(result))} ({result})", file=sys.stderr)
            return 1
        print_device(library, device)
        return 0
    finally:
        library.close(device)


if __name__ == "__main__":
    sys.exit(main(sys.argv))
