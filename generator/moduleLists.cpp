// Preset configuration, order-number list and module list. Which of them carries the modules depends on whether the
// station is modular and whether any module has several identifiers:
//
//   compact, one module             preset configuration: its identifiers
//   compact, several modules        module list: all; preset configuration: the preset ones, if all are single
//   modular, all single             order-number list: those without preset; preset configuration: those with
//   modular, one with several       module list: all
//
// A KGP device's order-number list names its KGP modules in every case.

#include "generator/typeFileGenerator.h"

#include <utility>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kModuleListHeadWidth = 6; // tag, number, quote
constexpr std::size_t kNumberAndQuote = kNumberDigits + 1;
constexpr std::size_t kQuotedNameWidth = kNameWidth + 2;

RecordText blockReference(RecordText record, std::uint32_t blockNumber)
{
    return record.text(kTagSlotPrmBlock).numberField(blockNumber).end();
}

} // namespace

void TypeFileGenerator::writePresetConfig()
{
    const bool oneModule = model.modules.count() == 1;
    std::size_t count = 0;
    bool presetOnly = false;
    if (!model.modularStation && oneModule) {
        count = model.modules.first().identifiers().count();
    } else if (!model.multiIdentifierModuleSeen) {
        for (const GSD_MODULE& module : model.modules)
            count += module.preset != 0 ? 1 : 0;
        presetOnly = count != 0;
    }

    const bool fixed = oneModule || model.fixPresetModules;
    image.append(image.record().head(fixed ? kTagPresetClosed : kTagPresetByIdentifier, count), kStructureWidth);
    if (count > 0) {
        for (const GSD_MODULE& module : model.modules) {
            if (module.preset != 0 || !presetOnly)
                writePresetIdentifiers(module);
        }
    }
    image.append(image.record().text(kTagSlotsEnd).end());
}

void TypeFileGenerator::writePresetIdentifiers(const GSD_MODULE& module)
{
    bool first = true;
    for (const GSD_IDENT_ITEM identifier : module.identifiers()) {
        const std::span<const std::uint8_t> bytes = identifier.bytes;
        image.append(image.record().number(bytes.front()), kNumberDigits);
        bool endsWithQuote = false;
        if (bytes.size() > 1) {
            image.append(image.record().quote());
            for (std::size_t i = 1; i < bytes.size(); ++i)
                image.append(image.record().numberField(bytes[i]), kNumberAndQuote);
            endsWithQuote = true;
        }
        if (first && module.prmBlock() != 0) {
            if (!endsWithQuote)
                image.append(image.record().quote());
            image.append(image.record().text(kTagSlotPrmBlock).numberField(module.prmBlock()));
        }
        image.append(image.record().end());
        first = false;
    }
}

void TypeFileGenerator::writeOrderNumberList()
{
    const std::size_t head = image.reserve(kOrderListHeadWidth);
    unsigned count = 0;
    if (model.isKgpDevice) {
        for (const GSD_MODULE& module : model.kgpModules) {
            writeKgpEntry(module);
            ++count;
        }
    } else if (model.modularStation && !model.multiIdentifierModuleSeen) {
        for (const GSD_MODULE& module : model.modules) {
            if (module.preset != 0)
                continue;
            writeOrderNumberEntry(module);
            ++count;
        }
    }
    image.setListHead(head, kOrderListHeadWidth, kTagOrderNumbers, count);
}

void TypeFileGenerator::writeKgpEntry(const GSD_MODULE& module)
{
    const std::span<const std::uint8_t> bytes = module.configBytes(); // always five
    image.append(image.record(kQuotedNameWidth)
                     .quotedField(module.name(), kNameWidth)
                     .character('0')
                     .numberField(bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8)
                     .numberField(bytes[2])
                     .numberField(bytes[3])
                     .numberField(bytes[4]));
    image.append(blockReference(image.record(), module.prmBlock()));
}

void TypeFileGenerator::writeOrderNumberEntry(const GSD_MODULE& module)
{
    const std::span<const std::uint8_t> bytes = module.identifiers().first().bytes;
    RecordText entry = image.record(kQuotedNameWidth + bytes.size() * kNumberAndQuote);
    entry.quotedField(module.name(), kNameWidth);
    for (const std::uint8_t byte : bytes)
        entry.numberField(byte);
    image.append(blockReference(entry, module.prmBlock()));
}

void TypeFileGenerator::writeModuleList()
{
    const std::size_t head = image.reserve(kListHeadWidth);
    std::size_t count = 0;
    if (!model.modularStation ? model.modules.count() > 1 : model.multiIdentifierModuleSeen) {
        for (const GSD_MODULE& module : model.modules)
            writeModuleListEntry(module, ++count);
    }
    image.setListHead(head, kListHeadWidth, kTagModuleLists, count);
}

void TypeFileGenerator::writeModuleListEntry(const GSD_MODULE& module, std::size_t number)
{
    image.append(image.record().text(kTagModuleList).numberField(number), kModuleListHeadWidth);
    image.append(image.record(kNameWidth).field(module.name(), kNameWidth).quote().end());
    image.append(image.record().head(kTagPresetByIdentifier, module.identifiers().count()));
    std::uint32_t prmBlock = module.prmBlock();
    for (const GSD_IDENT_ITEM identifier : module.identifiers()) {
        RecordText slot = image.record(identifier.bytes.size() * kNumberAndQuote + kSlotTextWidth + 1);
        for (const std::uint8_t byte : identifier.bytes)
            slot.numberField(byte);
        image.append(blockReference(slot.field({}, kSlotTextWidth).quote(), std::exchange(prmBlock, 0)));
    }
}

} // namespace typdescriptor::internal
