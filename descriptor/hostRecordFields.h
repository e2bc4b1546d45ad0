// What a host record and a type file's fixed block have in common field by field: the one table that the construction
// from a record writes by and the filling of a record reads by.

#pragma once

#include "descriptor/records.h"
#include "typefile/format.h"

#include <array>

/// A flag member and its letter in the type data.
struct HostRecordFlag {
    std::size_t position;
    int32_t TYPEFILE_COM_QX410::*member;
};

inline constexpr std::array<HostRecordFlag, 7> kHostRecordFlags{{
    {typefile::kSetSlaveAddress, &TYPEFILE_COM_QX410::setSlaveAddSupp},
    {typefile::kSyncMode, &TYPEFILE_COM_QX410::syncModeSupp},
    {typefile::kFreezeMode, &TYPEFILE_COM_QX410::freezeModeSupp},
    {typefile::kPublisherSubscriber, &TYPEFILE_COM_QX410::publisherSubscriber},
    {typefile::kDiagBufferable, &TYPEFILE_COM_QX410::diagBufferable},
    {typefile::kActiveMaster, &TYPEFILE_COM_QX410::activeOrMaster},
    {typefile::kEvenSlotNumber, &TYPEFILE_COM_QX410::evenSlotNumberRequired},
}};

/// A member of three characters and its place in the type data.
struct HostRecordNumber {
    std::size_t position;
    char (TYPEFILE_COM_QX410::*member)[typefile::kNumberDigits + 1];
};

inline constexpr std::array<HostRecordNumber, 5> kHostRecordNumbers{{
    {typefile::kMaxInputLen.position, &TYPEFILE_COM_QX410::maxInputLen},
    {typefile::kMaxOutputLen.position, &TYPEFILE_COM_QX410::maxOutputLen},
    {typefile::kMaxModule.position, &TYPEFILE_COM_QX410::maxModule},
    {typefile::kMaxDiagLen.position, &TYPEFILE_COM_QX410::maxDiagDataLen},
    {typefile::kUserPrmLen, &TYPEFILE_COM_QX410::userPrmDataLen},
}};
