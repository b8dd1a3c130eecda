#pragma once
// Two copies in a session, each board's thickness 2: the set-up of the tests
// that draw on one board and read the other.

#include "board/Scrivet.h"
#include "support/Session.h"

#include <gtest/gtest.h>

namespace vonnel::test {

class TwoBoardCopies : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (TestCopy* c : {&a, &b})
            c->set("DrawingBoard - Thickness", "2");
        ASSERT_TRUE(a.start());
        ASSERT_TRUE(b.start());
        ASSERT_TRUE(connectCopies(a, b));
    }
    Scrivet& sa() { return a.frm().scrivet(); }
    Scrivet& sb() { return b.frm().scrivet(); }
    TestCopy a, b;
};

}  // namespace vonnel::test
