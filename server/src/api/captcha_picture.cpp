#include "api/captcha_picture.h"

#include <gd.h>

#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <stdexcept>
#include <vector>

#include "domain/sessions.h"

namespace tavrok::api {

namespace {

struct point {
    double x;
    double y;
};

/** One stroke of the pen: through these points, in corners or in a curve. */
struct stroke {
    bool curved;
    std::vector<point> through;
};

struct glyph {
    char letter;
    std::vector<stroke> strokes; // in a box from (0, 0), top left, to (1, 1)
};

constexpr bool straight = false;
constexpr bool curved = true;

const std::vector<glyph> g_glyphs{
    {'A', {{straight, {{0, 1}, {.5, 0}, {1, 1}}}, {straight, {{.18, .66}, {.82, .66}}}}},
    {'C',
     {{curved,
       {{.95, .2}, {.72, .03}, {.38, .04}, {.08, .32}, {.08, .68}, {.38, .96}, {.72, .97}, {.95, .8}}}}},
    {'D',
     {{straight, {{.05, 0}, {.05, 1}}},
      {curved, {{.05, 0}, {.5, .02}, {.88, .24}, {.95, .5}, {.88, .76}, {.5, .98}, {.05, 1}}}}},
    {'E', {{straight, {{.9, 0}, {.05, 0}, {.05, 1}, {.9, 1}}}, {straight, {{.05, .49}, {.75, .49}}}}},
    {'F', {{straight, {{.9, 0}, {.05, 0}, {.05, 1}}}, {straight, {{.05, .48}, {.75, .48}}}}},
    {'H',
     {{straight, {{.05, 0}, {.05, 1}}},
      {straight, {{.95, 0}, {.95, 1}}},
      {straight, {{.05, .5}, {.95, .5}}}}},
    {'J',
     {{straight, {{.4, 0}, {1, 0}}},
      {curved, {{.75, 0}, {.75, .35}, {.75, .7}, {.6, .96}, {.28, .97}, {.05, .76}}}}},
    {'K',
     {{straight, {{.05, 0}, {.05, 1}}},
      {straight, {{.92, 0}, {.05, .58}}},
      {straight, {{.35, .4}, {.97, 1}}}}},
    {'M', {{straight, {{0, 1}, {.05, 0}, {.5, .62}, {.95, 0}, {1, 1}}}}},
    {'N', {{straight, {{.05, 1}, {.05, 0}, {.95, 1}, {.95, 0}}}}},
    {'P',
     {{straight, {{.05, 1}, {.05, 0}}},
      {curved, {{.05, 0}, {.55, .01}, {.92, .26}, {.55, .53}, {.05, .54}}}}},
    {'R',
     {{straight, {{.05, 1}, {.05, 0}}},
      {curved, {{.05, 0}, {.55, .01}, {.9, .25}, {.55, .5}, {.05, .51}}},
      {straight, {{.42, .51}, {.97, 1}}}}},
    {'T', {{straight, {{0, 0}, {1, 0}}}, {straight, {{.5, 0}, {.5, 1}}}}},
    {'W', {{straight, {{0, 0}, {.24, 1}, {.5, .3}, {.76, 1}, {1, 0}}}}},
    {'X', {{straight, {{.02, 0}, {.98, 1}}}, {straight, {{.98, 0}, {.02, 1}}}}},
    {'Y', {{straight, {{0, 0}, {.5, .5}, {1, 0}}}, {straight, {{.5, .5}, {.5, 1}}}}},
    {'3',
     {{curved, {{.08, .14}, {.45, 0}, {.86, .22}, {.66, .44}, {.36, .47}}},
      {curved, {{.36, .47}, {.76, .52}, {.94, .74}, {.5, 1}, {.04, .84}}}}},
    {'4', {{straight, {{.72, 1}, {.72, 0}, {0, .69}, {1, .69}}}}},
    {'7', {{straight, {{.02, 0}, {.95, 0}, {.36, 1}}}}},
};

constexpr int g_scale = 4; // drawn larger and brought down, which smooths the edges
constexpr int g_canvas_width = g_captcha_width * g_scale;
constexpr int g_canvas_height = g_captcha_height * g_scale;

double between(double low, double high) {
    constexpr std::uint32_t steps = 1U << 16;
    return low + (high - low) * domain::random_below(steps) / (steps - 1);
}

struct image_freer {
    void operator()(gdImagePtr image) const { gdImageDestroy(image); }
};
using image = std::unique_ptr<gdImage, image_freer>;

image new_image(int width, int height) {
    image made(gdImageCreateTrueColor(width, height));
    if (!made) throw std::runtime_error("no memory for a picture");
    return made;
}

/** The points of a stroke, so close together that a pen set down at each leaves a line (Catmull-Rom). */
std::vector<point> walk(const stroke& along) {
    constexpr int steps = 28;
    const auto& at = along.through;
    std::vector<point> path;
    for (std::size_t i = 0; i + 1 < at.size(); ++i) {
        const auto& before = at[i == 0 ? 0 : i - 1];
        const auto& after = at[i + 2 < at.size() ? i + 2 : i + 1];
        const auto part = [&](double point::*axis, double t) {
            const double from = at[i].*axis;
            const double to = at[i + 1].*axis;
            if (!along.curved) return from + (to - from) * t;
            const double out = (to - before.*axis) / 2;
            const double in = (after.*axis - from) / 2;
            return from + t * (out + t * (3 * (to - from) - 2 * out - in + t * (2 * (from - to) + out + in)));
        };
        for (int step = 0; step <= steps; ++step) {
            const double t = static_cast<double>(step) / steps;
            path.push_back({part(&point::x, t), part(&point::y, t)});
        }
    }
    return path;
}

/** Bends the whole picture, each one differently. */
class wave {
public:
    point bend(const point& at) const {
        return {at.x + m_wide * std::sin(at.y * m_wide_pace + m_wide_start),
                at.y + m_high * std::sin(at.x * m_high_pace + m_high_start)};
    }

private:
    static double turn() { return between(0, 2 * std::numbers::pi); }
    double m_wide{between(4, 9)};
    double m_wide_pace{between(.015, .035)};
    double m_wide_start{turn()};
    double m_high{between(6, 11)};
    double m_high_pace{between(.012, .024)};
    double m_high_start{turn()};
};

class painter {
public:
    painter() : m_canvas(new_image(g_canvas_width, g_canvas_height)) {
        const int paper = gdTrueColor(shade(225, 250), shade(225, 250), shade(225, 250));
        gdImageFilledRectangle(m_canvas.get(), 0, 0, g_canvas_width - 1, g_canvas_height - 1, paper);
    }

    void speckle() {
        for (int i = 0; i < 60; ++i) {
            const int size = shade(3, 8);
            const int ink = gdTrueColor(shade(120, 210), shade(120, 210), shade(120, 210));
            gdImageFilledEllipse(m_canvas.get(), static_cast<int>(between(0, g_canvas_width)),
                                 static_cast<int>(between(0, g_canvas_height)), size, size, ink);
        }
    }

    /** A thread across the letters, thinner than they are. */
    void thread() {
        stroke line{true, {}};
        for (int i = 0; i <= 4; ++i)
            line.through.push_back({i * g_canvas_width / 4.0, between(.1, .9) * g_canvas_height});
        draw(walk(line), between(4, 6), ink());
    }

    void letter(const glyph& what, double middle, double room) {
        const double width = room * between(.68, .8);
        const double height = g_canvas_height * between(.5, .62);
        const double angle = between(-.33, .33);
        const double lean = between(-.22, .22);
        const double down = g_canvas_height * between(.45, .55);
        const double pen = between(12, 15);
        const int colour = ink();
        for (const auto& one : what.strokes) {
            auto path = walk(one);
            for (auto& at : path) {
                const double x = (at.x - .5) * width - (at.y - .5) * lean * height;
                const double y = (at.y - .5) * height;
                at = m_wave.bend({middle + x * std::cos(angle) - y * std::sin(angle),
                                  down + x * std::sin(angle) + y * std::cos(angle)});
            }
            draw(path, pen, colour);
        }
    }

    std::string png() {
        const auto small = new_image(g_captcha_width, g_captcha_height);
        gdImageCopyResampled(small.get(), m_canvas.get(), 0, 0, 0, 0, g_captcha_width, g_captcha_height,
                             g_canvas_width, g_canvas_height);
        int size = 0;
        const std::unique_ptr<void, void (*)(void*)> bytes(gdImagePngPtr(small.get(), &size), gdFree);
        if (!bytes) throw std::runtime_error("a picture could not be written");
        return {static_cast<const char*>(bytes.get()), static_cast<std::size_t>(size)};
    }

private:
    static int shade(int low, int high) {
        return low + static_cast<int>(domain::random_below(static_cast<std::uint32_t>(high - low + 1)));
    }
    /** Letters and threads are of nearly one colour, so that colour does not tell them apart. */
    int ink() const {
        return gdTrueColor(m_ink[0] + shade(0, 40), m_ink[1] + shade(0, 40), m_ink[2] + shade(0, 40));
    }
    void draw(const std::vector<point>& path, double pen, int ink) {
        const int size = static_cast<int>(pen);
        for (const auto& at : path)
            gdImageFilledEllipse(m_canvas.get(), static_cast<int>(at.x), static_cast<int>(at.y), size, size,
                                 ink);
    }

    image m_canvas;
    wave m_wave;
    std::array<int, 3> m_ink{shade(0, 90), shade(0, 90), shade(0, 90)};
};

const glyph& glyph_of(char letter) {
    for (const auto& one : g_glyphs)
        if (one.letter == letter) return one;
    throw std::runtime_error("there are no strokes for a letter of a picture");
}

} // namespace

std::string draw_captcha(std::string_view code) {
    painter on;
    on.speckle();
    const double room = g_canvas_width * .9 / static_cast<double>(code.size());
    double middle = g_canvas_width * .05 + room / 2;
    for (const char letter : code) {
        on.letter(glyph_of(letter), middle + room * between(-.07, .07), room);
        middle += room;
    }
    for (int i = 0; i < 2; ++i)
        on.thread();
    return on.png();
}

} // namespace tavrok::api
