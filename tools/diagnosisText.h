// A diagnosis as a person wants to read it.

#pragma once

#include "host/diagnosis.h"

#include <string>

/// The station's state, then block by block, then notes. Problems are left to the caller.
std::string diagnosisText(const typdescriptor::Diagnosis& diagnosis, bool inColour);
