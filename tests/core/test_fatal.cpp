#include "core/FatalHandler.h"
#include "core/IniStore.h"

#include <QTemporaryDir>
#include <csignal>
#include <gtest/gtest.h>

using namespace vonnel;

namespace {

TEST(FatalHandler, FaultNames)
{
    EXPECT_EQ(FatalHandler::faultText(SIGSEGV, SEGV_MAPERR), "Access Violation");
    EXPECT_EQ(FatalHandler::faultText(SIGFPE, FPE_INTDIV), "Integer Divide By Zero");
    EXPECT_EQ(FatalHandler::faultText(SIGFPE, FPE_FLTOVF), "Float Overflow");
    EXPECT_EQ(FatalHandler::faultText(SIGILL, ILL_ILLOPC), "Illegal Instruction");
    EXPECT_EQ(FatalHandler::faultText(SIGBUS, BUS_ADRALN), "Data Type Misalignment");
    EXPECT_EQ(FatalHandler::unknownText(0xC0000417u), "Unknown (&HC0000417)");
    EXPECT_EQ(FatalHandler::unknownText(0x1Fu), "Unknown (&H0000001F)");
}

int* volatile g_null = nullptr;

#if defined(__SANITIZE_ADDRESS__)
#define UNDER_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define UNDER_ADDRESS_SANITIZER
#endif
#endif

TEST(FatalHandlerDeathTest, AccessViolationIsRecordedThenTheProcessEnds)
{
#ifdef UNDER_ADDRESS_SANITIZER
    GTEST_SKIP() << "the sanitizers own the fault signals; the plain build runs this";
#endif
    GTEST_FLAG_SET(death_test_style, "fast");
    QTemporaryDir dir;
    const QString log = dir.path() + "/error.log";
    EXPECT_EXIT(
        {
            FatalHandler::setErrorLog(log);
            FatalHandler::install();
            *g_null = 1;
        },
        ::testing::ExitedWithCode(128 + SIGSEGV), "");
    EXPECT_EQ(ReadIni(kSection, "Error 1", log), "Access Violation");
}

TEST(FatalHandlerDeathTest, UncaughtExceptionIsRecordedWithItsText)
{
    GTEST_FLAG_SET(death_test_style, "fast");
    QTemporaryDir dir;
    const QString log = dir.path() + "/error.log";
    EXPECT_EXIT(
        {
            FatalHandler::setErrorLog(log);
            FatalHandler::install();
            // As an exception that nobody catches reaches the runtime.
            try {
                throw std::runtime_error("disk on fire");
            } catch (...) {
                std::terminate();
            }
        },
        ::testing::ExitedWithCode(134), "");
    EXPECT_EQ(ReadIni(kSection, "Error 1", log), "disk on fire");
}

}  // namespace
