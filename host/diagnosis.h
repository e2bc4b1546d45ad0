// Explains the diagnostic answer of a slave.
//
// In: the telegram (six station bytes, then blocks, each begun by a header byte that says what it is and how long), the
// device with its texts, and, where there is one, the configuration that the slave runs with. Out: what is said, block by
// block, and what is wrong with the telegram itself. A telegram may end anywhere and hold anything: what is there is
// explained, what is wrong is named. Bytes of the telegram count from 0.

#pragma once

#include "host/configuration.h"
#include "host/device.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

/// Something that the telegram says, or that is wrong with it.
struct DiagnosisState {
    std::string name;       // stable, for programs: "stationNotReady"
    std::string text;       // for people
    std::size_t offset = 0; // of the first byte it comes from
    std::size_t byteCount = 1;
};

/// A bit or an area of the device-related diagnosis.
struct DeviceEntry {
    unsigned byte = 0;      // behind the header byte, from 1, as GSD files count
    std::size_t offset = 0; // of that byte in the telegram
    unsigned firstBit = 0;
    unsigned lastBit = 0; // above 7 where an area goes on in the next byte
    unsigned value = 0;
    std::string text; // empty when the device has none for it
    std::string help;
};

/// A configuration identifier, and the module that it belongs to where the configuration is known.
struct IdentifierPlace {
    unsigned identifier = 0; // from 0
    unsigned slot = 0;       // from 1; 0 when not known
    std::string module;
    std::string slotName; // from a GSD file's SlotDefinition; often empty, as below
};

struct ChannelEntry {
    IdentifierPlace place;
    unsigned channel = 0;
    unsigned errorType = 0;
    std::string name; // of the error type: "shortCircuit"; "makerSpecific" from 16 up
    const char* direction = "";
    const char* unit = "";
    std::string text; // empty when the device has none for it
    std::string help;
};

/// What the second to fourth byte of a DPV1 alarm or status say. Slot 0 is the station.
struct Dpv1Entry {
    unsigned type = 0;
    std::string name; // "diagnosisAlarm", "statusMessage"
    std::string text;
    unsigned slot = 0;
    std::string module; // empty when not known
    std::string slotName;
    std::string specifier; // name: "none", "appears", ...
    std::string specifierText;
    std::optional<unsigned> sequence;  // alarms only
    bool wantsAcknowledgement = false; // alarms only: beyond the usual one
    std::vector<std::uint8_t> userData;
};

/// The state of one slot's module, out of a DPV1 module status.
struct ModuleState {
    unsigned slot = 0; // from 1
    std::string module;
    std::string slotName;
    std::string name; // "valid", "faulty", "wrongModule", "noModule"
    std::string text;
};

/// One publisher, out of a DPV1 link status.
struct LinkState {
    unsigned publisher = 0; // bus address
    bool isActive = false;
    bool hasWrongLength = false;
};

struct DiagnosisBlock {
    enum Kind { kDevice, kIdentifier, kChannel, kRevision, kAlarm, kStatus, kModuleStatus, kLinkStatus };

    Kind kind = kDevice;
    std::size_t offset = 0; // of its header byte in the telegram
    std::vector<std::uint8_t> bytes;
    std::vector<DeviceEntry> device;          // kDevice, kAlarm, kStatus: of the texts for its bits
    std::vector<IdentifierPlace> identifiers; // kIdentifier: those with a diagnosis
    std::optional<ChannelEntry> channel;      // kChannel, unless the entry is cut
    std::optional<Dpv1Entry> dpv1;            // the kinds of DPV1, unless their head is cut
    std::vector<ModuleState> modules;         // kModuleStatus
    std::vector<LinkState> links;             // kLinkStatus
    unsigned revision = 0;                    // kRevision
};

struct StationStatus {
    bool isPresent = true; // else the master made the answer, and nothing in it is the station's
    std::vector<DiagnosisState> states;
    std::optional<unsigned> master; // bus address; none when no master has taken the station
    std::optional<unsigned> identNumber;
};

struct Diagnosis {
    std::vector<std::uint8_t> telegram;
    StationStatus station;
    std::vector<DiagnosisBlock> blocks;
    std::vector<DiagnosisState> notes;    // worth knowing
    std::vector<DiagnosisState> problems; // the answer is not what the rules or the device allow
};

/// "device", "identifier", "channel", "revision", "alarm", "status", "moduleStatus", "linkStatus".
TYPDESCRIPTOR_HOST_API const char* kindName(DiagnosisBlock::Kind kind);

struct DiagnosisOptions {
    /// Whether device-related blocks are DPV1 alarms and status messages; without it what the device says, and they are
    /// not when it does not say.
    std::optional<bool> isDpv1;
    /// What the slave runs with: names the modules. Not owned.
    const Configuration* configuration = nullptr;
};

/// The ident number in an answer; nothing when it is cut, or the station does not exist.
TYPDESCRIPTOR_HOST_API std::optional<unsigned> identNumberIn(const std::vector<std::uint8_t>& telegram);

TYPDESCRIPTOR_HOST_API Diagnosis explainDiagnosis(const Device& device, const std::vector<std::uint8_t>& telegram,
                                                  const DiagnosisOptions& options = {});

} // namespace typdescriptor
