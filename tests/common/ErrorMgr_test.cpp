#include "common/ErrorMgr.hpp"
#include "tests/support/Threads.hpp"

using ErrorManager::ErrorMgr;

namespace {

TEST(ErrorMgr, MissInsertsAnEmptyRowFromAnyThread)
{
    constexpr int unknownCode = 9999;
    ASSERT_FALSE(ErrorMgr::GetInstance()->Holds(unknownCode));
    inThreads(500, [](int, int turn) { EXPECT_EQ(ErrorMgr::GetInstance()->Get(unknownCode + turn), ""); });
    EXPECT_TRUE(ErrorMgr::GetInstance()->Holds(unknownCode));
}

} // namespace
