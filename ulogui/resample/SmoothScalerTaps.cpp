// Tap tables of the smooth scaler: where each output column or row reads, with which fixed-point weight.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

#include "resample/SmoothScaler.h"

namespace ulogui {
namespace resample {
namespace smooth {

namespace {

// floor and ceil for values well inside the int64 range, without a library call.
double Floor(double v) {
    const double t = static_cast<double>(static_cast<std::int64_t>(v));
    return t > v ? t - 1 : t;
}

double Ceil(double v) {
    const double t = static_cast<double>(static_cast<std::int64_t>(v));
    return t < v ? t + 1 : t;
}

struct RawTap {
    std::int32_t index;
    double weight;
};

// Quantises one output's weights to kWeightOne in total by rounding their running sums: every partial
// sum is within half a unit of its exact value, so the error of the weighted mean is at most half a
// unit times the variation between neighbouring source pixels, and a flat picture stays exactly flat.
// An odd count is made even with a weight-0 neighbour: the next pixel if there is one, else the
// previous.
void AppendOutput(AxisTaps& taps, const RawTap* raw, std::size_t count, int sourceLength) {
    double total = 0;
    for (std::size_t k = 0; k < count; ++k) {
        total += raw[k].weight;
    }
    if (count == 0 || !(total > 0)) {
        taps.start.push_back(static_cast<std::int32_t>(taps.index.size()));
        return;
    }
    const std::size_t first = taps.index.size();
    const double unit = kWeightOne / total;
    double running = 0;
    int previous = 0;
    for (std::size_t k = 0; k < count; ++k) {
        running += raw[k].weight;
        const int rounded = k + 1 == count ? kWeightOne : static_cast<int>(Floor(running * unit + 0.5));
        taps.index.push_back(raw[k].index);
        taps.weight.push_back(static_cast<std::int16_t>(rounded - previous));
        previous = rounded;
    }
    if (count % 2 != 0) {
        const std::int32_t after = taps.index.back() + 1;
        const std::int32_t before = taps.index[first] - 1;
        if (after < sourceLength) {
            taps.index.push_back(after);
            taps.weight.push_back(0);
        } else if (before >= 0) {
            taps.index.insert(taps.index.begin() + static_cast<std::ptrdiff_t>(first), before);
            taps.weight.insert(taps.weight.begin() + static_cast<std::ptrdiff_t>(first), std::int16_t{0});
        } else {
            taps.index.push_back(taps.index.back());  // a 1-pixel source
            taps.weight.push_back(0);
            taps.adjacentPairs = false;
        }
    }
    taps.onePair = taps.onePair && taps.index.size() - first == 2;
    taps.maxSpan = std::max(taps.maxSpan, taps.index.back() - taps.index[first] + 1);
    taps.start.push_back(static_cast<std::int32_t>(taps.index.size()));
}

void BuildRuns(AxisTaps& taps, int sourceLength);
void BuildQuads(AxisTaps& taps, int sourceLength);

void Finish(AxisTaps& taps, int outputLength, int sourceLength) {
    taps.usable = 0;
    while (taps.usable < outputLength && taps.TapCount(taps.usable) != 0) {
        ++taps.usable;
    }
    taps.pairWeight.resize(taps.weight.size() / 2);
    for (std::size_t p = 0; p < taps.pairWeight.size(); ++p) {
        const std::uint32_t low = static_cast<std::uint16_t>(taps.weight[2 * p]);
        const std::uint32_t high = static_cast<std::uint16_t>(taps.weight[2 * p + 1]);
        taps.pairWeight[p] = static_cast<std::int32_t>(low | (high << 16));
    }
    if (taps.onePair && taps.usable == outputLength) {
        taps.columnWeight.resize(taps.pairWeight.size() * 4);
        for (std::size_t p = 0; p < taps.pairWeight.size(); ++p) {
            std::fill_n(&taps.columnWeight[4 * p], 4, taps.pairWeight[p]);
        }
    }
    if (taps.onePair) {
        BuildQuads(taps, sourceLength);
    } else {
        BuildRuns(taps, sourceLength);
    }
}

void BuildQuads(AxisTaps& taps, int sourceLength) {
    constexpr int kSpan = 8;
    if (!taps.onePair || !taps.adjacentPairs || taps.usable < 4 || sourceLength < kSpan) {
        return;
    }
    const int quads = taps.usable / 4;
    std::vector<std::int32_t> start(static_cast<std::size_t>(quads));
    std::vector<std::int32_t> permute(static_cast<std::size_t>(quads) * 8);
    std::vector<std::int32_t> weight(static_cast<std::size_t>(quads) * 16);
    for (int q = 0; q < quads; ++q) {
        const std::int32_t first = std::min(taps.index[2 * (4 * q)], sourceLength - kSpan);
        start[q] = first;
        for (int i = 0; i < 4; ++i) {
            const int output = 4 * q + i;
            const std::int32_t pair = taps.index[2 * output];
            if (pair < first || pair + 1 - first >= kSpan) {
                return;  // too far apart for one load
            }
            permute[8 * q + 2 * i] = pair - first;
            permute[8 * q + 2 * i + 1] = pair + 1 - first;
            // Outputs 0 and 2 go to the first eight values (one per lane), 1 and 3 to the second.
            std::int32_t* lane = &weight[16 * q + (i % 2) * 8 + (i / 2) * 4];
            std::fill_n(lane, 4, taps.pairWeight[output]);
        }
    }
    taps.quadStart = std::move(start);
    taps.quadPermute = std::move(permute);
    taps.quadWeight = std::move(weight);
}

// Every output's taps as one run of the same length, when the taps of each output are neighbouring
// pixels and the source is long enough.
void BuildRuns(AxisTaps& taps, int sourceLength) {
    int longest = 0;
    for (int i = 0; i < taps.usable; ++i) {
        for (int t = taps.start[i] + 1; t < taps.start[i + 1]; ++t) {
            if (taps.index[t] != taps.index[t - 1] + 1) {
                return;
            }
        }
        longest = std::max(longest, taps.TapCount(i));
    }
    const int length = (longest + 3) / 4 * 4;
    if (taps.usable == 0 || length > sourceLength) {
        return;
    }
    taps.runLength = length;
    taps.runStart.resize(static_cast<std::size_t>(taps.usable));
    taps.runWeight.assign(static_cast<std::size_t>(taps.usable) * length * 4, 0);
    for (int i = 0; i < taps.usable; ++i) {
        const std::int32_t first = std::min(taps.index[taps.start[i]], sourceLength - length);
        taps.runStart[i] = first;
        std::int16_t* block = &taps.runWeight[static_cast<std::size_t>(i) * length * 4];
        for (int t = taps.start[i]; t < taps.start[i + 1]; ++t) {
            // Tap k of the run goes to block k / 4; within it, pair (k % 4) / 2 fills one half, and
            // its position in the pair every other value of that half.
            const int k = taps.index[t] - first;
            std::int16_t* half = block + (k / 4) * 16 + ((k % 4) / 2) * 8 + (k % 2);
            for (int j = 0; j < 8; j += 2) {
                half[j] = taps.weight[t];
            }
        }
    }
}

}  // namespace

AxisTaps AreaTaps(int sourceLength, int outputLength, double scale, int offset) {
    AxisTaps taps;
    taps.start.reserve(static_cast<std::size_t>(outputLength) + 1);
    taps.start.push_back(0);
    const std::size_t perOutput = static_cast<std::size_t>(std::min(scale, 1e6)) + 3;
    taps.index.reserve(static_cast<std::size_t>(outputLength) * perOutput);
    taps.weight.reserve(static_cast<std::size_t>(outputLength) * perOutput);
    std::vector<RawTap> raw;
    raw.reserve(perOutput);
    for (int i = 0; i < outputLength; ++i) {
        raw.clear();
        // The window in source units; its edges are exact in double (scale has a float's precision).
        const double begin = i * scale;
        const double end = (i + 1) * scale;
        for (double cell = Floor(begin); cell < end; cell += 1) {
            const double covered = std::min(cell + 1, end) - std::max(cell, begin);
            const double index = cell + offset;
            if (covered <= 0 || index >= sourceLength) {
                continue;  // outside the picture: neither colour nor weight
            }
            raw.push_back({static_cast<std::int32_t>(index), covered});
        }
        AppendOutput(taps, raw.data(), raw.size(), sourceLength);
    }
    Finish(taps, outputLength, sourceLength);
    return taps;
}

AxisTaps BilinearTaps(int sourceLength, int outputLength, double scale, int offset) {
    // Every output has exactly one pair, so the tables are written in place; the weights follow the
    // same rule as AppendOutput (the first rounded, the second the rest).
    AxisTaps taps;
    const std::size_t outputs = static_cast<std::size_t>(std::max(outputLength, 0));
    taps.start.resize(outputs + 1);
    taps.index.resize(outputs * 2);
    taps.weight.resize(outputs * 2);
    taps.maxSpan = std::min(sourceLength, 2);
    const double last = sourceLength - 1;
    for (std::size_t i = 0; i < outputs; ++i) {
        const double p = offset + scale * (static_cast<double>(i) + 0.5) - 0.5;
        const double low = std::min(std::max(Floor(p), 0.0), last);
        const double high = std::min(Ceil(p), last);
        std::int32_t first = static_cast<std::int32_t>(low);
        int firstWeight = kWeightOne;
        if (low != high) {
            // Here low = floor(p) and high = low + 1, so f lies in [0, 1).
            const double f = std::max(p - low, 0.0);
            firstWeight = static_cast<int>(Floor((1 - f) * kWeightOne + 0.5));
        } else if (first + 1 >= sourceLength) {
            // One pixel at the right edge: paired with its weight-0 left neighbour, if there is one.
            if (first > 0) {
                --first;
                firstWeight = 0;
            } else {
                taps.adjacentPairs = false;
            }
        }
        taps.start[i] = static_cast<std::int32_t>(2 * i);
        taps.index[2 * i] = first;
        taps.index[2 * i + 1] = sourceLength > 1 ? first + 1 : first;
        taps.weight[2 * i] = static_cast<std::int16_t>(firstWeight);
        taps.weight[2 * i + 1] = static_cast<std::int16_t>(kWeightOne - firstWeight);
    }
    taps.start[outputs] = static_cast<std::int32_t>(2 * outputs);
    Finish(taps, outputLength, sourceLength);
    return taps;
}

}  // namespace smooth
}  // namespace resample
}  // namespace ulogui
