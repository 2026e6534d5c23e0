#include "common/ErrorMgr.hpp"

#include <set>
#include <thread>

using ErrorManager::ErrorMgr;

namespace {

std::string messageOf(int code)
{
    return ErrorMgr::GetInstance()->Get(code);
}

TEST(ErrorMgr, EveryCodeButFiveHasAMessage)
{
    std::set<int> rows;
    for (const auto& row : common::errorRows())
        if (row.text[0] != '\0')
            rows.insert(row.code);
    EXPECT_EQ(rows.size(), 392u);

    const std::set<int> unused{1277, 1310};
    const std::set<int> empty{ERROR_READING_SYSTEM_FRU, ERROR_USER_SET_USERNAME, IPMI_RESPONSE_ERROR,
                              ERROR_IFWI_READED_LAST_ENTRY, ERROR_NAME_END};
    const auto expectRows = [&](int first, int last) {
        for (int code = first; code <= last; ++code)
            EXPECT_EQ(rows.contains(code), !unused.contains(code) && !empty.contains(code)) << code;
    };
    expectRows(1001, 1365);
    expectRows(2001, 2034);
    for (const int code : empty)
        EXPECT_EQ(messageOf(code), "") << code;
}

TEST(ErrorMgr, MissInsertsAnEmptyRowFromAnyThread)
{
    constexpr int unknownCode = 9999;
    ASSERT_FALSE(ErrorMgr::GetInstance()->Holds(unknownCode));
    std::vector<std::jthread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([] {
            for (int code = unknownCode; code < unknownCode + 500; ++code)
                EXPECT_EQ(messageOf(code), "");
        });
    readers.clear();
    EXPECT_TRUE(ErrorMgr::GetInstance()->Holds(unknownCode));
}

} // namespace
