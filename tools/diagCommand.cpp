// typdesc diag: explains a slave's diagnostic answers with the texts of its device.

#include "tools/commands.h"
#include "tools/diagnosisText.h"
#include "tools/displayText.h"
#include "tools/loadDevice.h"
#include "tools/planFile.h"
#include "tools/reportJson.h"
#include "tools/terminal.h"

#include "host/configuration.h"
#include "host/hexBytes.h"
#include "host/jsonValues.h"
#include "host/text.h"

#include <algorithm>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

using namespace typdescriptor;

namespace {

using Bytes = std::vector<std::uint8_t>;

struct Options {
    DeviceChoice device;
    std::vector<std::string> hex;
    std::string capture;
    std::string plan;
    bool isDpv1 = false;
    bool isNotDpv1 = false;
    bool isJson = false;
};

struct Answer {
    std::string name; // for messages
    long line = 0;    // in a capture; 0 when it was given as an argument
    Bytes bytes;
};

/// A device, and the configuration that it runs with where a plan is for it.
struct Station {
    ExitStatus status = kExitUnusable;
    Device device;
    std::unique_ptr<const Configuration> configuration;
};

/// @return whether the words are bytes, and there are any
bool readAnswer(const std::string& name, long line, const std::vector<std::string>& words, std::vector<Answer>& answers)
{
    std::string wrong;
    const auto bytes = parseHexBytes(words, wrong);
    if (!bytes) {
        const bool isOdd =
            wrong.size() % 2 != 0 && wrong.find_first_not_of("0123456789abcdefABCDEFxX") == std::string::npos;
        wrong = readable(fromArgument(wrong));
        reportProblem(line == 0 ? wrong : name + ": " + wrong,
                      isOdd ? "has an odd number of hexadecimal digits" : "is not hexadecimal bytes");
        return false;
    }
    if (bytes->empty() && line == 0) {
        reportProblem(name, "is empty");
        return false;
    }
    if (!bytes->empty())
        answers.push_back({name, line, *bytes});
    return true;
}

/// One answer a line; what follows a "#" is a comment.
bool readCapture(const std::string& file, std::istream& stream, std::vector<Answer>& answers)
{
    long number = 0;
    for (std::string line; std::getline(stream, line);) {
        ++number;
        line.erase(std::min(line.find('#'), line.size()));
        if (!readAnswer(file + ':' + std::to_string(number), number, {line}, answers))
            return false;
    }
    if (stream.bad()) {
        reportProblem(file, "cannot be read");
        return false;
    }
    if (answers.empty())
        reportProblem(file, "holds no answer");
    return !answers.empty();
}

bool readAnswers(const Options& options, std::vector<Answer>& answers)
{
    const bool isCapture = !options.capture.empty();
    if (isCapture != options.hex.empty()) {
        reportProblem("diag", isCapture ? "takes an answer or a capture, not both" : "needs an answer");
        return false;
    }
    if (options.hex.size() > 1 && std::find(options.hex.begin(), options.hex.end(), "-") != options.hex.end()) {
        reportProblem("diag", "takes an answer or standard input, not both");
        return false;
    }
    if (options.capture == "-" || (options.hex.size() == 1 && options.hex.front() == "-"))
        return readCapture("standard input", std::cin, answers);
    if (isCapture) {
        std::ifstream stream(options.capture, std::ios::binary);
        if (stream)
            return readCapture(options.capture, stream, answers);
        reportProblem(options.capture, "cannot be read");
        return false;
    }
    return readAnswer("diagnostic answer", 0, options.hex, answers);
}

/// The devices that a run needs, each read once: one, or those of a folder by the ident numbers of the answers.
class Stations {
public:
    explicit Stations(const Options& choices) : options(choices) {}

    const Station& stationFor(const Bytes& answer);

private:
    Station read(std::optional<unsigned> ident) const;
    void addConfiguration(Station& station, bool mayBeOther) const;

    const Options& options;
    std::map<std::optional<unsigned>, Station> known;
};

/// @param mayBeOther  whether the plan may be for another device: of many stations it is for one
void Stations::addConfiguration(Station& station, bool mayBeOther) const
{
    if (options.plan.empty())
        return;
    try {
        station.configuration =
            std::make_unique<Configuration>(configure(station.device, loadPlan(options.plan, station.device)));
    } catch (const ChoiceError& error) {
        if (mayBeOther && error.refusal.name == "otherDevice")
            return;
        reportProblem(options.plan, error.what());
        station.status = kExitUnusable;
    }
}

Station Stations::read(std::optional<unsigned> ident) const
{
    Station station;
    station.status =
        ident ? loadDevice(options.device, *ident, station.device) : loadDevice(options.device, station.device);
    if (station.status == kExitGood)
        addConfiguration(station, ident.has_value());
    return station;
}

/// What an answer without an ident number is explained with: the station does not exist, or the answer is cut.
const Station& nobody()
{
    static const Station station{kExitGood, {}, nullptr};
    return station;
}

const Station& Stations::stationFor(const Bytes& answer)
{
    std::optional<unsigned> ident;
    if (options.device.ident.empty() && options.device.isFolder()) {
        ident = identNumberIn(answer);
        if (!ident)
            return nobody();
    }
    const auto place = known.find(ident);
    return place != known.end() ? place->second : known.emplace(ident, read(ident)).first->second;
}

void printAnswers(const Options& options, const std::vector<Answer>& answers, const std::vector<Diagnosis>& diagnoses)
{
    const bool isSingle = answers.front().line == 0;
    nlohmann::ordered_json json = nlohmann::ordered_json::array();
    std::string text;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        if (options.isJson) {
            nlohmann::ordered_json entry = diagnosisJson(diagnoses[i]);
            if (!isSingle)
                entry["line"] = answers[i].line;
            json.push_back(std::move(entry));
            continue;
        }
        if (!isSingle)
            text += (text.empty() ? "" : "\n") + coloured(answers[i].name, Colour::kCyan, isColourWanted()) + "  " +
                    asHex(answers[i].bytes) + '\n';
        text += diagnosisText(diagnoses[i], isColourWanted());
    }
    if (options.isJson)
        text = jsonText(isSingle ? json.front() : nlohmann::ordered_json{{"answers", json}});
    print(text);
}

ExitStatus diag(const Options& options)
{
    std::vector<Answer> answers;
    if (!readAnswers(options, answers))
        return kExitUnusable;
    Stations stations(options);
    std::vector<Diagnosis> diagnoses;
    diagnoses.reserve(answers.size());
    for (const Answer& answer : answers) {
        const Station& station = stations.stationFor(answer.bytes);
        if (station.status != kExitGood)
            return station.status;
        DiagnosisOptions how;
        if (options.isDpv1 || options.isNotDpv1)
            how.isDpv1 = options.isDpv1;
        how.configuration = station.configuration.get();
        diagnoses.push_back(explainDiagnosis(station.device, answer.bytes, how));
    }
    printAnswers(options, answers, diagnoses);
    ExitStatus status = kExitGood;
    for (std::size_t i = 0; i < answers.size(); ++i) {
        for (const DiagnosisState& problem : diagnoses[i].problems) {
            reportProblem(answers[i].name, problem.text);
            status = kExitFindings;
        }
    }
    return status;
}

} // namespace

void addDiagCommand(CLI::App& app, int& status)
{
    CLI::App* command = app.add_subcommand("diag", "Explain a slave's diagnostic answers");
    const auto options = std::make_shared<Options>();
    addDeviceOptions(*command, options->device);
    command->add_option("HEX", options->hex,
                        "the answer in hexadecimal bytes, together or apart; - for standard input, an answer a line");
    command->add_option("--capture", options->capture, "a file of answers, one a line, comments behind #");
    command->add_option("--config", options->plan, "the plan that the slave runs with: names slots and modules");
    CLI::Option* dpv1 = command->add_flag("--dpv1", options->isDpv1, "device-related blocks are alarms and status");
    command->add_flag("--no-dpv1", options->isNotDpv1, "device-related blocks are the device's own bits")
        ->excludes(dpv1);
    command->add_flag("--json", options->isJson, "as JSON");
    command->footer("Exit status: 0 explained, 1 something is wrong with an answer or the file, 2 wrong usage or a\n"
                    "file cannot be read.\n"
                    "Of a folder the device is taken whose ident number stands in the answer.\n"
                    "Example: typdesc diag DRIVE.GSE 080C00020C21 0201 8141A6\n"
                    "Example: typdesc diag gsd/ --capture answers.txt --config plan.json");
    command->callback([options, &status] { status = diag(*options); });
}
