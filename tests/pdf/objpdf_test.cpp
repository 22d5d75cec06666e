#include "pdf/objpdf.h"

#include <gtest/gtest.h>

TEST(WrapText, BreaksAtTheBlankBeforeTheWidth)
{
    const struct {
        const char *text;
        int width;
        const char *wrapped;
    } cases[] = {
        {"", 10, ""},
        {"short", 10, "short"},
        {"exactly10!", 10, "exactly10!"},
        {"one two three", 8, "one two~three"},
        {"one two three", 7, "one two~three"},
        {"abcdefghijkl", 5, "abcde~fghij~kl"},   // no blank: a hard cut
        {"first~second line here", 6, "first~second~line~here"},
        {"žluťoučký kůň úpěl", 10, "žluťoučký~kůň úpěl"},   // characters, not bytes
        {"a~~b", 3, "a~~b"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(WrapText(c.text, int16_t(c.width)), c.wrapped) << c.text << " / " << c.width;
}

TEST(WrapText, LongTailBreaksAtABlankAndLosesNothing)
{
    std::string text;
    for (int i = 0; i < 30; ++i)
        text += "slovo" + std::to_string(i) + " ";
    const std::string wrapped = WrapText(text, 110);
    std::string joined;
    size_t from = 0;
    for (size_t tilde; (tilde = wrapped.find('~', from)) != std::string::npos; from = tilde + 1) {
        const std::string line = wrapped.substr(from, tilde - from);
        EXPECT_LE(line.size(), 110u);
        EXPECT_EQ(text[joined.size() + line.size()], ' ');   // the cut stood on a blank
        joined += line + " ";
    }
    EXPECT_EQ(joined + wrapped.substr(from), text);
}
