// The locale in which the tests run: that of the environment, and surely the one that was asked for.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <locale>
#include <string>

namespace {

class LocaleInForce : public testing::Environment {
    /// TYPDESCRIPTOR_LOCALE says what is to be found: "NAME DECIMAL_POINT LONGEST_CHARACTER". Without it, the tests run
    /// in the locale in which a program starts.
    void SetUp() override
    {
        const char* const wanted = std::getenv("TYPDESCRIPTOR_LOCALE");
        if (wanted == nullptr)
            return;
        std::locale::global(std::locale("")); // of C and of C++
        const char* const name = std::setlocale(LC_ALL, nullptr);
        ASSERT_EQ(std::string(name) + ' ' + std::localeconv()->decimal_point + ' ' + std::to_string(MB_CUR_MAX),
                  wanted);
    }
};

[[maybe_unused]] const testing::Environment* const localeInForce = testing::AddGlobalTestEnvironment(new LocaleInForce);

} // namespace
