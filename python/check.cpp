// What the rules find in a file.

#include "bindings.h"

#include "gsdfile/document.h"
#include "lint/rule.h"
#include "lint/typeFile.h"

#include <pybind11/stl/filesystem.h>

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace py = pybind11;
using namespace pybind11::literals;
namespace lint = typdescriptor::lint;

namespace {

/// A place as people count it: lines and characters from 1. Nothing for the file as a whole.
struct Position {
    std::size_t line = 0;
    std::size_t column = 0;
    std::size_t endLine = 0;
    std::size_t endColumn = 0;
};

struct PlacedText {
    std::optional<Position> place;
    std::string text;
};

/// A finding without the document that it points into.
struct PlacedFinding {
    const lint::Rule* rule = nullptr;
    lint::Severity severity{};
    std::optional<Position> place;
    std::string message;
    int code = 0;
    std::vector<PlacedText> notes;
    std::vector<PlacedText> mend;
};

std::optional<Position> positionOf(const typdescriptor::gsdfile::Document& document, lint::Span span)
{
    if (span.begin == 0 && span.end == 0)
        return std::nullopt;
    const auto begin = document.place(span.begin);
    const auto end = document.place(span.end);
    return Position{begin.line, begin.character, end.line, end.character};
}

PlacedFinding placed(const typdescriptor::gsdfile::Document& document, const lint::Finding& finding)
{
    PlacedFinding result{
        finding.rule, finding.severity, positionOf(document, finding.place), finding.message, finding.code, {}, {}};
    for (const lint::Note& note : finding.notes)
        result.notes.push_back({positionOf(document, note.place), note.text});
    for (const lint::Edit& edit : finding.mend)
        result.mend.push_back({positionOf(document, edit.place), edit.text});
    return result;
}

/// Read by Python, whose exceptions say what is wrong with a file.
std::string bytesOfFile(const std::filesystem::path& path)
{
    return py::cast(path).attr("read_bytes")().cast<std::string>();
}

/// Whether the library takes the file for a GSD file.
bool isGsd(const std::string& path)
{
    const std::size_t size = path.size();
    return size >= 3 && (path[size - 3] | 0x20) == 'g' && (path[size - 2] | 0x20) == 's';
}

std::vector<PlacedFinding> findingsIn(const std::filesystem::path& path, std::string bytes)
{
    const std::string name = path.filename().string();
    const std::string file = path.string();
    const typdescriptor::gsdfile::Document document(std::move(bytes));
    lint::Options options;
    options.fileName = name;
    options.path = file;
    std::vector<PlacedFinding> findings;
    for (const lint::Finding& finding :
         isGsd(file) ? lint::check(document, options) : lint::checkTypeFile(document.bytes(), file))
        findings.push_back(placed(document, finding));
    return findings;
}

py::str describe(const PlacedFinding& finding)
{
    const std::string place =
        finding.place ? std::to_string(finding.place->line) + ':' + std::to_string(finding.place->column) + ": " : "";
    return textOf(place + lint::severityName(finding.severity) + ": " + finding.message + " [" + finding.rule->name +
                  ']');
}

/// The members of a place, as attributes: None for the file as a whole.
template <class Type>
void addPlace(ValueClass<Type>& type)
{
    const auto add = [&type](const char* name, std::size_t Position::*member) {
        type.derived(name, [member](const Type& self) {
            return self.place ? std::optional<std::size_t>((*self.place).*member) : std::nullopt;
        });
    };
    add("line", &Position::line);
    add("column", &Position::column);
    add("end_line", &Position::endLine);
    add("end_column", &Position::endColumn);
}

} // namespace

void bindCheck(py::module_& module)
{
    ValueClass<lint::Rule>(module, "Rule", "A rule of the checker.")
        .value("name", &lint::Rule::name)
        .derived("severity", [](const lint::Rule& self) { return lint::severityName(self.severity); })
        .derived("group", [](const lint::Rule& self) { return lint::groupName(self.group); })
        .value("sentence", &lint::Rule::sentence)
        .value("explanation", &lint::Rule::explanation)
        .value("wrong", &lint::Rule::wrong)
        .value("right", &lint::Rule::right)
        .def("__repr__", [](const lint::Rule& self) { return std::string("<Rule ") + self.name + '>'; });
    ValueClass<PlacedText> text(module, "PlacedText", "A place of the file, and what is said of it or comes there.");
    text.derived("text", [](const PlacedText& self) { return textOf(self.text); });
    addPlace(text);
    ValueClass<PlacedFinding> finding(
        module, "Finding", "What a rule found. Places count lines and characters from 1; None for the whole file.");
    finding.derived("rule", [](const PlacedFinding& self) { return self.rule->name; })
        .derived(
            "severity", [](const PlacedFinding& self) { return lint::severityName(self.severity); },
            "error, warning or hint")
        .derived("message", [](const PlacedFinding& self) { return textOf(self.message); })
        .derived(
            "code",
            [](const PlacedFinding& self) { return self.code == 0 ? std::nullopt : std::optional<int>(self.code); },
            "the library's result code, or None")
        .items("notes", &PlacedFinding::notes, "other places that belong to it")
        .items("mend", &PlacedFinding::mend, "what may safely be changed: the text comes to the place")
        .def("__str__", describe)
        .def("__repr__",
             [](const PlacedFinding& self) { return "<Finding " + describe(self).cast<std::string>() + '>'; });
    addPlace(finding);

    module.def(
        "check",
        [](const std::filesystem::path& path) {
            std::string bytes = bytesOfFile(path);
            const py::gil_scoped_release released;
            return findingsIn(path, std::move(bytes));
        },
        "path"_a,
        "Everything that the rules find in a GSD file, or the library's check in a type file, in the order of "
        "the file. Raises OSError.");
    module.def(
        "rules",
        [] {
            py::list rules;
            for (const lint::Rule& rule : lint::allRules())
                rules.append(py::cast(&rule, py::return_value_policy::reference));
            return py::tuple(rules);
        },
        "All rules of check().");
}
