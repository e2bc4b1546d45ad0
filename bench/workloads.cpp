#include "bench/workloads.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <unordered_map>

namespace {

constexpr std::size_t kImageCapacity = 65000;
constexpr std::size_t kKilobyte = 1024;
constexpr const char* kStation = "RIO40A17.GSE"; // modular, with every kind of record but those of KGP

/// A module, or once there are as many as a list can have with those of the example, a diagnostic text.
std::string moduleText(int number)
{
    constexpr int kModules = 850;
    if (number >= kModules)
        return "Unit_Diag_Bit(" + std::to_string(number - kModules) + ") = \"Fault " + std::to_string(number) +
               "\"\r\n";
    return "Module = \"Digital module " + std::to_string(number) + "\" 0x11   ; two bytes\r\nEndModule\r\n";
}

std::string definitionText(int number)
{
    const std::string reference = std::to_string((number + 1000) % 65536);
    return "PrmText = " + reference + "\r\nText(0) = \"off\"\r\nText(1) = \"on\" ; default\r\nEndPrmText\r\n" +
           "ExtUserPrmData = " + reference + " \"Parameter " + reference +
           "\"\r\nUnsigned8 1 0-1\r\nPrm_Text_Ref = " + reference + "\r\nEndExtUserPrmData\r\n";
}

std::string grown(std::string text, std::size_t size, std::string (*more)(int))
{
    for (int i = 0; text.size() < size; ++i)
        text += more(i);
    return text;
}

[[noreturn]] void giveUp(const char* what)
{
    std::fprintf(stderr, "the benchmark cannot be run: %s\n", what);
    std::exit(1);
}

std::string contentsOf(const std::filesystem::path& path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// A file read whole.
class FileText {
public:
    explicit FileText(const char* path)
    {
        std::FILE* const stream = std::fopen(path, "rb");
        const std::size_t capacity = std::filesystem::file_size(path);
        text.reset(new char[capacity]);
        size = std::fread(text.get(), 1, capacity, stream);
        static_cast<void>(std::fclose(stream));
    }
    char* begin() const { return text.get(); }
    const char* end() const { return text.get() + size; }

private:
    std::unique_ptr<char[]> text;
    std::size_t size;
};

/// The first such character, `end` when there is none.
const char* found(char wanted, const char* begin, const char* end)
{
    const void* const place = std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return place != nullptr ? static_cast<const char*>(place) : end;
}

/// What a parser looks its keywords up in.
const std::unordered_map<std::string_view, int>& keywords()
{
    static const std::unordered_map<std::string_view, int> known = [] {
        std::unordered_map<std::string_view, int> all;
        for (const char* keyword :
             {"Unit_Diag_Bit", "Value", "Channel_Diag", "PrmText", "Text", "EndPrmText", "Module", "EndModule",
              "ExtUserPrmData", "Unsigned8", "Unsigned16", "Signed16", "Bit", "BitArea", "Prm_Text_Ref",
              "EndExtUserPrmData", "Ext_User_Prm_Data_Ref", "Ext_User_Prm_Data_Const", "Ext_Module_Prm_Data_Len"})
            all.emplace(keyword, static_cast<int>(all.size()));
        return all;
    }();
    return known;
}

} // namespace

TemporaryFile::TemporaryFile(std::string_view name, std::string_view contents)
    : file(std::filesystem::temp_directory_path() / ("typdescriptor-bench-" + std::string(name)))
{
    std::ofstream(file, std::ios::binary) << contents;
}

std::string exampleGsd(std::string_view name)
{
    return contentsOf(std::filesystem::path(TYPDESCRIPTOR_EXAMPLES) / name);
}

std::string makersGsd()
{
    return contentsOf(TYPDESCRIPTOR_BENCH "/AX40.GSE");
}

std::string gsdWithModules(std::size_t size)
{
    return grown(exampleGsd(kStation), size, moduleText);
}

std::string gsdWithDefinitions(std::size_t size)
{
    return grown(exampleGsd(kStation), size, definitionText);
}

const std::vector<Element> kElements{
    {"modules with equal parameters", kErrGsdImageFull,
     [](int number) {
         return "Module = \"M" + std::to_string(number) +
                "\" 0x11\nExt_Module_Prm_Data_Len = 2\nExt_User_Prm_Data_Const(0) = 1,2\nEndModule\n";
     }},
    {"modules with different parameters", kErrGsdImageFull,
     [](int number) {
         return "Module = \"M" + std::to_string(number) +
                "\" 0x11\nExt_Module_Prm_Data_Len = 3\nExt_User_Prm_Data_Const(0) = " + std::to_string(number % 256) +
                "," + std::to_string(number / 256 % 256) + "," + std::to_string(number / 65536) + "\nEndModule\n";
     }},
    {"definitions of parameters", kOk,
     [](int number) {
         return "ExtUserPrmData = " + std::to_string(number % 65536) + " \"P\"\nUnsigned8 0 0-255\nEndExtUserPrmData\n";
     }},
    {"references to parameters", kErrGsdImageFull,
     [](int number) {
         return std::string(number == 0 ? "ExtUserPrmData = 60000 \"P\"\nUnsigned8 0 0-255\nEndExtUserPrmData\n" : "") +
                "Module = \"M" + std::to_string(number) +
                "\" 0x11\nExt_Module_Prm_Data_Len = 1\nExt_User_Prm_Data_Ref(0) = 60000\nEndModule\n";
     }},
    {"texts of parameter values", kOk,
     [](int number) { return "PrmText = " + std::to_string(number % 65536) + "\nText(0) = \"off\"\nEndPrmText\n"; }},
    {"diagnostic texts", kErrGsdImageFull,
     [](int number) { return "Unit_Diag_Bit(" + std::to_string(number % 480) + ") = \"Fault\"\n"; }},
};

const std::vector<Workload> kCompilations{
    {"compile/2K", [] { return exampleGsd("CRLFBOX2.GSS"); }, {2.5, 1.5}},
    {"compile/makers20K", makersGsd, {2.5, 1.5}},
    {"compile/20K", [] { return gsdWithModules(20 * kKilobyte); }, {3.0, 1.6}},
    {"compile/60K", [] { return gsdWithModules(60 * kKilobyte); }, {3.3, 1.3}},
    {"compile/100K", [] { return gsdWithDefinitions(100 * kKilobyte); }, {3.0, 1.3}},
    {"compile/1M", [] { return gsdWithDefinitions(kKilobyte * kKilobyte); }, {3.0, 0.9}},
    {"compile/10M", [] { return gsdWithDefinitions(10 * kKilobyte * kKilobyte); }, {3.0, 0.9}},
};

const std::vector<Workload> kChecks{
    {"check/1K", [] { return exampleGsd("CRLFBOX2.GSS"); }, {6}},
    {"check/10K", [] { return gsdWithModules(17 * kKilobyte); }, {6}},
    {"check/60K", [] { return gsdWithModules(78 * kKilobyte); }, {6}},
};

std::vector<Work> compilationOf(const Workload& workload)
{
    std::string fileName = workload.name;
    std::replace(fileName.begin(), fileName.end(), '/', '-');
    const auto file = std::make_shared<TemporaryFile>(fileName + ".GSE", workload.gsd());
    return {{workload.name,
             [file] {
                 const cTypDescriptor descriptor(file->path(), 0, nullptr);
                 if (descriptor.getStatus() != kOk)
                     giveUp(resultText(descriptor.getStatus()));
             }},
            {workload.name + std::string("/floor"), [file] { readLinesAndFillImage(file->path()); }},
            {workload.name + std::string("/parser"), [file] { parseAndCopyTexts(file->path()); }}};
}

std::vector<Work> checkOf(const Workload& workload)
{
    const auto device = std::make_shared<Device>(workload.gsd());
    // A second check of a descriptor does all of the work again.
    return {{workload.name,
             [device] {
                 if (device->descriptor.checkTypeFileContents() != kOk)
                     giveUp(resultText(device->descriptor.getStatus()));
             }},
            {workload.name + std::string("/floor"), [device] {
                 volatile std::size_t count = countTerminators(device->image);
                 static_cast<void>(count);
             }}};
}

std::string gsdWithElements(const Element& element, int count)
{
    std::string text = exampleGsd(kStation);
    for (int i = 0; i < count; ++i)
        text += element.text(i);
    return text;
}

std::string gsdWithBlocks(int blocks, int parameters)
{
    std::string text = exampleGsd(kStation);
    text += "ExtUserPrmData = 60000 \"Parameter\"\nUnsigned8 1 0-1\nEndExtUserPrmData\n";
    for (int block = 0; block < blocks; ++block) {
        text += "Module = \"B" + std::to_string(block) +
                "\" 0x11\nExt_Module_Prm_Data_Len = " + std::to_string(parameters + 1) +
                "\nExt_User_Prm_Data_Const(0) = " + std::to_string(block) + "\n";
        for (int i = 1; i <= parameters; ++i)
            text += "Ext_User_Prm_Data_Ref(" + std::to_string(i) + ") = 60000\n";
        text += "EndModule\n";
    }
    return text;
}

void readLinesAndFillImage(const char* path)
{
    const FileText file(path);
    std::size_t comments = 0;
    for (const char* line = file.begin(); line < file.end();) {
        const char* const end = found('\n', line, file.end());
        comments += found(';', line, end) != end ? 1 : 0;
        line = end + 1;
    }
    const std::unique_ptr<char[]> image(new char[kImageCapacity]);
    std::memset(image.get(), ' ', kImageCapacity);
    volatile std::size_t result = comments + static_cast<unsigned char>(image[comments % kImageCapacity]);
    static_cast<void>(result);
}

void parseAndCopyTexts(const char* path)
{
    const auto isBehindKeyword = [](char c) { return c == ' ' || c == '=' || c == '(' || c == '\r' || c == '\t'; };
    const auto isNumberOrText = [](char c) { return (c >= '0' && c <= '9') || c == '"'; };
    const FileText file(path);
    char* const texts = file.begin(); // they are kept where the file is read already
    char* textsEnd = texts;
    int sum = 0;
    for (const char* line = file.begin(); line != file.end();) {
        const char* const end = found('\n', line, file.end());
        const char* at = std::find_if(line, end, isBehindKeyword);
        if (const auto known = keywords().find({line, at}); known != keywords().end())
            sum += known->second;
        at = std::find_if(at, end, isNumberOrText);
        int number = 0;
        at = std::from_chars(at, end, number).ptr;
        sum += number % 1000;
        const char* const text = found('"', at, end);
        if (text != end)
            textsEnd = std::copy(text + 1, found('"', text + 1, end), textsEnd);
        line = end == file.end() ? end : end + 1;
    }
    const std::unique_ptr<char[]> image(new char[kImageCapacity]);
    std::memset(image.get(), ' ', kImageCapacity);
    const auto size = static_cast<std::size_t>(textsEnd - texts);
    std::memcpy(image.get(), texts, std::min(kImageCapacity, size));
    volatile int result = sum + image[size % kImageCapacity];
    static_cast<void>(result);
}

std::size_t countTerminators(const std::vector<char>& image)
{
    std::size_t count = 0;
    const char* const last = image.data() + image.size();
    for (const char* place = image.data();; ++place, ++count) {
        place = static_cast<const char*>(std::memchr(place, ';', static_cast<std::size_t>(last - place)));
        if (place == nullptr)
            return count;
    }
}

Device::Device(const std::string& gsd) : Device(TemporaryFile("device.GSE", gsd)) {}

Device::Device(const TemporaryFile& file) : descriptor(file.path(), 0, nullptr)
{
    if (descriptor.checkTypeFileContents() != kOk)
        giveUp(resultText(descriptor.getStatus()));
    image.resize(descriptor.getDataSize());
    descriptor.writeObject(image.data());
}

std::vector<Work> constantQueries(cTypDescriptor& device)
{
    static char text[64];
    static int number = 0;
    static union Records {
        SLAVE_TYPE_HEADER_INFO header;
        SLAVE_TYPEDATA_TYPE data;
        SLOT_NUMBERING_TYPE numbering;
        MLFB_ITEM module;
        LSK_ITEM slot;
        CSLAVE_SLOT_PRESET_TYPE preset;
        _parastruct prm;
        Records() : header() {}
    } records;
    return {
        {"getSlaveTypeHeader", [&device] { device.getSlaveTypeHeader(&records.header); }},
        {"getSlaveTypeData", [&device] { device.getSlaveTypeData(&records.data); }},
        {"getSlotNumbering", [&device] { device.getSlotNumbering(&records.numbering); }},
        {"getFamily", [&device] { device.getFamily(text); }},
        {"getBitMapFileName", [&device] { device.getBitMapFileName(text); }},
        {"getDLLFileName", [&device] { device.getDLLFileName(text); }},
        {"getMLFBstring", [&device] { device.getMLFBstring(text); }},
        {"isKonfigFixed", [&device] { device.isKonfigFixed(&number); }},
        {"getFixedSlotId, last", [&device] { device.getFixedSlotId(number - 1, &records.module); }},
        {"getMLFBListItem, last", [&device] { device.getMLFBListItem(device.getMLFBListCnt() - 1, &records.module); }},
        {"getSKListCnt", [&device] { device.getSKListCnt(0, &number); }},
        {"getSKListItem, first", [&device] { device.getSKListItem(0, 0, &records.slot); }},
        {"getSlaveDiagMsgCnt", [&device] { number = device.getSlaveDiagMsgCnt(); }},
        {"getChannelDiagMsgCnt", [&device] { number = device.getChannelDiagMsgCnt(); }},
        {"getParaStructCnt", [&device] { number = device.getParaStructCnt(); }},
        {"getParaStruct, first", [&device] { device.getParaStruct(0, &records.prm); }},
        {"getSPBlockAnz", [&device] { number = device.getSPBlockAnz(); }},
        {"getStructuredSlotParameterCnt", [&device] { number = device.getStructuredSlotParameterCnt(0); }},
        {"getMaxSPBlockLen", [&device] { number = device.getMaxSPBlockLen(); }},
        {"getPSLHelpRef", [&device] { number = device.getPSLHelpRef(0); }},
        {"getHelpMessageCnt, last",
         [&device] { number = device.getHelpMessageCnt(device.getPSLHelpRef(device.getPSLHelpAnz() - 1)); }},
        {"getSPHelpAnz", [&device] { number = device.getSPHelpAnz(); }},
        {"getDataSize", [&device] { number = device.getDataSize(); }},
        {"changeTypeFilePossible", [&device] { number = device.changeTypeFilePossible(); }},
    };
}
