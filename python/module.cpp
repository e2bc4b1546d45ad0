// The module itself: typdescriptor/__init__.py makes it a package.

#include "bindings.h"

PYBIND11_MODULE(_native, module)
{
    const pybind11::object name = module.attr("__name__");
    module.attr("__name__") = "typdescriptor"; // where people find the classes
    bindErrors(module);
    ValueClass<typdescriptor::Device> device = bindDevice(module);
    bindConfiguration(module, device);
    bindDiagnosis(module, device);
    bindCheck(module);
    module.attr("__name__") = name;
}
