// The readers of single diagnostic blocks. Each gets a block with its bytes, which may be fewer than its header says.

#pragma once

#include "host/diagnosis.h"

namespace typdescriptor {

/// What all blocks of a telegram are read with.
struct DiagnosisContext {
    const Device& device;
    const Configuration* configuration;
    bool isDpv1;
};

/// Where an identifier of the configuration telegram lies.
IdentifierPlace placeOfIdentifier(const DiagnosisContext& context, unsigned identifier);
/// What is in a slot; null when not known.
const Slot* slotOf(const DiagnosisContext& context, unsigned slot);
/// Says where a slot is named that the configuration does not have.
void checkSlot(const DiagnosisContext& context, unsigned slot, std::size_t offset, Diagnosis& diagnosis);

/// The texts of a block's bits from a byte on (1: the first behind the header).
std::vector<DeviceEntry> entriesOf(const DiagnosisTexts& texts, const DiagnosisBlock& block, unsigned first);

/// A device-related block of a DPV1 slave. Sets the block's kind.
void explainDpv1(const DiagnosisContext& context, DiagnosisBlock& block, Diagnosis& diagnosis);

} // namespace typdescriptor
