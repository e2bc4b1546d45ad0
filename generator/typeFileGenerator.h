// The generator: turns the model of one GSD file into the records of a type file.
//
// In: a model whose keyword handlers have succeeded, with the fixed part of its image filled as far as the handlers
// fill it. Out: the complete image. The record layouts are those of typefile/format.h; the larger groups of records
// have files of their own.

#pragma once

#include "generator/model.h"

#include <cstdint>

class TypeFileGenerator {
public:
    explicit TypeFileGenerator(GsdModel& compiled) : model(compiled), image(compiled.image) {}

    /// Completes the image. To be called once.
    /// @return 0; kErrGsdReference when a placement refers to no ExtUserPrmData block; kErrGsdImageFull when the image
    ///         is full, the model's initError is then set
    int generateTypeFile();

private:
    // Which of the two sets of parameters and help numbers a record belongs to.
    enum class Scope { station, module };

    int writeRecords();
    void completeFixedFields();
    std::uint32_t moduleLimit() const;

    void writeUserPrmData();
    int writeStationPrmBlock();
    int writePrmRecord(const GSD_PRM_REF_ITEM& placement, Scope scope);
    void writeValueDescription(const GSD_EXT_PRM_DEF& definition);
    std::uint16_t helpNumber(const GSD_EXT_PRM_DEF& definition, Scope scope);
    int writeSlotPrmBlocks(const GSD_LIST<GSD_MODULE>& modules);
    int writeSlotPrmBlock(const GSD_MODULE& module);
    void writeHelpTextBlock(Scope scope);
    void writePrmBytes(const std::uint8_t* bytes, std::size_t available, std::size_t count);

    void writePresetConfig();
    void writePresetIdentifiers(const GSD_MODULE& module);
    void writeOrderNumberList();
    void writeOrderNumberEntry(const GSD_MODULE& module);
    void writeKgpEntry(const GSD_MODULE& module);
    void writeModuleList();
    void writeModuleListEntry(const GSD_MODULE& module, std::size_t number);
    void writeBlockReference(std::int32_t blockNumber);
    void writeQuotedName(std::string_view name);

    void writeDiagTexts();
    void writeDeviceDiagText(const GSD_UNIT_DIAG_AREA& area, const GSD_DIAG_VALUE_ITEM& item);

    void writeSlotRecords();
    void writeMaxDataLen();
    void writeOffsetOfModuleBlocks();

    GsdModel& model;
    OutputImage& image;
};
