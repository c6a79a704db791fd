#pragma once

#include <string>
#include <string_view>

namespace tavrok::api {

/** The size of a picture, pixels. */
inline constexpr int g_captcha_width = 120;
inline constexpr int g_captcha_height = 40;

/** Draws the letters of domain::new_captcha_code() as a PNG that a person can read and a program cannot read
 * easily. Never twice the same, not for the same text either. Takes milliseconds: never on a network thread.
 * Throws std::runtime_error where memory runs out or a letter has no strokes. */
std::string draw_captcha(std::string_view code);

} // namespace tavrok::api
