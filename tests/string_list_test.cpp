#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "xls/string_list.h"

namespace {

// Strings added whole, built in place, and abandoned half-built read back as they were added,
// empty ones included, however much the buffer grew on the way.
TEST(StringList, HoldsEachStringAsAdded)
{
    xls::StringList list;
    std::vector<std::u16string> expected;
    for (int i = 0; i < 300; ++i) {
        std::u16string text(static_cast<std::size_t>(i % 7 * 13), static_cast<char16_t>(u'a' + i % 26));
        if (i % 3 == 0) {
            list.push_back(text);
        } else {
            list.Open() += text;
            if (i % 5 == 0) {  // a string given up half-way leaves nothing behind
                list.Abandon();
                continue;
            }
            list.Close();
        }
        expected.push_back(text);
    }
    ASSERT_EQ(list.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_EQ(list[i], expected[i]) << i;

    xls::StringList same;
    same.reserve(expected.size(), 4000);
    for (const auto& text : expected) same.push_back(text);
    EXPECT_TRUE(same == list);
    same.push_back(u"");  // one more string, though no more characters
    EXPECT_TRUE(same != list);
    EXPECT_EQ(same[same.size() - 1], u"");
    same.clear();
    EXPECT_TRUE(same.empty());
    same.Open() += u"dropped";
    same.Abandon();
    same.push_back(u"first");
    EXPECT_EQ(same[0], u"first");
}

}  // namespace
