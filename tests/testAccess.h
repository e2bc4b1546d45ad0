// The way of the tests to what is private in a descriptor. Forwards, nothing else.

#pragma once

#include "descriptor/cTypDescriptor.h"

#include <string>

struct TypDescriptorTestAccess {
    /// The image up to its stated size, checked or not.
    static std::string image(const cTypDescriptor& device) { return {device.image, device.imageCapacity}; }

    /// The image itself, to be changed between two checks.
    static char* imageData(cTypDescriptor& device) { return device.image; }
};
