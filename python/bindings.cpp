#include "bindings.h"

#include "host/loadDevice.h"
#include "host/plan.h"

namespace py = pybind11;
using namespace typdescriptor;

namespace {

/// An exception class of the module. It lives as long as the interpreter does.
py::handle makeException(py::module_& module, const char* name, PyObject* base, const char* doc)
{
    const std::string qualified = std::string("typdescriptor.") + name;
    const py::handle type = PyErr_NewExceptionWithDoc(qualified.c_str(), doc, base, nullptr);
    if (!type)
        throw py::error_already_set();
    module.add_object(name, type);
    return type;
}

} // namespace

py::str textOf(const std::string& bytes)
{
    const auto size = static_cast<Py_ssize_t>(bytes.size());
    PyObject* text = PyUnicode_DecodeUTF8(bytes.data(), size, nullptr);
    if (text == nullptr) {
        PyErr_Clear();
        text = PyUnicode_DecodeLatin1(bytes.data(), size, nullptr);
    }
    if (text == nullptr)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(text);
}

std::vector<std::uint8_t> bytesFrom(const py::bytes& bytes)
{
    const std::string text = bytes;
    return {text.begin(), text.end()};
}

void bindErrors(py::module_& module)
{
    static py::handle loadError;
    static py::handle choiceError;
    loadError =
        makeException(module, "LoadError", PyExc_Exception,
                      "There is no device in a file. code: the library's result code, 0 when the file cannot be "
                      "read at all; line: of the GSD file, from 1, or None.");
    choiceError =
        makeException(module, "ChoiceError", PyExc_ValueError,
                      "A choice that cannot be; the text says why, and what would be allowed. name: stable, for "
                      "programs; slot: 0 for the station, or None; parameter, value, allowed: texts.");
    py::register_exception_translator([](std::exception_ptr pointer) {
        try {
            std::rethrow_exception(pointer);
        } catch (const LoadError& error) {
            py::object raised = loadError(textOf(error.what()));
            raised.attr("code") = error.code;
            raised.attr("line") = error.line > 0 ? py::cast(error.line) : py::none();
            PyErr_SetObject(loadError.ptr(), raised.ptr());
        } catch (const ChoiceError& error) {
            py::object raised = choiceError(textOf(error.what()));
            raised.attr("name") = error.refusal.name;
            raised.attr("slot") = error.refusal.slot;
            raised.attr("parameter") = error.refusal.parameter;
            raised.attr("value") = error.refusal.value;
            raised.attr("allowed") = error.refusal.allowed;
            PyErr_SetObject(choiceError.ptr(), raised.ptr());
        }
    });
}
