// Explains the diagnostic answer of a slave.
//
// In: the telegram (six station bytes, then blocks, each begun by a header byte that says what it is and how long) and
// the device with its texts. Out: what is said, block by block, and what is wrong with the telegram itself. A telegram
// may end anywhere and hold anything: what is there is explained, what is wrong is named.

#pragma once

#include "tools/device.h"

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A bit or an area of the device-related diagnosis.
struct DeviceEntry {
    unsigned byte = 0; // behind the header byte, from 1
    unsigned firstBit = 0;
    unsigned lastBit = 0;
    unsigned value = 0;
    std::string text; // empty when the device has none for it
};

struct ChannelEntry {
    unsigned identifier = 0; // number of the configuration identifier, from 0
    unsigned channel = 0;
    unsigned errorType = 0;
    const char* direction = "";
    const char* unit = "";
    std::string text;
};

struct DiagnosisBlock {
    enum Kind { kDevice, kIdentifier, kChannel, kRevision };

    Kind kind = kDevice;
    std::size_t offset = 0; // of its header byte in the telegram, from 0
    std::vector<std::uint8_t> bytes;
    std::vector<DeviceEntry> device;
    std::vector<unsigned> identifiers; // with a diagnosis, from 0
    std::optional<ChannelEntry> channel;
    unsigned revision = 0;
};

struct StationStatus {
    std::vector<std::string> states;
    std::optional<unsigned> master; // bus address; none when no master has taken the station
    std::optional<unsigned> identNumber;
};

struct Diagnosis {
    StationStatus station;
    std::vector<DiagnosisBlock> blocks;
    std::vector<std::string> problems;
};

Diagnosis explainDiagnosis(const Device& device, const std::vector<std::uint8_t>& telegram);

/// The bytes that words of hexadecimal digits spell: "00 0C", "0x00,0x0C", "000C".
/// @param wrong  receives the first word that is none
/// @return nothing when a word is none
std::optional<std::vector<std::uint8_t>> parseHexBytes(const std::vector<std::string>& arguments, std::string& wrong);

std::string diagnosisText(const Diagnosis& diagnosis, bool inColour);
nlohmann::ordered_json diagnosisJson(const Diagnosis& diagnosis);
