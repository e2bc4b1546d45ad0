// What the keyword lines of one GSD file have said so far: the model that their handlers fill, the block that is open,
// and what the host is told besides the image.

#pragma once

#include "descriptor/records.h"
#include "descriptor/resultCodes.h"
#include "generator/list.h"
#include "generator/model.h"
#include "gsd/keywordTable.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace typdescriptor::internal {

struct GsdReading {
    GsdModel model;
    GSD_LIST<GSD_WARNING_ITEM> warnings;
    std::array<std::uint8_t, kMandatoryKeywords + 1> foundMandatories{}; // and one for all others
    std::uint32_t lineNumber = 0xFFFFFFFF;                               // until a compilation starts
    std::uint32_t languageIndex = 0;                                     // column of the family names

    // The open block, and the record that its lines fill.
    GsdBlock openBlock = kOutside;
    GSD_MODULE* currentModule = nullptr;
    GSD_LIST<GSD_MODULE_PRM>* currentModulePrms = nullptr; // of modules like this
    GSD_EXT_PRM_DEF* currentExtPrmDef = nullptr;
    GSD_PRM_TEXT* currentPrmText = nullptr;
    GSD_UNIT_DIAG_AREA* currentUnitDiag = nullptr;

    void addWarning(int code) { warnings.append(model.arena, {code, lineNumber}); }
    /// Copies a text into the model; warns when its field in the image has no room for all of it.
    KeptText keepText(std::string_view text, std::size_t width)
    {
        if (text.size() > width)
            addWarning(kWarnTextCut);
        return model.arena.text(text.substr(0, width));
    }
};

} // namespace typdescriptor::internal
