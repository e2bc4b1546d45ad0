// Queries about diagnostic texts. Nothing is decoded in advance: each query searches the "DKM" or "DKK" group in the
// image, whose entries the checks have counted and found well-formed.

#include "access/queries.h"

#include <cstring>

namespace typdescriptor::internal {

namespace {

constexpr std::size_t kBitEntrySize = diagBit::kLength + kTerminator.size();
constexpr std::size_t kGroupEntrySize = diagGroup::kLength + kTerminator.size();
constexpr std::size_t kChannelEntrySize = channelError::kLength + kTerminator.size();
constexpr int kByteNumberHundred = 100;

int digitAt(const char* p)
{
    return *p - '0';
}

bool isGroupEntry(const char* entry)
{
    return entry[kDiagKind] == kTagBitGroup.front();
}

const char* nextDeviceEntry(const char* entry)
{
    return entry + (isGroupEntry(entry) ? kGroupEntrySize : kBitEntrySize);
}

int byteHundreds(const char* entry)
{
    return digitAt(entry + kDiagByteHundreds);
}

int byteRest(const char* entry)
{
    return numberAt(entry, kDiagByteNumber);
}

/// The first text of a bit for one sense of it.
void getSlaveDiagMsgPrivate(const TypeFile& file, int number, int bit, int sense, SLAVE_DIAG_TYPE* message)
{
    const char* entry = file.deviceDiag.begin + kListHeadWidth;
    for (int i = 0; i < file.deviceDiag.count; ++i, entry = nextDeviceEntry(entry)) {
        if (isGroupEntry(entry) || byteHundreds(entry) * kByteNumberHundred + byteRest(entry) != number ||
            digitAt(entry + kDiagKind) != bit || digitAt(entry + diagBit::kValue) != sense)
            continue;
        copyField(sense != 0 ? message->setText : message->clearText, entry + diagBit::kText.position);
        (sense != 0 ? message->setFound : message->clearFound) = 1;
        return;
    }
}

} // namespace

int getSlaveDiagMsg(const TypeFile& file, int byteHigh, int byteLow, int bit, SLAVE_DIAG_TYPE* message)
{
    *message = SLAVE_DIAG_TYPE();
    if (file.deviceDiag.begin == nullptr)
        return kErrDeviceDiag;
    // Unsigned, since the host's numbers may be anything.
    const int number =
        static_cast<int>(static_cast<unsigned>(byteHigh) * kByteNumberHundred + static_cast<unsigned>(byteLow));
    getSlaveDiagMsgPrivate(file, number, bit, 0, message);
    getSlaveDiagMsgPrivate(file, number, bit, 1, message);
    return message->setFound != 0 || message->clearFound != 0 ? kOk : kErrDeviceDiag;
}

int getSlaveBGrDiagMsg(const TypeFile& file, int index, SLAVE_BGR_DIAG_TYPE* message)
{
    if (file.deviceDiag.begin == nullptr || index >= file.deviceDiag.groupCount)
        return kErrDeviceDiag;
    const char* entry = file.deviceDiag.begin + kListHeadWidth;
    int found = 0;
    for (int i = 0; i < file.deviceDiag.count; ++i, entry = nextDeviceEntry(entry)) {
        if (!isGroupEntry(entry) || found++ != index)
            continue;
        const int firstBit = digitAt(entry + diagGroup::kFirstBit);
        const int bitCount = digitAt(entry + diagGroup::kBitCount);
        message->byteHigh = static_cast<uint8_t>(byteHundreds(entry));
        message->byteLow = static_cast<uint8_t>(byteRest(entry));
        message->firstBit = static_cast<uint8_t>(firstBit);
        message->lastBit = static_cast<uint8_t>(firstBit + bitCount - 1);
        message->value = static_cast<uint16_t>(numberAt(entry, diagGroup::kValue));
        copyField(message->text, entry + diagGroup::kText.position);
        return kOk;
    }
    return kErrDeviceDiag;
}

int getChannelDiagMsg(const TypeFile& file, int errorType, char* text)
{
    if (file.channelDiag.begin == nullptr)
        return kErrChannelDiag;
    const char* entry = file.channelDiag.begin + kListHeadWidth;
    for (int i = 0; i < file.channelDiag.count; ++i, entry += kChannelEntrySize) {
        if (numberAt(entry, channelError::kType) != errorType)
            continue;
        std::memcpy(text, entry + channelError::kText.position, channelError::kText.width);
        text[channelError::kText.width] = '\0';
        return kOk;
    }
    return kErrChannelDiag;
}

} // namespace typdescriptor::internal
