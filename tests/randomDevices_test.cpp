// Devices made up at random: what the library says about the GSD file of one is compared, query by query, with the device
// itself. Everything expected here follows from the values that were chosen, never from what the library has made of them.

#include "descriptor/cTypDescriptor.h"
#include "tests/testFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <locale>
#include <random>
#include <set>
#include <sstream>
#include <vector>

namespace {

using Bytes = std::vector<int>;
using Lines = std::vector<std::string>;

/// Numbers in it look alike in every locale.
struct TextStream : std::ostringstream {
    TextStream() { imbue(std::locale::classic()); }
};

/// Values in one line, with blanks between them.
template <class... Value>
std::string row(const Value&... value)
{
    TextStream line;
    ((line << value << ' '), ...);
    return line.str();
}

std::string padded(std::string text, std::size_t width)
{
    text.resize(width, ' ');
    return text;
}

std::string digits(int number, std::size_t width)
{
    const std::string text = std::to_string(std::abs(number));
    return std::string(number < 0 ? "-" : "") + std::string(width - std::min(width, text.size()), '0') + text;
}

std::string listed(const Bytes& bytes)
{
    std::string text;
    for (const int byte : bytes)
        text.append(text.empty() ? "" : ",").append(std::to_string(byte));
    return text;
}

struct Type {
    const char* keyword;
    const char* name; // in a type file
    int low;
    int high;
    int impliedLow;
    int impliedHigh;
    unsigned size;
    bool isWarned;
};
constexpr Type kTypes[] = {{"Unsigned8", "BYTE ", 0, 255, 0, 255, 1, false},
                           {"Unsigned16", "UINT ", 0, 65535, 0, 65535, 2, false},
                           {"Signed16", "INT  ", -32768, 32767, -32768, 32767, 2, false},
                           {"Signed8", "BYTE ", -128, 127, 0, 255, 1, true},
                           {"Unsigned32", "UINT ", 0, 65535, 0, 65535, 4, true},
                           {"Signed32", "UINT ", 0, 65535, 0, 65535, 4, true},
                           {"Bit", "BIT", 0, 1, 0, 1, 1, false},
                           {"BitArea", "BGR", 0, 0, 0, 0, 1, false}};
constexpr std::size_t kSigned8 = 3;
constexpr std::size_t kBit = 6;
constexpr std::size_t kBitArea = 7;

struct TextBlock {
    int reference;
    std::vector<std::pair<int, std::string>> texts;
};

struct Definition {
    int reference = 0;
    std::string name; // empty: the slot number
    std::size_t type = 0;
    int value = 0;
    int low = 0;
    int high = 0;
    int bit = 0;
    int width = 1;
    const TextBlock* texts = nullptr;
};

struct Prm {
    int offset;
    const Definition* definition;
    bool operator==(const Prm&) const = default;
};

/// Parameter bytes of a module or of the station: constants up to `end`, and parameters.
struct PrmBlock {
    int length = 0;
    int end = 0;
    Bytes bytes;
    std::vector<Prm> prms;
    bool operator==(const PrmBlock&) const = default;
};

struct Module {
    std::string name;
    std::vector<Bytes> identifiers; // as in a type file: the input's length before the output's
    bool isPreset = false;
    PrmBlock block;
};

struct Text {
    int number; // bit or error type
    int last;   // of a bit area
    int value;
    std::string text;
};

class Device {
public:
    explicit Device(unsigned seed);

    std::string gsd; // its file
    Lines answers;   // what is to be said about it

private:
    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    int between(int low, int high) { return low + below(high - low + 1); }
    bool maybe() { return below(2) == 0; }

    template <class... Value>
    void line(const Value&... value)
    {
        (text << ... << value) << '\n';
    }
    template <class... Value>
    void expect(const Value&... value)
    {
        answers.push_back(row(value...));
    }
    std::string name(std::size_t longest);
    int flag(const char* keyword, int feature);
    void makeHead();
    void makeTexts();
    void makeDefinitions();
    PrmBlock makeBlock(int length, bool isModule);
    PrmBlock makeModuleBlock();
    void makeStation();
    void makeModules();
    Bytes makeIdentifier();
    void makeDiagnosis();
    int blockOf(const Module& module) const;
    void expectPrm(const char* query, int at, const Prm& prm, int base, std::vector<const TextBlock*>& helps);
    void expectHelps(const char* query, const std::vector<const TextBlock*>& helps);
    void expectItem(const char* query, const std::string& label, const Bytes& identifier, int block, int isOpen);
    void expectModules();
    void expectParameters();

    std::mt19937 random;
    TextStream text;
    bool isModular = false;
    bool isFixed = false;
    bool hasExtended = false;
    int features = 2;
    int maxModule = 0;
    int maxLength = 0; // Max_User_Prm_Data_Len
    Bytes plain;       // User_Prm_Data
    PrmBlock station;
    int warnings = 0;
    std::vector<TextBlock> textBlocks;
    std::vector<Definition> definitions;
    std::vector<Module> modules;
    std::vector<PrmBlock> blocks; // different ones, and the lines of each
    Lines blockLines;
    std::vector<Text> deviceTexts;
    std::vector<Text> channelTexts;
};

std::string Device::name(std::size_t longest)
{
    static const std::string kCharacters = "ABCxyz019 +-./()@=,<>\xE4";
    std::string result(static_cast<std::size_t>(between(1, static_cast<int>(longest))), '\0');
    for (char& c : result)
        c = kCharacters[static_cast<std::size_t>(below(static_cast<int>(kCharacters.size())))];
    result.front() = 'T';
    if (result.size() > 30) // blanks would be squeezed out of it
        std::replace(result.begin(), result.end(), ' ', '_');
    return result;
}

/// A flag keyword that is there or not.
int Device::flag(const char* keyword, int feature)
{
    const int value = below(3) - 1;
    if (value >= 0)
        line(keyword, " = ", value);
    features |= value > 0 ? feature : 0;
    return std::max(value, 0);
}

void Device::makeHead()
{
    const std::string vendor = name(10);
    const std::string model = name(17);
    const std::string periphery = name(10);
    const std::string family = std::string(1, 'F') + std::to_string(below(1000));
    const std::string order = std::string(1, 'O') + std::to_string(below(100000));
    const std::string bitmap = std::string(1, 'B') + std::to_string(below(1000));
    const int ident = below(65536);
    const int interval = below(1000);
    const int input = between(1, 244);
    const int output = below(245);
    const int diag = between(6, 244);
    const int eter = below(1000);
    const int response = below(101);
    const int offset = below(256);
    const int revision = below(6);
    maxModule = 2 * between(20, 122);
    line("#Profibus_DP\nGSD_Revision = ", revision, "\nVendor_Name = \"", vendor, "\"\nModel_Name = \"", model,
         "\"\nRevision = \"1\"\nIdent_Number = ", ident,
         "\nProtocol_Ident = 0\nStation_Type = 0\nHardware_Release = \"1\"\n",
         "Software_Release = \"1\"\nMaxTsdr_9.6 = 60\nMin_Slave_Intervall = ", interval, "\nMax_Module = ", maxModule,
         "\nMax_Input_Len = ", input, "\nMax_Output_Len = ", output, "\nMax_Diag_Data_Len = ", diag, "\nPeriphery = \"",
         periphery, "\"\nSlave_Family = 3@TdF@", family, "\nOrderNumber = \"", order, "\"\nBitmap_Device = \"", bitmap,
         "\"\nETERDelay = ", eter, "\nMaxResponseDelay = ", response, "\nModul_Offset = ", offset);
    int speeds = 0;
    const std::pair<const char*, int> kSpeeds[] = {{"9.6", 0}, {"19.2", 1},  {"93.75", 2}, {"187.5", 3},
                                                   {"500", 4}, {"45.45", 5}, {"31.25", 5}, {"1.5M", 6},
                                                   {"3M", 7},  {"6M", 8},    {"12M", 9}};
    for (const auto& [speed, bit] : kSpeeds) {
        const int value = bit == 0 ? 1 : below(2);
        line(speed, "_supp = ", value);
        speeds |= value << bit;
    }
    isModular = flag("Modular_Station", 0) != 0;
    isFixed = flag("FixPresetModules", 0) != 0;
    flag("Set_Slave_Add_supp", kFeatureSetSlaveAddress);
    flag("Sync_Mode_supp", kFeatureSyncMode);
    flag("Freeze_Mode_supp", kFeatureFreezeMode);
    flag("DiagBufferable", kFeatureDiagBufferable);
    flag("EvenSlotNumberRequired", kFeatureEvenSlotNumber);
    flag("Fail_Safe", kFeatureFailSafe);
    flag("IsPublisher", kFeaturePublisher);
    flag("IsSubscriber", kFeatureSubscriber);
    flag("IsActive", kFeatureActive);
    if (flag("IsMaster", kFeatureMaster) != 0)
        features &= ~kFeatureActive;
    if (flag("OnlyNormalModules", kFeatureOnlyNormal) == 0)
        flag("OnlySpecialModules", kFeatureOnlySpecial);
    if (const int cnf = below(3); cnf > 0) {
        line("Q5HeaderCnf = ", cnf + 1);
        features |= cnf == 1 ? kFeatureHeaderCnf0 : kFeatureHeaderCnf1;
    }
    const std::pair<const char*, int> kChips[] = {{"qmx2", 0},  {"WQMX2", 1},    {"a VRC3", 2},
                                                  {"TVRC2", 3}, {"TVRC2-DP", 4}, {"other", 'N'}};
    const auto& [chip, code] = kChips[below(6)];
    line("Implementation_Type = \"", chip, '"');
    int data = input + output;
    if (maybe()) {
        data = between(1, data);
        line("Max_Data_Len = ", data);
    } else if (isModular) {
        line("Max_Data_Len = 0");
    }
    expect("header", padded(model, 17), padded(vendor, 10), padded(family, 10), padded(periphery, 10), ident, 1);
    expect("names", order, padded(bitmap, 7).replace(bitmap.size(), 7 - bitmap.size(), 7 - bitmap.size(), '_'), offset,
           isModular, revision);
    expect("data", features, code, interval, speeds, input, input * 8, output, output * 8, diag, data, eter, response);
}

void Device::makeTexts()
{
    for (int block = below(4); block > 0; --block) {
        TextBlock& made = textBlocks.emplace_back(TextBlock{block * 10, {}});
        line("PrmText = ", made.reference);
        for (int count = between(1, 5); count > 0; --count) {
            made.texts.emplace_back(below(3) == 0 ? below(65536) : below(10), name(32));
            line("Text(", made.texts.back().first, ") = \"", made.texts.back().second, '"');
            warnings += made.texts.back().second.size() > 30 ? 1 : 0;
        }
        line("EndPrmText");
    }
}

void Device::makeDefinitions()
{
    for (int count = below(9); count > 0; --count) {
        Definition& made = definitions.emplace_back();
        made.reference = count * 7;
        made.type = static_cast<std::size_t>(below(8));
        const bool isSlotNumber = made.type < kSigned8 && maybe();
        made.name = isSlotNumber ? "" : name(32);
        line("ExtUserPrmData = ", made.reference, ' ',
             isSlotNumber ? maybe() ? "[Slotnumber]" : "\"[SlotNumber]\"" : '"' + made.name + '"');
        warnings += made.name.size() > 30 ? 1 : 0;
        const Type& type = kTypes[made.type];
        text << type.keyword;
        if (made.type == kBit) {
            made.bit = below(8);
            text << '(' << made.bit << ')';
        } else if (made.type == kBitArea) {
            made.bit = below(7);
            made.width = between(2, 8 - made.bit);
            text << '(' << made.bit << '-' << made.bit + made.width - 1 << ')';
        }
        const int top = made.type == kBitArea ? (1 << made.width) - 1 : type.high;
        made.low = between(type.low, top);
        made.high = between(made.low, top);
        made.value = between(made.low, made.high);
        text << ' ' << made.value;
        const int form = below(3);
        if (form == 0) {
            made.low = type.impliedLow;
            made.high = made.type == kBitArea ? top : type.impliedHigh;
        } else if (form == 1) {
            text << ' ' << made.low << '-' << made.high;
        } else {
            text << ' ' << made.low << ',' << made.value << ',' << made.high;
        }
        line();
        warnings += type.isWarned && !isSlotNumber ? 1 : 0;
        if (!textBlocks.empty() && maybe()) {
            made.texts = &textBlocks[static_cast<std::size_t>(below(static_cast<int>(textBlocks.size())))];
            line("Prm_Text_Ref = ", made.texts->reference);
        }
        line("EndExtUserPrmData");
    }
}

PrmBlock Device::makeBlock(int length, bool isModule)
{
    PrmBlock block;
    block.length = length;
    block.bytes.resize(static_cast<std::size_t>(length));
    for (int count = below(3); count > 0; --count) {
        const int offset = below(length);
        Bytes constants(static_cast<std::size_t>(between(1, std::min(length - offset, 6))));
        for (int& byte : constants)
            byte = below(256);
        line("Ext_User_Prm_Data_Const(", offset, ") = ", listed(constants));
        std::copy(constants.begin(), constants.end(), block.bytes.begin() + offset);
        block.end = std::max(block.end, offset + static_cast<int>(constants.size()));
    }
    // Bytes are taken one after the other; bits may share one.
    int next = 0;
    for (const Definition& definition : definitions) {
        const int size = static_cast<int>(kTypes[definition.type].size);
        if (maybe() || (definition.name.empty() && !isModule) || next + size > length)
            continue;
        const bool isShared =
            definition.type >= kBit && !block.prms.empty() && maybe() && block.prms.back().definition->type >= kBit;
        const int offset = isShared ? block.prms.back().offset : next;
        line("Ext_User_Prm_Data_Ref(", offset, ") = ", definition.reference);
        block.prms.push_back({offset, &definition});
        next = offset + size;
    }
    return block;
}

/// The block of a module: one of its own, or the same as another module's.
PrmBlock Device::makeModuleBlock()
{
    if (!blocks.empty() && maybe()) {
        const auto other = static_cast<std::size_t>(below(static_cast<int>(blocks.size())));
        text << blockLines[other];
        return blocks[other];
    }
    const std::size_t start = text.str().size();
    const int length = between(1, 8);
    line("Ext_Module_Prm_Data_Len = ", length);
    PrmBlock block = makeBlock(length, true);
    if (std::find(blocks.begin(), blocks.end(), block) == blocks.end()) {
        blocks.push_back(block);
        blockLines.push_back(text.str().substr(start));
    }
    return block;
}

void Device::makeStation()
{
    if (maybe()) {
        plain.resize(static_cast<std::size_t>(between(1, 20)));
        for (int& byte : plain)
            byte = below(256);
        line("User_Prm_Data_Len = ", plain.size(), "\nUser_Prm_Data = ", listed(plain));
    }
    hasExtended = maybe();
    if (hasExtended) {
        maxLength = 237;
        line("Max_User_Prm_Data_Len = ", maxLength);
    }
    if (hasExtended || !plain.empty())
        station = makeBlock(hasExtended ? 30 : static_cast<int>(plain.size()), false);
}

Bytes Device::makeIdentifier()
{
    const bool isNormal = (features & kFeatureOnlySpecial) == 0 && maybe();
    if (isNormal || (features & kFeatureOnlyNormal) != 0)
        return {below(6) == 0 ? 0 : below(256) | (maybe() ? 0x10 : 0x20)};
    Bytes identifier{below(4) << 6 | between(1, 4)};
    const int count = identifier[0] % 16;
    for (int lengths = (identifier[0] >> 6) % 2 + (identifier[0] >> 7); lengths > 0; --lengths)
        identifier.push_back(below(256));
    for (int i = 0; i < count; ++i)
        identifier.push_back(below(256));
    return identifier;
}

void Device::makeModules()
{
    const bool hasSeveral = below(4) == 0; // identifiers in a module
    for (int count = below(5) == 0 ? 1 : below(12); count > 0; --count) {
        Module& module = modules.emplace_back();
        module.name = name(32);
        Bytes config;
        for (int identifiers = hasSeveral ? between(1, 3) : 1; identifiers > 0; --identifiers) {
            Bytes identifier = makeIdentifier();
            module.identifiers.push_back(identifier);
            if (identifier.size() > 2 && identifier[0] >> 6 == 3 && (identifier[0] & 0x30) == 0)
                std::swap(identifier[1], identifier[2]); // a GSD file has the output's first
            config.insert(config.end(), identifier.begin(), identifier.end());
        }
        line("Module = \"", module.name, "\" ", listed(config));
        if (maybe()) {
            module.isPreset = isModular && maybe(); // a device has presets or module lists
            line("Preset = ", module.isPreset ? 1 : 0);
        }
        if (maxLength > 0 && maybe()) {
            module.block = makeModuleBlock();
        }
        line("EndModule");
    }
}

void Device::makeDiagnosis()
{
    for (int count = below(6); count > 0; --count) {
        const int bit = below(496);
        const int value = below(2);
        deviceTexts.push_back({bit, bit, value, name(30)});
        line(value == 1 ? "Unit_Diag_Bit(" : "Unit_Diag_!Bit(", bit, ") = \"", deviceTexts.back().text, '"');
    }
    for (int count = below(4); count > 0; --count) {
        const int first = between(0, 61) * 8 + below(7);
        const int last = between(first + 1, first / 8 * 8 + 7);
        line("Unit_Diag_Area = ", first, '-', last);
        for (int values = between(1, 3); values > 0; --values) {
            deviceTexts.push_back({first, last, below(2 << (last - first)), name(30)});
            line("Value(", deviceTexts.back().value, ") = \"", deviceTexts.back().text, '"');
        }
        line("Unit_Diag_Area_End");
    }
    for (int count = below(5); count > 0; --count) {
        channelTexts.push_back({between(16, 31), 0, 0, name(30)});
        line("Channel_Diag(", channelTexts.back().number, ") = \"", channelTexts.back().text, '"');
    }
    std::set<std::pair<int, int>> seen; // the first text counts
    for (int bit = 0; bit < 496; ++bit) {
        std::string found[2];
        for (const Text& one : deviceTexts)
            if (one.number == bit && one.last == bit && seen.insert({bit, one.value}).second)
                found[one.value] = padded(one.text, 30);
        if (!found[0].empty() || !found[1].empty())
            expect("bit", bit, found[1], found[0]);
    }
    for (const Text& one : deviceTexts)
        if (one.number != one.last)
            expect("area", one.number / 8 + 1, one.number % 8, one.last % 8, one.value, padded(one.text, 30));
    for (int type = 16; type < 32; ++type) {
        const auto first = std::find_if(channelTexts.begin(), channelTexts.end(),
                                        [type](const Text& one) { return one.number == type; });
        if (first != channelTexts.end())
            expect("channel", type, padded(first->text, 30));
    }
    expect("diagnosis", deviceTexts.size(), channelTexts.size());
}

int Device::blockOf(const Module& module) const
{
    const auto found = std::find(blocks.begin(), blocks.end(), module.block);
    return found == blocks.end() ? -1 : static_cast<int>(found - blocks.begin());
}

/// One entry: kind, identifier, its length bytes as signed numbers, the manufacturer's bytes, xSlot and block.
void Device::expectItem(const char* query, const std::string& label, const Bytes& identifier, int block, int isOpen)
{
    const int first = identifier[0];
    const bool isSpecial = (first & 0x30) == 0 && first != 0;
    const std::size_t lengths = isSpecial ? static_cast<std::size_t>((first >> 6) % 2 + (first >> 7)) : 0;
    const auto length = [&](std::size_t i) {
        return i <= lengths ? static_cast<int>(static_cast<signed char>(identifier[i])) : -1;
    };
    expect(query, label,
           first == 0  ? 0
           : isSpecial ? 5
                       : 1,
           first, isSpecial ? length(1) : 0, isSpecial ? length(2) : 0,
           listed(isSpecial ? Bytes(identifier.begin() + 1 + static_cast<std::ptrdiff_t>(lengths), identifier.end())
                            : Bytes()),
           isOpen, block);
}

void Device::expectModules()
{
    const bool hasSeveral =
        std::any_of(modules.begin(), modules.end(), [](const Module& module) { return module.identifiers.size() > 1; });
    const bool isOnlyOne = modules.size() == 1;
    const bool isFixedCode = isOnlyOne || isFixed; // and then no slot is open
    int slots = 0;
    for (const Module& module : modules) {
        if ((isOnlyOne && !isModular) || (!hasSeveral && module.isPreset)) {
            for (std::size_t i = 0; i < module.identifiers.size(); ++i, ++slots)
                expectItem("slot", "", module.identifiers[i], i == 0 ? blockOf(module) : -1, isFixedCode ? 0 : 1);
        }
    }
    expect("slots", slots, slots > 0 && isFixedCode ? 1 : 0, isModular && !hasSeveral ? maxModule : 244);
    if (isModular && !hasSeveral) {
        for (const Module& module : modules)
            if (!module.isPreset)
                expectItem("module", padded(module.name.substr(0, 30), 30), module.identifiers[0], blockOf(module), 0);
    }
    if (!(isModular ? hasSeveral : modules.size() > 1))
        return;
    for (const Module& module : modules) {
        expect("list", padded(module.name.substr(0, 30), 30), module.identifiers.size(), 0);
        for (std::size_t i = 0; i < module.identifiers.size(); ++i)
            expectItem("entry", std::string(20, ' '), module.identifiers[i], i == 0 ? blockOf(module) : -1, 1);
    }
}

/// Writes a parameter's value into bytes.
void writeDefault(const Prm& prm, Bytes& bytes)
{
    const Definition& of = *prm.definition;
    const auto at = static_cast<std::size_t>(prm.offset);
    if (of.name.empty())
        return;
    const int mask = ((1 << of.width) - 1) << of.bit;
    if (of.type >= kBit)
        bytes[at] = (bytes[at] & ~mask) | (of.value << of.bit);
    else if (kTypes[of.type].size == 1)
        bytes[at] = of.value & 0xFF;
    else
        bytes[at] = (of.value >> 8) & 0xFF, bytes[at + 1] = of.value & 0xFF;
}

void Device::expectPrm(const char* query, int at, const Prm& prm, int base, std::vector<const TextBlock*>& helps)
{
    const Definition& of = *prm.definition;
    const Type& type = kTypes[of.type];
    int help = 0;
    if (of.texts != nullptr) {
        auto known = std::find(helps.begin(), helps.end(), of.texts);
        if (known == helps.end())
            known = helps.insert(helps.end(), of.texts);
        help = static_cast<int>(known - helps.begin()) + 1;
    }
    const auto number = [&](int value) {
        return digits(of.type == kSigned8 ? value & 0xFF : value, type.size == 1 ? 3 : 5);
    };
    std::string name = type.name;
    std::string value = number(of.value);
    if (of.type == kBit) {
        name += std::to_string(of.bit) + ' ';
        value = std::to_string(of.value);
    } else if (of.type == kBitArea) {
        name += std::to_string(of.bit) + std::to_string(of.width);
        value.clear();
        for (int bit = of.width - 1; bit >= 0; --bit)
            value += (of.value >> bit & 1) != 0 ? '1' : '0';
    }
    const bool isBit = of.type == kBit;
    expect(query, at, std::string("PS").append(digits(prm.offset + base, 3)), padded(of.name.substr(0, 30), 30), name,
           value, isBit ? "0" : number(of.low), isBit ? "1" : number(of.high), help);
}

void Device::expectHelps(const char* query, const std::vector<const TextBlock*>& helps)
{
    expect(query, helps.size());
    for (const TextBlock& block : textBlocks) { // in the order of the file
        const auto known = std::find(helps.begin(), helps.end(), &block);
        for (const auto& [value, shown] : known == helps.end() ? TextBlock{}.texts : block.texts)
            expect(query, known - helps.begin() + 1, value, padded(shown.substr(0, 30), 30));
    }
}

void Device::expectParameters()
{
    // Wherever a slot parameter block is, the length of the station's parameters leaves room for it.
    const int length = hasExtended ? maxLength : static_cast<int>(plain.size());
    int prmEnd = station.end;
    for (const Prm& prm : station.prms)
        prmEnd = std::max(prmEnd, prm.offset + static_cast<int>(kTypes[prm.definition->type].size));
    const bool hasConstants = station.end > 0;
    int common = 0;
    if (hasExtended)
        common = hasConstants || !station.prms.empty() ? prmEnd : static_cast<int>(plain.size());
    Bytes bytes = hasConstants ? Bytes(station.bytes.begin(), station.bytes.begin() + station.end) : plain;
    bytes.resize(237);
    std::vector<const TextBlock*> helps;
    for (std::size_t i = 0; i < station.prms.size(); ++i) {
        writeDefault(station.prms[i], bytes);
        expectPrm("parameter", static_cast<int>(i), station.prms[i], 7, helps);
    }
    bytes.resize(static_cast<std::size_t>(length));
    expect("lengths", hasExtended ? common + 7 : length + 7, length + 7, common);
    expect("bytes", listed(bytes));
    expectHelps("help", helps);
    helps.clear();
    for (std::size_t block = 0; block < blocks.size(); ++block) {
        const PrmBlock& of = blocks[block];
        Bytes ofBlock(of.bytes.begin(), of.bytes.begin() + of.end);
        ofBlock.resize(of.bytes.size());
        int at = 0;
        for (const Prm& prm : of.prms) {
            writeDefault(prm, ofBlock);
            if (prm.definition->name.empty())
                expect("keyword", block, prm.offset, kTypes[prm.definition->type].name);
            else
                expectPrm("slot parameter", at++, prm, 0, helps);
        }
        expect("block", block, listed(ofBlock), at);
    }
    expectHelps("slot help", helps);
}

Device::Device(unsigned seed) : random(seed)
{
    makeHead();
    makeTexts();
    makeDefinitions();
    makeStation();
    makeModules();
    makeDiagnosis();
    expectModules();
    expectParameters();
    expect("warnings", warnings);
    gsd = text.str();
    std::sort(answers.begin(), answers.end());
}

std::string itemOf(const char* query, const std::string& label, const CSLAVE_SLOT_PRESET_TYPE& preset, int block)
{
    const int count = preset.kind == 5 ? preset.identifier % 16 : 0;
    return row(query, label, preset.kind, int{preset.identifier}, int{preset.lengthByte1}, int{preset.lengthByte2},
               listed(Bytes(preset.mfrData, preset.mfrData + count)), preset.xSlot, block);
}

std::string prmOf(const char* query, int at, const _parastruct& prm)
{
    return row(query, at, std::string(prm.reference, 5), std::string(prm.name, 30), std::string(prm.dataType, 5),
               prm.defaultValue, prm.minValue, prm.maxValue, prm.helpNumber);
}

/// The same lines, asked of the library.
Lines asked(cTypDescriptor& device)
{
    Lines lines;
    const auto say = [&lines](const auto&... value) { lines.push_back(row(value...)); };
    SLAVE_TYPE_HEADER_INFO header;
    SLAVE_TYPEDATA_TYPE data;
    char order[31] = "";
    char family[11] = "";
    char bitmap[8] = "";
    EXPECT_EQ(device.getSlaveTypeHeader(&header) + device.getSlaveTypeData(&data) + device.getMLFBstring(order) +
                  device.getFamily(family) + device.getBitMapFileName(bitmap),
              0);
    EXPECT_STREQ(header.family, family);
    say("header", header.modelName, header.vendorName, family, header.periphery, header.identNumber, header.headerCnf);
    say("names", order, bitmap, device.getSlotOffset(), device.isModular(), device.getGsdRevision());
    say("data", data.features, data.asicType, data.minSlaveInterval, data.baudRates, data.maxInputLen,
        data.maxInputBits, data.maxOutputLen, data.maxOutputBits, data.maxDiagDataLen, data.maxDataLen, data.eterDelay,
        data.maxResponseDelay);
    say("lengths", data.userPrmDataLen, data.userPrmDataLenRead, data.commonPrmDataLen);
    say("bytes", listed(Bytes(data.userPrmData, data.userPrmData + data.userPrmDataLenRead - 7)));
    say("warnings", device.getGsdCntOfWarnings());

    for (int bit = 0; bit < 496; ++bit) {
        SLAVE_DIAG_TYPE found;
        if (device.getSlaveDiagMsg(0, bit / 8 + 1, bit % 8, &found) == kOk)
            say("bit", bit, found.setText, found.clearText);
    }
    for (int i = 0; i < device.getSlaveBGrDiagMsgCnt(); ++i) {
        SLAVE_BGR_DIAG_TYPE area;
        EXPECT_EQ(device.getSlaveBGrDiagMsg(i, &area), kOk);
        say("area", 100 * area.byteHigh + area.byteLow, int{area.firstBit}, int{area.lastBit}, area.value, area.text);
    }
    for (int type = 0; type < 256; ++type) {
        char found[31];
        if (device.getChannelDiagMsg(type, found) == kOk)
            say("channel", type, found);
    }
    say("diagnosis", device.getSlaveDiagMsgCnt(), device.getChannelDiagMsgCnt());

    int slots = 0;
    device.isKonfigFixed(&slots);
    say("slots", slots, device.isP36KY(), data.maxModule);
    MLFB_ITEM item;
    for (int i = 0; i < slots; ++i) {
        EXPECT_EQ(device.getFixedSlotId(i, &item), kOk);
        lines.push_back(itemOf("slot", item.mlfb, item.preset, item.spIndex));
    }
    for (int i = 0; i < device.getMLFBListCnt(); ++i) {
        EXPECT_EQ(device.getMLFBListItem(i, &item), kOk);
        lines.push_back(itemOf("module", item.mlfb, item.preset, item.spIndex));
    }
    for (int list = 0; list < device.getLSKCnt(); ++list) {
        char text[31];
        int isFixed = 7;
        EXPECT_EQ(device.getLSKText(list, text), kOk);
        const int count = device.getSKListCnt(list, &isFixed);
        say("list", text, count, isFixed);
        for (int i = 0; i < count; ++i) {
            LSK_ITEM entry;
            EXPECT_EQ(device.getSKListItem(list, i, &entry), kOk);
            lines.push_back(itemOf("entry", entry.text, entry.item.preset, entry.item.spIndex));
        }
    }

    _parastruct prm;
    for (int i = 0; i < device.getParaStructCnt(); ++i) {
        EXPECT_EQ(device.getParaStruct(i, &prm), 1);
        lines.push_back(prmOf("parameter", i, prm));
    }
    int longest = 0;
    for (int block = 0; block < device.getSPBlockAnz(); ++block) {
        unsigned char bytes[237];
        int length = 0;
        EXPECT_EQ(device.getSlotParameters(block, bytes, &length), kOk);
        longest = std::max(longest, length);
        const int count = device.getStructuredSlotParameterCnt(block);
        say("block", block, listed(Bytes(bytes, bytes + length)), count);
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(device.getStructuredSlotParameter(block, i, &prm), kOk);
            lines.push_back(prmOf("slot parameter", i, prm));
        }
        KEYWORD_TYPE keyword;
        while (device.hasSPBlockThisKeyWord(&keyword, block, 0) == 1)
            say("keyword", block, keyword.byteOffset, keyword.dataType);
    }
    EXPECT_EQ(device.getMaxSPBlockLen(), longest);

    PARA_HELPMESSAGE_TYPE message;
    say("help", device.getPSLHelpAnz());
    for (int i = 0; i < device.getPSLHelpAnz(); ++i) {
        const int block = device.getPSLHelpRef(i);
        for (int help = 0; help < device.getHelpMessageCnt(block); ++help) {
            EXPECT_EQ(device.getParaHelpMessage(block, help, &message), 1);
            say("help", block, message.value, message.text);
        }
    }
    say("slot help", device.getSPHelpAnz());
    for (int block = 1; block <= device.getSPHelpAnz(); ++block) {
        for (int help = 0; help < device.getSPHelpCnt(block); ++help) {
            EXPECT_EQ(device.getSPHelpItem(block, help, &message), kOk);
            say("slot help", block, message.value, message.text);
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

TEST(RandomDevices, AreWhatWasCompiled)
{
    constexpr unsigned kDevices = 400;
    for (unsigned seed = 0; seed < kDevices; ++seed) {
        const Device expected(seed);
        cTypDescriptor device(putFile("random.GSD", expected.gsd).c_str(), 0, nullptr);
        ASSERT_EQ(device.getStatus(), kOk) << seed << " line " << device.getGsdErrLineNr() << '\n' << expected.gsd;
        ASSERT_EQ(device.checkTypeFileContents(), kOk) << seed << '\n' << expected.gsd;
        const Lines lines = asked(device);
        ASSERT_EQ(lines, expected.answers) << seed << '\n' << expected.gsd;
    }
}

} // namespace
