// Any bytes as a GSD file. What compiles must be the same device when its written type file is read, and is then taken
// through its other forms.
//
// The first character chooses the language when it is the last letter of a GSD file's name: it stands before the
// section, where a GSD file may have anything.

#include "fuzz/answers.h"
#include "fuzz/property.h"
#include "fuzz/roundTrips.h"
#include "fuzz/scratchFile.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr std::size_t kMandatoryKeywords = 18;
// The generator stops 80 characters before the end of the image; its last record has 9.
constexpr std::size_t kLongestTypeFile = 65000 - 80 + 9;

const ScratchFile& gsdFile(std::string_view text)
{
    static std::map<char, std::unique_ptr<ScratchFile>> files;
    const bool isChosen = !text.empty() && std::string_view("DEFGIPS").find(text.front()) != std::string_view::npos;
    const char letter = isChosen ? text.front() : 'D';
    std::unique_ptr<ScratchFile>& file = files[letter];
    if (!file)
        file = std::make_unique<ScratchFile>(std::string(".GS") + letter);
    return *file;
}

void requireCompilation(const cTypDescriptor& device, std::string_view text)
{
    const int status = device.getStatus();
    requireResult(status,
                  {kOk, kErrGsdSyntax, kErrGsdProtocol, kErrGsdMandatory, kErrGsdSlotNumberType, kErrGsdNoSection,
                   kErrGsdFlag, kErrGsdNumber, kErrGsdRepeated, kErrGsdStationType, kErrGsdTooMany, kErrGsdEmptyBlock,
                   kErrGsdImageFull, kErrGsdNoPrmLen, kErrGsdReference, kErrGsdConfiguration, kErrGsdStringLen},
                  "the compilation");
    const auto lines = static_cast<long>(std::count(text.begin(), text.end(), '\n')) + 1;
    const int errorLine = device.getGsdErrLineNr();
    require(status == kOk ? errorLine == -1 : errorLine >= 1 && errorLine <= lines, "an error has its line");

    std::vector<GSD_WARNING_ITEM> warnings(static_cast<std::size_t>(device.getGsdCntOfWarnings()));
    device.getGsdWarnings(reinterpret_cast<char*>(warnings.data()));
    long line = 1;
    for (const GSD_WARNING_ITEM& warning : warnings) {
        requireResult(warning.code, {kWarnDataType, kWarnTextCut, kWarnDiagArea, kWarnPrmTextRef, kWarnChannelDiag},
                      "a warning");
        require(line <= static_cast<long>(warning.lineNumber) && static_cast<long>(warning.lineNumber) <= lines,
                "warnings come in the order of the lines");
        line = static_cast<long>(warning.lineNumber);
    }

    std::array<unsigned char, kMandatoryKeywords> found{};
    device.getGsdFoundMandatories(found.data());
    for (const unsigned char entry : found)
        require(entry == 0 || entry == 1 || entry == 255, "a mandatory keyword is found, missing or not required");
    require(status != kOk || std::count(found.begin(), found.end(), 0) == 0, "what compiles lacks no keyword");
    require(device.getGsdRevision() >= 0, "a GSD file has a revision");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const ScratchFile written("out.410");
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ScratchFile& file = gsdFile(text);
    file.write(text);
    written.write("");
    cTypDescriptor device(file.name(), 1, written.name());
    requireCompilation(device, text);
    const int status = device.getStatus();
    const int result = check(device);
    if (status != kOk) {
        require(written.contents().empty(), "what does not compile is not written");
        return 0;
    }
    require(written.contents().size() < kLongestTypeFile, "the generator stays within the image");
    cTypDescriptor read(written.name(), 0, nullptr);
    require(check(read) == result, "a written type file has the result of the compiled one");
    if (result != kOk)
        return 0;
    require(typeFileIn(objectOf(device)) == written.contents(), "the check ends where the generator ended");
    require(takeRound(device) == answersOf(read), "a written type file gives the answers of the compiled one");
    return 0;
}
