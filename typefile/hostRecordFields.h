// What a host record and a type file's fixed block have in common field by field: the one table that the construction
// from a record writes by and the filling of a record reads by.

#pragma once

#include "descriptor/records.h"
#include "typefile/format.h"

#include <array>

namespace typdescriptor::internal {

/// A flag member and its letter in the type data.
struct HostRecordFlag {
    std::size_t position;
    int32_t TYPEFILE_COM_QX410::*member;
};

inline constexpr std::array<HostRecordFlag, 7> kHostRecordFlags{{
    {kSetSlaveAddress, &TYPEFILE_COM_QX410::setSlaveAddSupp},
    {kSyncMode, &TYPEFILE_COM_QX410::syncModeSupp},
    {kFreezeMode, &TYPEFILE_COM_QX410::freezeModeSupp},
    {kPublisherSubscriber, &TYPEFILE_COM_QX410::publisherSubscriber},
    {kDiagBufferable, &TYPEFILE_COM_QX410::diagBufferable},
    {kActiveMaster, &TYPEFILE_COM_QX410::activeOrMaster},
    {kEvenSlotNumber, &TYPEFILE_COM_QX410::evenSlotNumberRequired},
}};

/// A member of three characters and its place in the type data.
struct HostRecordNumber {
    std::size_t position;
    char (TYPEFILE_COM_QX410::*member)[kNumberDigits + 1];
};

inline constexpr std::array<HostRecordNumber, 5> kHostRecordNumbers{{
    {kMaxInputLen.position, &TYPEFILE_COM_QX410::maxInputLen},
    {kMaxOutputLen.position, &TYPEFILE_COM_QX410::maxOutputLen},
    {kMaxModule.position, &TYPEFILE_COM_QX410::maxModule},
    {kMaxDiagLen.position, &TYPEFILE_COM_QX410::maxDiagDataLen},
    {kUserPrmLen, &TYPEFILE_COM_QX410::userPrmDataLen},
}};

} // namespace typdescriptor::internal
