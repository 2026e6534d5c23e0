#include "common/ErrorMgr.hpp"

#include <thread>

using ErrorManager::ErrorMgr;

namespace {

std::string messageOf(int code)
{
    return ErrorMgr::GetInstance()->Get(code);
}

TEST(ErrorMgr, EveryCodeButFiveHasAMessage)
{
    std::vector<int> empty;
    for (const auto& row : common::errorRows())
        if (row.text[0] == '\0')
            empty.push_back(row.code);
    EXPECT_THAT(empty,
                testing::UnorderedElementsAre(ERROR_READING_SYSTEM_FRU, ERROR_USER_SET_USERNAME, IPMI_RESPONSE_ERROR,
                                              ERROR_IFWI_READED_LAST_ENTRY, ERROR_NAME_END));
    EXPECT_EQ(common::errorRows().size(), 397U);
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
