// Host records that own their texts, and how the bytes of a fuzzer's input make one.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

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
