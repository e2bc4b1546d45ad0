// A host in one page: loads a device, plugs modules, sets parameters, prints both telegrams and explains a diagnosis.
//
//     host RIO40A17.GSE '5=40-4AI Pt100' 5:Sensor=Ni100 08 0C 00 02 0A 17 42 10 84 80 22

#include "host/diagnosis.h"
#include "host/hexBytes.h"
#include "host/loadDevice.h"

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

using namespace typdescriptor;

static void printTelegram(const char* title, const std::vector<TelegramByte>& telegram)
{
    std::printf("%s: %s\n", title, asHex(valuesOf(telegram)).c_str());
    for (const TelegramByte& byte : telegram)
        std::printf("    %02X %s\n", byte.value, byte.source.c_str());
}

static void printStates(const char* title, const std::vector<DiagnosisState>& states)
{
    for (const DiagnosisState& state : states)
        std::printf("%s byte %zu, %s: %s\n", title, state.offset, state.name.c_str(), state.text.c_str());
}

static void printDiagnosis(const Diagnosis& diagnosis)
{
    printStates("station", diagnosis.station.states);
    for (const DiagnosisBlock& block : diagnosis.blocks) {
        std::printf("%s: %s\n", kindName(block.kind), asHex(block.bytes).c_str());
        for (const DeviceEntry& entry : block.device)
            std::printf("    byte %u bit %u: %s\n", entry.byte, entry.firstBit, entry.text.c_str());
        for (const IdentifierPlace& place : block.identifiers)
            std::printf("    slot %u %s\n", place.slot, place.module.c_str());
        if (block.channel)
            std::printf("    slot %u %s, channel %u: %s\n", block.channel->place.slot,
                        block.channel->place.module.c_str(), block.channel->channel, block.channel->text.c_str());
    }
    printStates("note", diagnosis.notes);
    printStates("problem", diagnosis.problems);
}

static int run(const std::string& file, const std::vector<std::string>& words)
{
    std::vector<std::string> modules;
    std::vector<std::string> values;
    std::vector<std::string> hex;
    for (const std::string& word : words) { // "5=MODULE", "5:PARAMETER=VALUE", bytes of an answer
        const std::size_t equals = word.find('=');
        (equals == std::string::npos ? hex : word.find(':') < equals ? values : modules).push_back(word);
    }
    const Device device = loadDevice(file);
    const Configuration configuration = configure(device, planFromArguments(device, modules, values));
    std::printf("%s, ident number %s\n", device.modelName.c_str(), hexWord(device.header.identNumber).c_str());
    printTelegram("Set_Prm", configuration.parameters);
    printTelegram("Chk_Cfg", configuration.configuration);
    for (const std::string& problem : configuration.problems)
        std::printf("problem: %s\n", problem.c_str());

    std::string wrong;
    const auto answer = parseHexBytes(hex, wrong);
    if (!answer)
        throw std::runtime_error(wrong + " is no hexadecimal number");
    if (!answer->empty())
        printDiagnosis(explainDiagnosis(device, *answer, {std::nullopt, &configuration}));
    return configuration.problems.empty() ? 0 : 1;
}

int main(int argc, char** argv)
{
    try {
        return argc < 2 ? 2 : run(argv[1], {argv + 2, argv + argc});
    } catch (const std::exception& error) { // LoadError, ChoiceError
        std::fprintf(stderr, "%s\n", error.what());
        return 2;
    }
}
