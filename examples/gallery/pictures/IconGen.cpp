// Draws the gallery's pictures as PNG files: each shape is described once on a small grid and drawn at
// every size version, with 4 x 4 samples per pixel for smooth edges. The PNGs are committed; run
// this only to change them:
//     cmake --build --preset default --target gallery_icongen
//     build/default/examples/gallery/gallery_icongen examples/gallery/pictures
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "PngWrite.h"

namespace {

struct Rgba {
    float r, g, b, a;
};

using Shape = std::function<bool(float, float)>;
using Paint = std::function<Rgba(float, float)>;

Paint Solid(Rgba c) {
    return [c](float, float) { return c; };
}

// Top-to-bottom ramp between y0 and y1.
Paint Ramp(Rgba top, Rgba bottom, float y0, float y1) {
    return [=](float, float y) {
        const float t = std::fmin(1.0f, std::fmax(0.0f, (y - y0) / (y1 - y0)));
        return Rgba{top.r + (bottom.r - top.r) * t, top.g + (bottom.g - top.g) * t,
                    top.b + (bottom.b - top.b) * t, top.a + (bottom.a - top.a) * t};
    };
}

Shape Rect(float x0, float y0, float x1, float y1) {
    return [=](float x, float y) { return x >= x0 && x < x1 && y >= y0 && y < y1; };
}

Shape RoundRect(float x0, float y0, float x1, float y1, float r) {
    return [=](float x, float y) {
        if (x < x0 || x >= x1 || y < y0 || y >= y1) {
            return false;
        }
        const float dx = std::fmax(0.0f, std::fmax(x0 + r - x, x - (x1 - r)));
        const float dy = std::fmax(0.0f, std::fmax(y0 + r - y, y - (y1 - r)));
        return dx * dx + dy * dy <= r * r;
    };
}

Shape Ring(float cx, float cy, float r0, float r1) {
    return [=](float x, float y) {
        const float d = std::hypot(x - cx, y - cy);
        return d >= r0 && d <= r1;
    };
}

Shape Circle(float cx, float cy, float r) {
    return Ring(cx, cy, -1.0f, r);
}

// A segment with round ends, hw either side of it.
Shape Capsule(float ax, float ay, float bx, float by, float hw) {
    return [=](float x, float y) {
        const float vx = bx - ax, vy = by - ay;
        float t = ((x - ax) * vx + (y - ay) * vy) / (vx * vx + vy * vy);
        t = std::fmin(1.0f, std::fmax(0.0f, t));
        return std::hypot(x - ax - t * vx, y - ay - t * vy) <= hw;
    };
}

// Even-odd rule.
Shape Polygon(std::vector<std::pair<float, float>> p) {
    return [p](float x, float y) {
        bool inside = false;
        for (size_t i = 0, j = p.size() - 1; i < p.size(); j = i++) {
            if ((p[i].second > y) != (p[j].second > y) &&
                x < (p[j].first - p[i].first) * (y - p[i].second) / (p[j].second - p[i].second) +
                        p[i].first) {
                inside = !inside;
            }
        }
        return inside;
    };
}

// An image of `parts` equal parts side by side, each drawn on a grid gridW units wide.
class Image {
public:
    Image(int partWidth, int height, int parts, float gridW)
        : partWidth_(partWidth),
          width_(partWidth * parts),
          height_(height),
          scale_(partWidth / gridW),
          premultiplied_(static_cast<size_t>(width_) * height * 4, 0.0f) {}

    // Composites `paint` where `shape` covers, in part `part`.
    void Draw(int part, const Shape& shape, const Paint& paint) {
        constexpr int kSamples = 4;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < partWidth_; ++x) {
                int covered = 0;
                for (int sy = 0; sy < kSamples; ++sy) {
                    for (int sx = 0; sx < kSamples; ++sx) {
                        covered += shape((x + (sx + 0.5f) / kSamples) / scale_,
                                         (y + (sy + 0.5f) / kSamples) / scale_);
                    }
                }
                if (covered == 0) {
                    continue;
                }
                const Rgba c = paint((x + 0.5f) / scale_, (y + 0.5f) / scale_);
                const float a = c.a * covered / (kSamples * kSamples);
                float* px = &premultiplied_[(static_cast<size_t>(y) * width_ + part * partWidth_ + x) * 4];
                px[0] = c.r * a + px[0] * (1.0f - a);
                px[1] = c.g * a + px[1] * (1.0f - a);
                px[2] = c.b * a + px[2] * (1.0f - a);
                px[3] = a + px[3] * (1.0f - a);
            }
        }
    }

    bool Write(const std::string& path) const {
        std::vector<uint8_t> rgba(premultiplied_.size());
        for (size_t i = 0; i < premultiplied_.size(); i += 4) {
            const float a = premultiplied_[i + 3];
            for (int k = 0; k < 3; ++k) {
                rgba[i + k] =
                    a > 0.0f ? static_cast<uint8_t>(std::lround(std::fmin(255.0f, premultiplied_[i + k] / a)))
                             : 0;
            }
            rgba[i + 3] = static_cast<uint8_t>(std::lround(a * 255.0f));
        }
        std::string error;
        if (!gallery::WritePng(rgba, width_, height_, 4, path, true, error)) {
            std::fprintf(stderr, "gallery_icongen: %s\n", error.c_str());
            return false;
        }
        return true;
    }

private:
    int partWidth_;
    int width_;
    int height_;
    float scale_;
    std::vector<float> premultiplied_;
};

Rgba Grey(float v, float a = 1.0f) {
    return {v, v, v, a};
}

Rgba Rgb(float r, float g, float b, float a = 1.0f) {
    return {r, g, b, a};
}

// A page: dark outline, white paper, optional text lines.
void Page(Image& im, int part, float x0, float y0, float x1, float y1, bool lines) {
    im.Draw(part, Rect(x0, y0, x1, y1), Solid(Grey(60)));
    im.Draw(part, Rect(x0 + 1, y0 + 1, x1 - 1, y1 - 1), Solid(Grey(250)));
    for (float y = y0 + 3.5f; lines && y < y1 - 2; y += 2.5f) {
        im.Draw(part, Capsule(x0 + 2.5f, y, x1 - 2.5f, y, 0.5f), Solid(Rgb(120, 140, 190)));
    }
}

// The toolbar strip, nine icons on a 16-unit grid: new, open, save, copy, paste, undo, find,
// settings, information.
void Toolbar(Image& im) {
    im.Draw(0, Polygon({{3, 1}, {10, 1}, {13, 4}, {13, 15}, {3, 15}}), Solid(Grey(60)));
    im.Draw(0, Polygon({{4, 2}, {9.6f, 2}, {12, 4.4f}, {12, 14}, {4, 14}}), Solid(Grey(250)));
    im.Draw(0, Polygon({{9.5f, 1.5f}, {9.5f, 4.5f}, {12.5f, 4.5f}}), Solid(Grey(190)));
    for (float y : {7.0f, 9.5f, 12.0f}) {
        im.Draw(0, Capsule(5.5f, y, 10.5f, y, 0.5f), Solid(Rgb(120, 140, 190)));
    }

    im.Draw(1, Polygon({{1, 3}, {6, 3}, {7.5f, 4.5f}, {14, 4.5f}, {14, 13.5f}, {1, 13.5f}}),
            Solid(Rgb(170, 120, 30)));
    im.Draw(1, Polygon({{3.5f, 7}, {15.5f, 7}, {13, 13.5f}, {1, 13.5f}}),
            Ramp(Rgb(255, 215, 100), Rgb(225, 160, 40), 7, 13.5f));

    im.Draw(2, RoundRect(1.5f, 1.5f, 14.5f, 14.5f, 1.5f),
            Ramp(Rgb(70, 120, 210), Rgb(40, 70, 150), 1.5f, 14.5f));
    im.Draw(2, Rect(4, 2.5f, 12, 7.5f), Solid(Grey(240)));
    im.Draw(2, Rect(5, 4, 11, 4.8f), Solid(Rgb(120, 140, 190)));
    im.Draw(2, Rect(5, 10, 11, 14.5f), Solid(Grey(205)));
    im.Draw(2, Rect(8.5f, 11, 10, 13.5f), Solid(Rgb(40, 70, 150)));

    Page(im, 3, 2, 1, 10, 11, false);
    Page(im, 3, 6, 5, 14, 15, true);

    im.Draw(4, RoundRect(2, 2.5f, 14, 15, 1.5f), Solid(Rgb(150, 100, 50)));
    im.Draw(4, Rect(4.5f, 5, 11.5f, 13.5f), Solid(Grey(250)));
    im.Draw(4, RoundRect(5, 1, 11, 4.5f, 1), Solid(Grey(175)));
    for (float y : {7.5f, 10.0f}) {
        im.Draw(4, Capsule(6.5f, y, 9.5f, y, 0.5f), Solid(Rgb(120, 140, 190)));
    }

    const Shape arc = [](float x, float y) {
        const float d = std::hypot(x - 8.5f, y - 9.5f);
        return d >= 3.2f && d <= 5.2f && (y < 9.5f || x > 8.5f);
    };
    im.Draw(5, arc, Solid(Rgb(40, 130, 70)));
    im.Draw(5, Polygon({{1.2f, 8.5f}, {7.3f, 8.5f}, {4.2f, 13}}), Solid(Rgb(40, 130, 70)));

    im.Draw(6, Circle(6.5f, 6.5f, 4), Solid(Rgb(180, 220, 255, 0.6f)));
    im.Draw(6, Ring(6.5f, 6.5f, 3.7f, 5.2f), Solid(Grey(60)));
    im.Draw(6, Capsule(10.3f, 10.3f, 14, 14, 1.4f), Solid(Rgb(120, 80, 40)));

    const Shape gear = [](float x, float y) {
        const float d = std::hypot(x - 8, y - 8);
        const float teeth = std::cos(8 * std::atan2(y - 8, x - 8)) > 0.1f ? 7.2f : 5.6f;
        return d <= teeth && d >= 2.3f;
    };
    im.Draw(7, gear, Ramp(Grey(190), Grey(100), 1, 15));

    im.Draw(8, Circle(8, 8, 7), Ramp(Rgb(70, 140, 230), Rgb(30, 90, 190), 1, 15));
    im.Draw(8, Circle(8, 4.6f, 1.25f), Solid(Grey(255)));
    im.Draw(8, Capsule(8, 7.5f, 8, 12, 1.1f), Solid(Grey(255)));
}

// Check-box marks on a 9-unit grid: the check and the dash of the mixed state.
void Marks(Image& im) {
    im.Draw(0, Capsule(1.8f, 4.8f, 3.8f, 6.8f, 0.85f), Solid(Grey(0)));
    im.Draw(0, Capsule(3.8f, 6.8f, 7.4f, 2.2f, 0.85f), Solid(Grey(0)));
    im.Draw(1, Capsule(2, 4.5f, 7, 4.5f, 0.9f), Solid(Grey(0)));
}

// Radio button layers on a 13-unit grid: the disc, its ring and the dot of the chosen state.
void Radio(Image& im) {
    im.Draw(0, Circle(6.5f, 6.5f, 6.5f), Solid(Grey(0)));
    im.Draw(1, Ring(6.5f, 6.5f, 5.4f, 6.5f), Solid(Grey(0)));
    im.Draw(2, Circle(6.5f, 6.5f, 3.0f), Solid(Grey(0)));
}

// Arrows on an 8-unit grid: down, up, left, right.
void Arrows(Image& im) {
    im.Draw(0, Polygon({{1, 2.5f}, {7, 2.5f}, {4, 6}}), Solid(Grey(0)));
    im.Draw(1, Polygon({{1, 5.5f}, {7, 5.5f}, {4, 2}}), Solid(Grey(0)));
    im.Draw(2, Polygon({{5.5f, 1}, {5.5f, 7}, {2, 4}}), Solid(Grey(0)));
    im.Draw(3, Polygon({{2.5f, 1}, {2.5f, 7}, {6, 4}}), Solid(Grey(0)));
}

void Close(Image& im) {
    im.Draw(0, Capsule(3.5f, 3.5f, 8.5f, 8.5f, 1.0f), Solid(Grey(255)));
    im.Draw(0, Capsule(8.5f, 3.5f, 3.5f, 8.5f, 1.0f), Solid(Grey(255)));
}

// A glossy panel on a 48 x 32 grid; stretched at its middle column and row.
void Panel(Image& im) {
    im.Draw(0, RoundRect(0, 0, 48, 32, 6), Solid(Rgb(25, 35, 60)));
    im.Draw(0, RoundRect(1, 1, 47, 31, 5), Ramp(Rgb(120, 150, 205), Rgb(45, 65, 120), 1, 31));
    im.Draw(0, RoundRect(2, 2, 46, 14, 4), Solid(Grey(255, 0.2f)));
}

// Diagonal stripes that tile seamlessly on an 8-unit grid.
void Stripes(Image& im) {
    im.Draw(
        0, [](float x, float y) { return std::fmod(x + y, 8.0f) < 3.0f; }, Solid(Grey(255)));
}

// A slider thumb pointing down, on a 12 x 20 grid.
void Thumb(Image& im) {
    im.Draw(0, Polygon({{0.5f, 0.5f}, {11.5f, 0.5f}, {11.5f, 14}, {6, 19.5f}, {0.5f, 14}}), Solid(Grey(40)));
    im.Draw(0, Polygon({{1.5f, 1.5f}, {10.5f, 1.5f}, {10.5f, 13.6f}, {6, 18.1f}, {1.5f, 13.6f}}),
            Ramp(Grey(245), Grey(170), 1.5f, 18));
}

struct Picture {
    const char* name;
    int partWidth, height, parts;
    float gridW;
    void (*draw)(Image&);
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: gallery_icongen OUTPUT_FOLDER\n");
        return 2;
    }
    const Picture pictures[] = {
        {"toolbar-16", 16, 16, 9, 16, Toolbar}, {"toolbar-24", 24, 24, 9, 16, Toolbar},
        {"marks-9", 9, 9, 2, 9, Marks},         {"radio-13", 13, 13, 3, 13, Radio},
        {"arrows-8", 8, 8, 4, 8, Arrows},       {"close-12", 12, 12, 1, 12, Close},
        {"panel-48", 48, 32, 1, 48, Panel},     {"stripes-8", 8, 8, 1, 8, Stripes},
        {"thumb-12", 12, 20, 1, 12, Thumb},
    };
    for (const Picture& p : pictures) {
        Image image(p.partWidth, p.height, p.parts, p.gridW);
        p.draw(image);
        if (!image.Write(std::string(argv[1]) + "/" + p.name + ".png")) {
            return 1;
        }
    }
    return 0;
}
