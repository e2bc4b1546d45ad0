// Host records that own their texts, and how the bytes of a fuzzer's input make one.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// The members that can be set by name.
struct HostRecordMember {
    enum Kind { kText, kNumber, kFlag };
    std::string_view name;
    Kind kind;
    std::size_t position;
    std::size_t size; // with the NUL of a text
};
#define HOST_RECORD_MEMBER(kind, name)                                                                                 \
    HostRecordMember                                                                                                   \
    {                                                                                                                  \
#name, HostRecordMember::kind, offsetof(TYPEFILE_COM_QX410, name), sizeof TYPEFILE_COM_QX410::name             \
    }
inline constexpr HostRecordMember kHostRecordMembers[] = {HOST_RECORD_MEMBER(kText, headLine),
                                                          HOST_RECORD_MEMBER(kText, orderNumber),
                                                          HOST_RECORD_MEMBER(kText, modelName),
                                                          HOST_RECORD_MEMBER(kText, vendorName),
                                                          HOST_RECORD_MEMBER(kText, family),
                                                          HOST_RECORD_MEMBER(kText, periphery),
                                                          HOST_RECORD_MEMBER(kNumber, identNumber),
                                                          HOST_RECORD_MEMBER(kNumber, minSlaveInterval),
                                                          HOST_RECORD_MEMBER(kNumber, maxInputLen),
                                                          HOST_RECORD_MEMBER(kNumber, maxOutputLen),
                                                          HOST_RECORD_MEMBER(kNumber, maxModule),
                                                          HOST_RECORD_MEMBER(kNumber, maxDiagDataLen),
                                                          HOST_RECORD_MEMBER(kNumber, userPrmDataLen),
                                                          HOST_RECORD_MEMBER(kFlag, setSlaveAddSupp),
                                                          HOST_RECORD_MEMBER(kFlag, syncModeSupp),
                                                          HOST_RECORD_MEMBER(kFlag, freezeModeSupp),
                                                          HOST_RECORD_MEMBER(kFlag, publisherSubscriber),
                                                          HOST_RECORD_MEMBER(kFlag, diagBufferable),
                                                          HOST_RECORD_MEMBER(kFlag, activeOrMaster),
                                                          HOST_RECORD_MEMBER(kFlag, evenSlotNumberRequired),
                                                          HOST_RECORD_MEMBER(kFlag, modularStation)};
#undef HOST_RECORD_MEMBER
/// Puts bytes into a member, and NULs behind them.
void setMember(TYPEFILE_COM_QX410& record, const HostRecordMember& member, std::string_view bytes);

struct HostRecord {
    TYPEFILE_COM_QX410 fields = {};
    std::vector<char> userPrmHex;
    std::vector<char> fixedSlotText;

    /// Empty, with room for whatever a device fills in.
    HostRecord();
    /// As the device fills it; no byte too much of room.
    explicit HostRecord(cTypDescriptor& device);
    HostRecord(HostRecord&&) = default;

    /// The texts end where their buffers end.
    void setTexts(std::string_view userPrm, std::string_view fixedSlots);
};

/// The members in front of the pointers as they lie in memory; the length of the first text in two bytes (kNoTexts: both
/// pointers are null); the first text, and the second to the end.
struct RecordInput {
    static constexpr std::size_t kMembers = offsetof(TYPEFILE_COM_QX410, userPrmDataLen) + 4;

    TYPEFILE_COM_QX410 fields = {}; // without its pointers
    bool hasTexts = true;
    std::string userPrmHex;
    std::string fixedSlotText;

    explicit RecordInput(std::string_view bytes);
    explicit RecordInput(const HostRecord& record);
    std::string bytes() const;
    HostRecord record() const;
};
