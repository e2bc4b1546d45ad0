// The document of a GSD file: what its statements say, and how its text is made. That nothing of the file is lost and
// nothing stops the reader, the fuzz target shows.

#include "gsd/keywordTable.h"
#include "gsdfile/document.h"
#include "gsdfile/keywords.h"

#include <gtest/gtest.h>

#include <string>

using namespace typdescriptor::gsdfile;

namespace {

std::string valueText(const Value& value)
{
    std::string text = value.isBehindComma ? ", " : value.isBehindAt ? " @" : " ";
    switch (value.kind) {
    case Value::number:
        return text + std::to_string(value.first.value) + (value.first.isTooLarge ? "!" : "");
    case Value::range:
        return text + std::to_string(value.first.value) + ".." + std::to_string(value.last.value);
    case Value::string:
        return text + '\'' + std::string(value.text) + '\'';
    default:
        return text + std::string(value.text);
    }
}

const char* faultText(FaultKind kind)
{
    constexpr const char* kTexts[] = {"openQuote",      "openArgument",  "badArgument", "secondEquals",
                                      "missingValue",   "missingItem",   "badNumber",   "strayCharacter",
                                      "strayBackslash", "continuedAtEnd"};
    return kTexts[static_cast<std::size_t>(kind)];
}

/// "Module[3-4]= 'name' 16 !fault": unknown keywords with "?", statements in a block behind its number and ":".
std::string statementText(const Statement& statement)
{
    std::string text = statement.block == kNone ? "" : std::to_string(statement.block) + ':';
    text += std::string(statement.name) + (statement.keyword == nullptr && !statement.name.empty() ? "?" : "");
    if (statement.firstLine != statement.lastLine)
        text += '[' + std::to_string(statement.firstLine) + '-' + std::to_string(statement.lastLine) + ']';
    if (statement.argument)
        text += '(' + std::to_string(statement.argument->first.value) +
                (statement.argument->last ? ".." + std::to_string(statement.argument->last->value) : "") + ')';
    text += statement.equalsToken == kNone ? "" : "=";
    for (const Value& value : statement.values)
        text += valueText(value);
    for (const Fault& fault : statement.faults)
        text += std::string(" !") + faultText(fault.kind);
    return text;
}

std::string statementsOf(const std::string& lines)
{
    const Document document("#Profibus_DP\n" + lines);
    std::string text;
    for (std::size_t i = 1; i < document.statements().size(); ++i)
        text += (text.empty() ? "" : " | ") + statementText(document.statements()[i]);
    return text;
}

std::string wide(const std::string& text, bool isBig)
{
    std::string bytes = isBig ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : text)
        bytes += isBig ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

} // namespace

TEST(GsdDocument, SaysWhatStatementsSay)
{
    const struct {
        const char* lines;
        const char* expected;
    } cases[] = {
        {"Vendor_Name = \"A;B\" ; c\n\n;x\nvendor_name=\"b\"", "Vendor_Name= 'A;B' | vendor_name= 'b'"},
        {"9.6_supp=1\n24V_Pins = 0x2", "9.6_supp= 1 | 24V_Pins= 2"},
        {"User_Prm_Data = 1, 0x02,\\ ; c\n\n; c\n 3", "User_Prm_Data[2-5]= 1, 2, 3"},
        {"Signed8 -5 -10-0", "Signed8 -5 -10..0"},
        {"Unsigned16 5 0 - 10\nUnsigned8 1 0,1,5", "Unsigned16 5 0..10 | Unsigned8 1 0, 1, 5"},
        {"Bit(0) 1 0-1\nBitArea ( 2 - 4 ) 0 0-7", "Bit(0) 1 0..1 | BitArea(2..4) 0 0..7"},
        {"Slave_Family = 3@Some text@b ; c", "Slave_Family= 3 @Some text @b"},
        {"Vendor_Name = \"ab\\\ncd\"", "Vendor_Name[2-3]= 'abcd'"},
        {"Modul=\"x\" 1", "Modul?= 'x' 1"},
        {"Module=\"m\" 0x11\n1\nData_Area_Beg\nLength=1\nData_Area_End\nEndModule\nFail_Safe=0",
         "Module= 'm' 17 | 0: 1 | 0:Data_Area_Beg | 1:Length= 1 | 1:Data_Area_End | 0:EndModule | Fail_Safe= 0"},
        {"Module=\"m\" 1\nModule=\"n\" 2\nEndModule\nEndModule",
         "Module= 'm' 1 | Module= 'n' 2 | 1:EndModule | EndModule"},
        {"Text(1=\"a\"", "Text(1)= 'a' !openArgument"},
        {"Vendor_Name=\"a\nRevision=1=2", "Vendor_Name= 'a' !openQuote | Revision= 1 2 !secondEquals"},
        {"Revision=\nUser_Prm_Data=1,,2,", "Revision= !missingValue | User_Prm_Data= 1, 2 !missingItem !missingItem"},
        {"Max_Module=1x\nMax_Module=99999999999999999999",
         "Max_Module= 1x !badNumber | Max_Module= 9223372036854775807!"},
        {"Max_Module=1 ) \\ 2", "Max_Module= 1 2 !strayCharacter !strayBackslash"},
        {"Text(a)=\"b\"\nRevision=\"x\" \\", "Text= 'b' !badArgument | Revision= 'x' !continuedAtEnd"},
    };
    for (const auto& known : cases)
        EXPECT_EQ(statementsOf(known.lines), known.expected) << known.lines;
}

TEST(GsdDocument, KnowsHowItsTextIsMade)
{
    const std::string text = "#Profibus_DP\r\nVendor_Name=\"\xE4\"\r\n";
    const Document latin(text);
    EXPECT_EQ(latin.encoding(), Encoding::latin1);
    EXPECT_EQ(latin.lines()[0].lineEnd, LineEnd::carriageReturnLineFeed);
    const Document utf("\xEF\xBB\xBF#Profibus_DP\nVendor_Name=\"\xC3\xA4\" x");
    EXPECT_TRUE(utf.encoding() == Encoding::utf8 && utf.hasMark());
    const Place place = utf.place(static_cast<std::uint32_t>(utf.bytes().size()) - 1);
    EXPECT_EQ(place.line, 2U);
    EXPECT_EQ(place.column, 18U);
    EXPECT_EQ(place.character, 17U);
    for (const bool isBig : {false, true}) {
        const Document document(wide("#Profibus_DP\nMax_Module=3\n", isBig));
        EXPECT_EQ(document.encoding(), isBig ? Encoding::utf16Big : Encoding::utf16Little);
        ASSERT_EQ(document.statements().size(), 2U);
        EXPECT_EQ(statementText(document.statements()[1]), "Max_Module= 3");
        EXPECT_EQ(document.place(2 + 2 * 13).line, 2U);
    }
    const Document returns("#Profibus_DP\rMax_Module=3\rRevision=\"1\"");
    EXPECT_EQ(returns.statements().size(), 3U);
    EXPECT_EQ(returns.lines()[0].lineEnd, LineEnd::carriageReturn);
    // A place far behind the beginning of its line, where characters and bytes differ.
    const Document longLine("#Profibus_DP\nVendor_Name=\"" + std::string(1700, 'a') + "\xC3\xA4" +
                            std::string(1500, 'b'));
    EXPECT_EQ(longLine.place(13 + 13 + 1700 + 2 + 100).character, 13U + 1700U + 1U + 100U + 1U);
    EXPECT_EQ(Document("x\n#Unit\n#Profibus_DP\nRevision=\"1\"\n#Other\ny=1").statements().size(), 2U);
}

TEST(GsdKeywords, AreFoundInAnyCaseAndNearby)
{
    EXPECT_STREQ(findKeyword("VENDOR_name")->name, "Vendor_Name");
    EXPECT_EQ(findKeyword("VendorName"), nullptr);
    const struct {
        const char* written;
        const char* meant;
    } cases[] = {{"VendorName", "Vendor_Name"},
                 {"Min_Slave_Interval", "Min_Slave_Intervall"},
                 {"Module_Offset", "Modul_Offset"},
                 {"Unit_Diag_Type", "UnitDiagType"},
                 {"EndModul", "EndModule"},
                 {"Freeze_Mode_sup", "Freeze_Mode_supp"},
                 {"WB_Base_1ms_supp", "WD_Base_1ms_supp"}};
    for (const auto& known : cases) {
        ASSERT_NE(nearestKeyword(known.written).keyword, nullptr) << known.written;
        EXPECT_STREQ(nearestKeyword(known.written).keyword->name, known.meant);
    }
    EXPECT_EQ(nearestKeyword("Wholly_Unknown_Thing").keyword, nullptr);
    EXPECT_TRUE(isMasterKeyword("trdy_9.6") && !isMasterKeyword("Vendor_Name"));
    EXPECT_STREQ(closingName(BlockKind::kgpModule), "EndModule");
    EXPECT_EQ(allowedValues(*findKeyword("C2_Max_Data_Len")), "0 or 48 to 240");
    EXPECT_TRUE(allowsValue(*findKeyword("TBASE_DP"), 750) && !allowsValue(*findKeyword("TBASE_DP"), 751));
    for (std::size_t i = 1; i < keywords().size(); ++i)
        EXPECT_EQ(findKeyword(keywords()[i].name), &keywords()[i]) << "the rows are in order";
}

/// The library refuses and reads by its own table: what is said about its keywords must be true of that.
TEST(GsdKeywords, SayWhatTheLibraryReads)
{
    using namespace typdescriptor::internal;
    std::size_t read = 0;
    for (const Keyword& row : keywords()) {
        if (row.readerId == kNotRead)
            continue;
        ++read;
        const GsdKeyword& known = GsdKeywordTable::kRows.at(static_cast<std::size_t>(row.readerId));
        EXPECT_EQ(compareIgnoringCase(known.spelling, row.name), 0) << row.name << " and " << known.spelling;
    }
    EXPECT_EQ(read, GsdKeywordTable::kCount);
}
