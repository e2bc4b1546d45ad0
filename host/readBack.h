// The way back: what captured telegrams of a master say.
//
// In: the bytes of Chk_Cfg and Set_Prm as they were on the bus, and the device. Out: which module is in which slot, what
// every parameter is set to, and, where a configuration was planned, what is different from it. Several modules may have
// the same identifiers: the parameters then tell some of them apart, and what they do not tell apart is named.

#pragma once

#include "host/configuration.h"
#include "host/device.h"
#include "host/plan.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace typdescriptor {

struct CapturedTelegrams {
    std::vector<std::uint8_t> configuration; // Chk_Cfg; empty when it was not captured
    std::vector<std::uint8_t> parameters;    // Set_Prm from its first byte; empty when it was not captured
};

struct CapturedValue {
    std::string parameter;
    std::int64_t value = 0;
    std::string text; // empty when the device has none for it
    bool isDefault = true;
    bool isAllowed = true;
};

struct CapturedSlot {
    std::string name; // empty when no module has these identifiers
    Slot::Origin origin = Slot::kFree;
    std::optional<std::size_t> module;     // in Device::modules
    std::vector<std::string> alternatives; // modules that would give the same bytes
    std::vector<Identifier> identifiers;
    std::vector<ParameterArea> blocks; // with the captured bytes
    std::vector<CapturedValue> values;
};

/// What a capture has otherwise than it was planned.
struct Difference {
    std::string name; // stable: "module", "parameter", "constant", "standard", "identNumber"
    std::string text;
    unsigned slot = 0; // 0 for the station
    std::string parameter;
    std::string planned;
    std::string captured;
};

struct Capture {
    std::optional<StandardParameters> standard; // none without the seven bytes of it
    std::optional<unsigned> identNumber;
    ParameterArea stationArea; // with the captured bytes
    std::vector<CapturedValue> stationValues;
    std::vector<CapturedSlot> slots;
    Plan plan; // makes the same telegrams, as far as there are no problems
    std::vector<std::string> notes;
    std::vector<Refusal> problems; // the telegrams are not what the device allows, or cannot be read to their ends
};

/// @param planned  tells modules apart that have the same bytes, and names them when Chk_Cfg was not captured; may be null
/// @throws ChoiceError  for a device without these telegrams
TYPDESCRIPTOR_HOST_API Capture readBack(const Device& device, const CapturedTelegrams& telegrams,
                                        const Configuration* planned = nullptr);

/// What of a capture is otherwise than planned; of telegrams that were not captured nothing is.
TYPDESCRIPTOR_HOST_API std::vector<Difference> differencesOf(const Device& device, const Configuration& planned,
                                                             const Capture& capture);

} // namespace typdescriptor
