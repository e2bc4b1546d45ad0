// Devices, configurations, captured telegrams and diagnoses as JSON text, UTF-8. The names are documented in tools/JSON.md and stay as they are.

#pragma once

#include "host/configuration.h"
#include "host/device.h"
#include "host/diagnosis.h"
#include "host/readBack.h"

#include <string>

namespace typdescriptor {

TYPDESCRIPTOR_HOST_API std::string toJson(const Device& device);
TYPDESCRIPTOR_HOST_API std::string toJson(const Configuration& configuration);
TYPDESCRIPTOR_HOST_API std::string toJson(const Diagnosis& diagnosis);
/// @param planned  what the capture is compared with; null for nothing
TYPDESCRIPTOR_HOST_API std::string toJson(const Device& device, const Capture& capture,
                                          const Configuration* planned = nullptr);

} // namespace typdescriptor
