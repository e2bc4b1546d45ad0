// A host record as the bytes of a fuzzer's input: the members in front of its pointers as they lie in memory; the
// length of the first text in two bytes (kNoTexts: both pointers are null); the first text, and the second to the end.

#pragma once

#include "descriptor/records.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

struct RecordInput {
    static constexpr std::size_t kMembers = offsetof(TYPEFILE_COM_QX410, userPrmDataLen) + 4;
    static constexpr std::size_t kLengthBytes = 2;
    static constexpr std::size_t kNoTexts = 0xFFFF;

    TYPEFILE_COM_QX410 record = {}; // without its pointers
    bool hasTexts = true;
    std::string userPrmHex;
    std::string fixedSlotText;

    RecordInput() = default;
    explicit RecordInput(std::string_view bytes)
    {
        std::memcpy(&record, bytes.data(), std::min(bytes.size(), kMembers));
        bytes.remove_prefix(std::min(bytes.size(), kMembers));
        if (bytes.size() < kLengthBytes)
            return;
        const std::size_t length = static_cast<std::uint8_t>(bytes[0]) + 256U * static_cast<std::uint8_t>(bytes[1]);
        bytes.remove_prefix(kLengthBytes);
        hasTexts = length != kNoTexts;
        userPrmHex = bytes.substr(0, length);
        fixedSlotText = bytes.substr(userPrmHex.size());
    }

    std::string bytes() const
    {
        std::string bytes(reinterpret_cast<const char*>(&record), kMembers);
        const std::size_t length = hasTexts ? std::min(userPrmHex.size(), kNoTexts - 1) : kNoTexts;
        bytes += static_cast<char>(length & 0xFF);
        bytes += static_cast<char>(length >> 8);
        return bytes + userPrmHex.substr(0, length) + fixedSlotText;
    }
};

/// A text as a host hands it over: up to its NUL and not a byte more.
inline std::unique_ptr<char[]> hostText(const std::string& text)
{
    const std::size_t length = std::strlen(text.c_str());
    std::unique_ptr<char[]> copy(new char[length + 1]);
    std::memcpy(copy.get(), text.c_str(), length + 1);
    return copy;
}
