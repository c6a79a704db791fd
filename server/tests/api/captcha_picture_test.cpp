#include "api/captcha_picture.h"

#include <gd.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "domain/sign_up.h"

namespace tavrok::api {
namespace {

using image = std::unique_ptr<gdImage, void (*)(gdImagePtr)>;

image read(std::string png) {
    return {gdImageCreateFromPngPtr(static_cast<int>(png.size()), png.data()), gdImageDestroy};
}

/** How dark a column of the picture is: pixels that are neither paper nor speckle. */
int ink_in_column(gdImagePtr picture, int x) {
    int dark = 0;
    for (int y = 0; y < gdImageSY(picture); ++y) {
        const int colour = gdImageGetPixel(picture, x, y);
        const int light =
            gdImageRed(picture, colour) + gdImageGreen(picture, colour) + gdImageBlue(picture, colour);
        if (light < 400) ++dark;
    }
    return dark;
}

TEST(captcha_picture, is_a_png_of_the_size_that_it_says) {
    const auto png = draw_captcha("ACDEF");
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_LT(png.size(), 20'000u);
    const auto picture = read(png);
    ASSERT_NE(picture, nullptr);
    EXPECT_EQ(gdImageSX(picture.get()), g_captcha_width);
    EXPECT_EQ(gdImageSY(picture.get()), g_captcha_height);
}

TEST(captcha_picture, is_never_the_same_for_the_same_text) {
    std::set<std::string> seen;
    for (int i = 0; i < 50; ++i)
        EXPECT_TRUE(seen.insert(draw_captcha("KKKKK")).second);
}

/** Threads alone put 2 to 3 dark pixels into a column; a letter puts more into some column of its fifth. */
TEST(captcha_picture, shows_a_letter_in_every_fifth) {
    for (int round = 0; round < 20; ++round) {
        const auto picture = read(draw_captcha(domain::new_captcha_code()));
        for (int fifth = 0; fifth < 5; ++fifth) {
            int most = 0;
            for (int x = fifth * 24; x < (fifth + 1) * 24; ++x)
                most = std::max(most, ink_in_column(picture.get(), x));
            EXPECT_GT(most, 5) << "fifth " << fifth;
        }
    }
}

TEST(captcha_picture, can_draw_every_letter_of_a_code_and_nothing_else) {
    std::set<char> letters;
    for (int i = 0; i < 2000; ++i) {
        const auto code = domain::new_captcha_code();
        EXPECT_EQ(code.size(), 5u);
        letters.insert(code.begin(), code.end());
    }
    for (const char letter : letters)
        EXPECT_NO_THROW(draw_captcha(std::string(1, letter)));
    for (const char mistakable : std::string("01IiLlOoQ2Z5S8BGUV"))
        EXPECT_FALSE(letters.contains(mistakable)) << mistakable;
    EXPECT_EQ(letters.size(), 19u);
    EXPECT_THROW(draw_captcha("0"), std::runtime_error);
}

} // namespace
} // namespace tavrok::api
