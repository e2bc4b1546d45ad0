// Any bytes as a slave's diagnostic answer, explained with the texts of an example device and some of the input's own; as
// captured telegrams of the same device; and as a plan for it.
//
// The input: the number of the device; a count of texts in three bits and as many texts, each a byte number, a byte of
// two bit numbers and a value; the answer. As telegrams its first byte is the length of the first; as a plan it is put into
// the middle of one.

#include "fuzz/property.h"
#include "host/diagnosis.h"
#include "host/hexBytes.h"
#include "host/jsonValues.h"
#include "host/loadDevice.h"
#include "host/readBack.h"
#include "host/text.h"
#include "tools/configurationText.h"
#include "tools/diagnosisText.h"
#include "tools/reportJson.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

using namespace typdescriptor;

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kStationBytes = 6;
constexpr std::size_t kMostBytesInJson = 32; // JSON takes most of the time, and that of more bytes is no other JSON

const std::vector<Device>& exampleDevices()
{
    static const std::vector<Device> devices = [] {
        std::vector<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(TYPDESCRIPTOR_SOURCE_DIR "/examples/gsd"))
            files.push_back(entry.path().string());
        std::sort(files.begin(), files.end());
        std::vector<Device> read;
        read.reserve(files.size());
        for (const std::string& file : files)
            read.push_back(loadDevice(file));
        return read;
    }();
    return devices;
}

/// Takes bytes from the front of the input; 0 when there are none left.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : position(data), end(data + size) {}

    std::uint8_t byte() { return position == end ? std::uint8_t{0} : *position++; }
    Bytes rest() const { return {position, end}; }

private:
    const std::uint8_t* position;
    const std::uint8_t* end;
};

/// A text of one bit, or of one value of several bits: any that a type file can hold.
void addText(Device& device, Input& input)
{
    const std::uint8_t byte = input.byte();
    const unsigned bits = input.byte();
    const std::uint8_t value = input.byte();
    const unsigned first = bits & 7U;
    const unsigned last = std::max(first, bits >> 3U & 7U);
    if ((bits & 0x80U) != 0)
        device.diagnosisTexts.bits.push_back({byte, first, "set", value == 0 ? "" : "clear", {}, {}});
    else
        device.diagnosisTexts.areas.push_back({byte, first, last, {{value, "value", {}}}});
}

void requireWholeExplanation(const Diagnosis& diagnosis, const Bytes& answer)
{
    std::size_t offset = kStationBytes;
    for (const DiagnosisBlock& block : diagnosis.blocks) {
        require(block.offset == offset && !block.bytes.empty() && offset + block.bytes.size() <= answer.size() &&
                    std::equal(block.bytes.begin(), block.bytes.end(), &answer[offset]),
                "the blocks follow one another through the answer");
        offset += block.bytes.size();
        for (const DeviceEntry& entry : block.device)
            require(entry.byte >= 1 && entry.byte < block.bytes.size() && entry.firstBit <= entry.lastBit &&
                        entry.byte + entry.lastBit / 8 < block.bytes.size() &&
                        entry.value < 1U << (entry.lastBit - entry.firstBit + 1),
                    "what is said about a byte is about its bits");
    }
    require(!diagnosis.problems.empty() || offset == answer.size(), "what is not explained is named");
}

/// The device without what no diagnosis looks at: each input takes a copy, which is to be a small one.
Device withTextsAlone(const Device& device)
{
    Device small;
    small.header = device.header;
    small.data = device.data;
    small.isDpv1 = device.isDpv1;
    small.diagnosisTexts = device.diagnosisTexts;
    small.diagnosisTypes = device.diagnosisTypes;
    small.channelTexts = device.channelTexts;
    return small;
}

Bytes wireOf(const Capture& capture)
{
    Bytes wire;
    for (const CapturedSlot& slot : capture.slots) {
        for (const Identifier& identifier : slot.identifiers)
            wire.insert(wire.end(), identifier.wireBytes.begin(), identifier.wireBytes.end());
    }
    return wire;
}

/// Any bytes as Chk_Cfg and Set_Prm: all of them are told, and what the plan of them makes is what was captured unless
/// something is said against it.
void readTelegrams(const Device& device, const Bytes& bytes)
{
    if (device.isKgp() || device.isCategoryII || bytes.empty())
        return;
    const auto first = bytes.begin() + 1;
    const auto middle = first + static_cast<std::ptrdiff_t>(std::min<std::size_t>(bytes[0], bytes.size() - 1));
    const CapturedTelegrams telegrams{{first, middle}, {middle, bytes.end()}};
    const Capture capture = readBack(device, telegrams);
    if (!telegrams.configuration.empty())
        require(wireOf(capture) == telegrams.configuration, "every captured identifier is in a slot");
    require(isUtf8(captureText(capture, nullptr, false)), "what telegrams say is UTF-8");
    if (!capture.problems.empty() || telegrams.configuration.empty() || !capture.standard)
        return;
    const Configuration again = configure(device, capture.plan);
    require(valuesOf(again.userParameters) == Bytes(telegrams.parameters.begin() + 7, telegrams.parameters.end()),
            "the plan of a capture makes its parameters");
    require(differencesOf(device, again, capture).empty(), "a capture is as its own plan");
}

/// A plan of any bytes is refused or can be made into telegrams, refused in its turn or not.
void readPlan(const Device& device, const Bytes& bytes)
{
    const std::string head =
        "{\"format\":\"typdescriptor-plan\",\"version\":1,\"identNumber\":" + std::to_string(device.header.identNumber);
    const std::string text(bytes.begin(), bytes.end());
    const std::string whole[] = {text, head + ',' + text + '}',
                                 head + ",\"modules\":[{\"slot\":1,\"module\":\"" + text + "\"}]}"};
    for (const std::string& json : whole) {
        try {
            const Plan plan = planFromJson(json, device);
            require(toJson(planFromJson(toJson(plan, device), device), device) == toJson(plan, device),
                    "a plan is kept in its JSON");
            configure(device, plan);
        } catch (const ChoiceError&) {
            continue; // what is no plan, or one that cannot be
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const Device& whole = exampleDevices()[input.byte() % exampleDevices().size()];
    Device device = withTextsAlone(whole);
    for (unsigned texts = input.byte() & 7U; texts > 0; --texts)
        addText(device, input);
    const Bytes answer = input.rest();

    const Diagnosis diagnosis = explainDiagnosis(device, answer);
    requireWholeExplanation(diagnosis, answer);
    require(isUtf8(diagnosisText(diagnosis, size % 2 == 0)), "an explanation is UTF-8");
    if (answer.size() <= kMostBytesInJson) {
        const nlohmann::ordered_json json = diagnosisJson(diagnosis);
        require(nlohmann::ordered_json::parse(jsonText(json)) == json, "an explanation's JSON can be read back");
    }

    readTelegrams(whole, answer);
    readPlan(whole, answer);

    std::string wrong;
    require(parseHexBytes({asHex(answer)}, wrong) == answer, "hexadecimal bytes are read back");
    const bool isHex = parseHexBytes({std::string(answer.begin(), answer.end())}, wrong).has_value();
    require(isHex || !wrong.empty(), "a word that is not hexadecimal bytes is named");
    return 0;
}
