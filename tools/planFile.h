// Plans in files.

#pragma once

#include "host/device.h"
#include "host/plan.h"

#include <string>

/// The plan of a file, for a device.
/// @throws typdescriptor::ChoiceError  when the file cannot be read or holds no plan for the device
typdescriptor::Plan loadPlan(const std::string& file, const typdescriptor::Device& device);
