// The generator: turns the model of one GSD file into the records of a type file.
//
// In: the model of a whole file. Out: the image, every character of it. The record layouts are those of
// typefile/format.h; the fixed part and the larger groups of records have files of their own.

#pragma once

#include "generator/model.h"
#include "generator/outputImage.h"

#include <cstdint>

namespace typdescriptor::internal {

class TypeFileGenerator {
public:
    TypeFileGenerator(GsdModel& compiled, OutputImage& target) : model(compiled), image(target) {}

    /// Writes the image. To be called once: shared parameter blocks and help numbers change the model.
    /// @return 0; kErrGsdReference when a placement refers to no ExtUserPrmData block; kErrGsdImageFull
    int generateTypeFile();

private:
    // Which of the two sets of parameters and help numbers a record belongs to.
    enum class Scope { station, module };

    int writeRecords();

    void writeUserPrmData();
    int writeStationPrmBlock();
    int writePrmRecord(const GSD_PRM_REF_ITEM& placement, Scope scope);
    std::uint16_t helpNumber(const GSD_EXT_PRM_DEF& definition, Scope scope);
    int writeSlotPrmBlocks(const GSD_LIST<GSD_MODULE_PRM>& prms);
    int writeSlotPrmBlock(const GSD_MODULE_PRM& prm);
    void writeHelpTextBlock(Scope scope);
    void writePrmBytes(const std::uint8_t* bytes, std::size_t available, std::size_t count);

    void writePresetConfig();
    void writePresetIdentifiers(const GSD_MODULE& module);
    void writeOrderNumberList();
    void writeOrderNumberEntry(const GSD_MODULE& module);
    void writeKgpEntry(const GSD_MODULE& module);
    void writeModuleList();
    void writeModuleListEntry(const GSD_MODULE& module, std::size_t number);

    void writeDiagTexts();
    void writeDeviceDiagText(const GSD_UNIT_DIAG_AREA& area, const GSD_DIAG_VALUE_ITEM& item);

    void writeBitmapName();
    void writeSlotRecords();
    void writeMaxDataLen();
    void writeOffsetOfModuleBlocks();

    GsdModel& model;
    OutputImage& image;
};

} // namespace typdescriptor::internal
