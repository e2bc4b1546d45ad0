// What the parts of the Python module share.
//
// Values of the host library become read-only objects: a list of them a tuple whose items keep their owner alive, so that
// nothing is copied; bytes become bytes; texts are UTF-8 already.

#pragma once

#include "host/device.h"

#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <cstdint>
#include <string>
#include <vector>

/// UTF-8, or else ISO 8859-1: a text with bytes out of a file.
pybind11::str textOf(const std::string& bytes);

inline pybind11::bytes bytesOf(const std::vector<std::uint8_t>& bytes)
{
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::vector<std::uint8_t> bytesFrom(const pybind11::bytes& bytes);

/// Objects that live in `owner`, as a tuple.
template <class Item>
pybind11::tuple itemsOf(const std::vector<Item>& items, pybind11::handle owner)
{
    pybind11::tuple tuple(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        tuple[i] = pybind11::cast(&items[i], pybind11::return_value_policy::reference_internal, owner);
    return tuple;
}

/// A class whose attributes are members of the C++ type, all of them read-only.
template <class Type>
class ValueClass : public pybind11::class_<Type> {
public:
    using pybind11::class_<Type>::class_;

    /// A number, a text, an object or nothing.
    template <class Member>
    ValueClass& value(const char* name, Member Type::*member, const char* doc = "")
    {
        this->def_readonly(name, member, doc);
        return *this;
    }

    template <class Item>
    ValueClass& items(const char* name, std::vector<Item> Type::*member, const char* doc = "")
    {
        this->def_property_readonly(
            name, [member](pybind11::object self) { return itemsOf(self.cast<const Type&>().*member, self); }, doc);
        return *this;
    }

    ValueClass& bytes(const char* name, std::vector<std::uint8_t> Type::*member, const char* doc = "")
    {
        this->def_property_readonly(
            name, [member](const Type& self) { return bytesOf(self.*member); }, doc);
        return *this;
    }

    /// What a function works out.
    template <class Function>
    ValueClass& derived(const char* name, Function function, const char* doc = "")
    {
        this->def_property_readonly(name, function, doc);
        return *this;
    }
};

void bindErrors(pybind11::module_& module);
ValueClass<typdescriptor::Device> bindDevice(pybind11::module_& module);
void bindConfiguration(pybind11::module_& module, ValueClass<typdescriptor::Device>& device);
void bindDiagnosis(pybind11::module_& module, ValueClass<typdescriptor::Device>& device);
void bindCheck(pybind11::module_& module);

/// The methods to_json and to_dict of a type that has JSON.
template <class Class, class Function>
void addJson(Class& type, Function toJsonText)
{
    type.def("to_json", toJsonText, "All of it as JSON text.");
    type.def(
        "to_dict",
        [toJsonText](const typename Class::type& self) {
            return pybind11::module_::import("json").attr("loads")(toJsonText(self));
        },
        "All of it as plain dictionaries and lists, as in the JSON.");
}
