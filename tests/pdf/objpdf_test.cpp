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
        {"slovo1 slovo2 slovo3 slovo4 slovo5", 13, "slovo1 slovo2~slovo3 slovo4~slovo5"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(WrapText(c.text, int16_t(c.width)), c.wrapped) << c.text << " / " << c.width;
}
