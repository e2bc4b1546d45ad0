// Category-II type data.

#include "descriptor/cTypDescriptor.h"
#include "tests/checkCases.h"
#include "tests/typeFileBuilder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CheckCategoryII, FieldByField)
{
    const std::string bad = "cat2Digit0=5 > -3 | cat2Digit0=/ > -3 | cat2Flag4=j > 0 | cat2Flag4=1 > -3 | "
                            "cat2Digit8=8 > -3 | cat2Digit12=3 > 0 | cat2Digit12=4 > -3 | cat2Digit12=00 > -3 | "
                            "cat2Digit16=3 > 0 | cat2Digit16=4 > -3 | cat2Flag20=X > -3 | deviceDiag=DBO > -80";
    const TypeFileBuilder file = TypeFileBuilder::categoryIIFile();
    expectChecks(file, bad + " | cat2Digit0=1 > -8 | cat2Flag4=N > -8 | cat2Digit8=1 > -8 | cat2Flag20=N > -8");
    expectChecks(file.with("stationType=QMX"),
                 bad + " | cat2Digit0=1 > 0 | cat2Flag4=N > 0 | cat2Digit8=1 > 0 | cat2Flag20=N > 0");
    expectEdits(file.build(), "DKM000=DKK000 > -80 | DKM000=DKM001 > -80 | DKM000=DKM-01 > -80");
}

// Every combination against the rule in plain arithmetic.
TEST(CheckCategoryII, Capacity)
{
    const auto result = [](const std::string& station, int digit0, const std::string& flag4, int digit8) {
        return checkResult(TypeFileBuilder::categoryIIFile()
                               .with("stationType=" + station + "+cat2Digit0=" + std::to_string(digit0) +
                                     "+cat2Flag4=" + flag4 + "+cat2Digit8=" + std::to_string(digit8))
                               .build());
    };
    for (int d0 = 0; d0 <= 4; ++d0) {
        for (int d8 = 0; d8 <= 7; ++d8) {
            const bool fits = d0 + d8 <= 8;
            EXPECT_EQ(result("QMX", d0, "J", d8), d8 <= 3 && d0 + d8 <= 4 ? kOk : kErrTypeData) << d0 << d8;
            EXPECT_EQ(result("QX410C/24V/QMX", d0, "N", d8), fits ? kOk : kErrTypeData) << d0 << d8;
            EXPECT_EQ(result("QX410B/24V/QMX", d0, "N", d8), fits && d0 <= d8 ? kOk : kErrTypeData) << d0 << d8;
        }
    }
}

TEST(CheckCategoryII, Decoded)
{
    TypeFileBuilder file =
        TypeFileBuilder::categoryIIFile().with("headerCnf=1+makerDevice=J+cat2Digit12=1+cat2Digit16=3");
    file.deviceDiag = {record::deviceBit(1, '7', '1', "Fault"), record::deviceGroup(2, '0', '2', 3, "Group")};
    const auto device = checked(file);
    SLAVE_TYPEDATA_TYPE data;
    EXPECT_EQ(device->getSlaveTypeData(&data), 2);
    EXPECT_STREQ(data.modelName, "Valve island 8   ");
    EXPECT_STREQ(data.stationType, "QX410K         ");
    EXPECT_EQ(data.identNumber, 4660);
    EXPECT_EQ(data.features, uint32_t(kFeatureMakerDevice | kFeatureHeaderCnf1));
    EXPECT_EQ(data.cat2Digit0, 2);
    EXPECT_EQ(data.cat2Flag4, 1);
    EXPECT_EQ(data.cat2Digit8, 0);
    EXPECT_EQ(data.cat2Digit12, 1);
    EXPECT_EQ(data.cat2Digit16, 3);
    EXPECT_EQ(data.cat2Flag20, 1);
    EXPECT_EQ(device->getSlaveDiagMsgCnt(), 2);
    EXPECT_EQ(device->getSlaveBGrDiagMsgCnt(), 1);
    EXPECT_EQ(std::string(device->getDKMPos(), 6), "DKM002");
    EXPECT_EQ(device->changeTypeFilePossible(), 0);
}

} // namespace
