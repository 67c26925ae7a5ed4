#include "sky/clouds.h"

#include "common/parallel.h"
#include "sky/air.h"

using namespace art;

namespace sky {
namespace {

constexpr float kBase = 0.85f;
constexpr int kSectors = 720;
constexpr float kDensity = 38;  // optical depth of a kilometre of cloud
const Vec3 kLit = rgb(251, 251, 249), kHalf = rgb(207, 218, 227), kShade = rgb(150, 168, 180);

constexpr int kGrid = 96, kLumps = 6;  // samples and coarsest lumps along each side of the cube

}  // namespace

Billows::Billows() : values_(size_t(kGrid) * kGrid * kGrid) {
    parallelFor(kGrid, [&](int z) {
        for (int y = 0; y < kGrid; ++y)
            for (int x = 0; x < kGrid; ++x) {
                const Vec3 p =
                    Vec3{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)} *
                    (static_cast<float>(kLumps) / kGrid);
                float sum = 0, weight = 0, amplitude = 1, scale = 1;
                for (uint32_t octave = 0; octave < 3; ++octave) {
                    const int period = kLumps << octave;
                    const float d =
                        cellNoise(p * scale, 40 + octave, {period, period, period}).nearest;
                    sum += amplitude * (1 - std::min(1.0f, d * d * 1.15f));
                    weight += amplitude;
                    amplitude *= 0.5f;
                    scale *= 2;
                }
                values_[size_t((z * kGrid + y) * kGrid + x)] = sum / weight;
            }
    });
}

float Billows::at(Vec3 p) const {
    p *= static_cast<float>(kGrid) / kLumps;
    const float fx = std::floor(p.x), fy = std::floor(p.y), fz = std::floor(p.z);
    const auto wrap = [](int i) {
        const int m = i % kGrid;
        return m < 0 ? m + kGrid : m;
    };
    const int x0 = wrap(static_cast<int>(fx)), y0 = wrap(static_cast<int>(fy)),
              z0 = wrap(static_cast<int>(fz));
    const int x1 = x0 + 1 == kGrid ? 0 : x0 + 1, y1 = y0 + 1 == kGrid ? 0 : y0 + 1,
              z1 = z0 + 1 == kGrid ? 0 : z0 + 1;
    const float u = p.x - fx, v = p.y - fy, w = p.z - fz;
    const auto row = [&](int y, int z) {
        const float* values = &values_[size_t((z * kGrid + y) * kGrid)];
        return mix(values[x0], values[x1], u);
    };
    return mix(mix(row(y0, z0), row(y1, z0), v), mix(row(y0, z1), row(y1, z1), v), w);
}

Clouds::Clouds() {
    scatter();
    sectors_.resize(kSectors);
    for (size_t i = 0; i < clouds_.size(); ++i) {
        const Cloud& cloud = clouds_[i];
        const float r = std::hypot(cloud.centre.x, cloud.centre.z);
        const float middle = std::atan2(cloud.centre.z, cloud.centre.x) / (2 * kPi) * kSectors;
        const float half = std::asin(cloud.radius / r) / (2 * kPi) * kSectors;
        for (int s = static_cast<int>(std::floor(middle - half));
             s <= static_cast<int>(std::floor(middle + half)); ++s)
            sectors_[size_t((s + kSectors) % kSectors)].push_back(static_cast<int>(i));
    }
}

void Clouds::scatter() {
    Random random(2024);
    const auto place = [](float r, float angle) {
        return Vec3{r * std::cos(angle), kBase, r * std::sin(angle)};
    };
    // A few great ones, each with companions.
    constexpr int kGreat = 9;
    for (int i = 0; i < kGreat; ++i) {
        const float angle = 2 * kPi * (static_cast<float>(i) + random.range(-0.3f, 0.3f)) / kGreat;
        const float r = random.range(7.5f, 15);
        const float width = random.range(1.2f, 2.1f);
        pileUp(place(r, angle), width, width * random.range(0.85f, 1.25f), random);
        for (int k = random.index(4); k > 0; --k) {
            const float small = random.range(0.35f, 0.8f);
            const float aside = (random.unit() < 0.5f ? -1.0f : 1.0f) * random.range(1.0f, 1.7f);
            pileUp(place(r + random.range(-1.5f, 1.5f), angle + aside * width / r), small,
                   small * random.range(0.6f, 0.9f), random);
        }
    }
    // Small ones above, and the bank of them all towards the horizon.
    constexpr float kNearest = 6.5f, kFarthest = 65;
    for (int i = 0; i < 5200; ++i) {
        // Evenly over the area.
        const float r = std::sqrt(mix(kNearest * kNearest, kFarthest * kFarthest, random.unit()));
        const Vec3 foot = place(r, random.range(0, 2 * kPi));
        const float size = random.unit(), pick = random.unit(), tall = random.range(0.7f, 1.15f);
        // Clouds gather in fields with open sky between them.
        const float field = fractalNoise({foot.x * 0.06f, foot.z * 0.06f, 0.5f}, 3, 91);
        const float far = smoothstep(12, 28, r);
        if (pick > mix(0.10f, 0.55f, far) * smoothstep(-0.15f, 0.25f, field + 0.15f * far))
            continue;
        const float width = mix(0.30f, 0.85f, size * size) + far * 2.1f * std::pow(size, 4.0f);
        pileUp(foot, width, width * tall * mix(0.8f, 1.25f, far), random);
    }
}

/// Several towers side by side, each a stack of heaps.
void Clouds::pileUp(Vec3 foot, float width, float height, Random& random) {
    Cloud cloud;
    cloud.softness = random.unit();
    const int towers = 4 + static_cast<int>(width * 4) + random.index(3);
    const float heading = random.range(0, kPi);
    for (int k = 0; k < towers; ++k) {
        const float along = random.range(-1, 1), across = random.range(-0.6f, 0.6f);
        const float rim = std::min(1.0f, std::hypot(along, across));
        const Vec3 at = foot + Vec3{along * std::cos(heading) - across * std::sin(heading), 0,
                                    along * std::sin(heading) + across * std::cos(heading)} *
                                   width;
        const float top = height * (1 - 0.70f * rim * rim) * random.range(0.50f, 1.0f);
        const float girth =
            std::min(0.6f * top, width * mix(0.40f, 0.22f, rim) * random.range(0.75f, 1.2f));
        const int storeys = std::max(2, static_cast<int>(std::ceil(top / (girth * 0.8f))));
        for (int s = 0; s < storeys; ++s) {
            const float up = static_cast<float>(s) / static_cast<float>(storeys - 1);
            const float radius = girth * mix(1.0f, 0.55f, up) * random.range(0.8f, 1.15f);
            const Vec3 centre =
                at + Vec3{random.range(-0.4f, 0.4f) * girth, mix(0.30f * girth, top - radius, up),
                          random.range(-0.4f, 0.4f) * girth};
            Heap heap{centre, 1.45f * radius, {{centre, radius}}};
            for (int c = 0; c < 7; ++c) {
                const Vec3 side =
                    normalize({random.range(-1, 1), random.range(-0.25f, 1), random.range(-1, 1)});
                heap.puffs.push_back(
                    {centre + side * (radius * 0.82f), radius * random.range(0.28f, 0.55f)});
            }
            cloud.heaps.push_back(heap);
        }
    }
    Vec3 low = cloud.heaps[0].centre, high = low;
    for (const Heap& heap : cloud.heaps) {
        const Vec3 c = heap.centre;
        low = {std::min(low.x, c.x), std::min(low.y, c.y), std::min(low.z, c.z)};
        high = {std::max(high.x, c.x), std::max(high.y, c.y), std::max(high.z, c.z)};
    }
    cloud.centre = (low + high) / 2;
    cloud.radius = 0;
    for (const Heap& heap : cloud.heaps)
        cloud.radius = std::max(cloud.radius, length(heap.centre - cloud.centre) + heap.radius);
    clouds_.push_back(cloud);
}

/// How far the point lies under the cloud's skin, in kilometres; negative outside.
float Clouds::depthInside(const Cloud& cloud, Vec3 p, bool fine) const {
    float depth = -1e9f, radius = 0.1f;
    const auto reaches = [&](Vec3 centre, float size) {
        // Squared first: most are out of reach.
        const Vec3 d = p - centre;
        const float reach = size - depth;
        return dot(d, d) < reach * reach;
    };
    for (const Heap& heap : cloud.heaps) {
        if (!reaches(heap.centre, heap.radius))
            continue;
        for (const Puff& puff : heap.puffs)
            if (reaches(puff.centre, puff.radius)) {
                depth = puff.radius - length(p - puff.centre);
                radius = puff.radius;
            }
    }
    if (depth < -0.45f)
        return depth;
    const float lump = std::min(0.34f, 0.9f * radius);
    depth += (billows_.at(p * 2.0f) - 0.62f) * lump;
    if (fine)
        depth += (billows_.at(p * 8.3f + Vec3{3, 1, 2}) - 0.58f) * lump * 0.42f;
    // The flat base; far away, where many stand one behind the other, it is ragged and no line.
    // Near by it bulges a little and thins out downwards: a cut would be a slab.
    const float far = smoothstep(13, 30, std::hypot(p.x, p.z));
    const float hanging = (billows_.at(p * 1.1f + Vec3{7, 4, 9}) - 0.35f) * 0.55f;
    const float bulging = (billows_.at(p * 2.3f + Vec3{2, 8, 5}) - 0.30f) * 0.30f;
    const float above = p.y - kBase - mix(clamp01(bulging), clamp01(hanging), far);
    return std::min(depth, above * mix(0.35f, 1.0f, far));
}

/// The light that comes to a place inside the cloud, 0..1.
float Clouds::sunlight(const Cloud& cloud, Vec3 p, Vec3 sun, float edge) const {
    float shadow = 0, reach = 0, stride = 0.05f;
    for (int i = 0; i < 6; ++i) {
        const Vec3 q = p + sun * (reach + 0.5f * stride);
        shadow += stride * smoothstep(-edge, edge, depthInside(cloud, q, i < 3));
        reach += stride;
        stride *= 1.7f;
    }
    const float veil = kDensity * shadow;
    const float direct = 0.66f * std::exp(-0.45f * veil) + 0.22f * std::exp(-0.10f * veil) +
                         0.12f * std::exp(-0.02f * veil);
    // Light from the open sky comes to the tops and not into the folds.
    const float open = smoothstep(0.25f, -0.05f, depthInside(cloud, p + Vec3{0, 0.10f, 0}, true));
    const float lift = clamp01((p.y - kBase) / 0.7f);
    return clamp01(1.00f * direct + 0.14f * open + 0.08f * lift - 0.04f);
}

void Clouds::march(const Crossing& crossing, Vec3 direction, Vec3 sun, float texel, float chance,
                   Sight& sight) const {
    const Cloud& cloud = *crossing.cloud;
    float t = crossing.from;
    bool outside = true;
    while (t < crossing.to && sight.opacity < 0.99f) {
        const Vec3 p = direction * t;
        const float depth = depthInside(cloud, p, true);
        const float edge =
            std::max(0.018f + 0.04f * cloud.softness * cloud.softness, 0.8f * texel * t);
        if (depth < -edge) {
            t += std::max(0.6f * -depth, 0.016f);
            outside = true;
            continue;
        }
        const float step = std::max(0.018f, 0.5f * texel * t);
        if (outside) {  // step in at a different place for every texel
            outside = false;
            t -= step * chance;
        }
        const float density = smoothstep(-edge, edge, depth);
        const float alpha = 1 - std::exp(-kDensity * density * step);
        if (alpha > 0.002f) {
            const float light = sunlight(cloud, p, sun, edge);
            const Vec3 own =
                light < 0.5f ? mix(kShade, kHalf, 2 * light) : mix(kHalf, kLit, 2 * light - 1);
            const float distance = 1 - std::exp(-t / 75 - t * t / (52.0f * 52.0f));
            const float share = alpha * (1 - sight.opacity);
            sight.colour += mix(own, haze(), distance) * share;
            sight.opacity += share;
        }
        t += step;
    }
}

Clouds::Sight Clouds::look(Vec3 direction, float texel, float chance, Range range) const {
    Sight sight;
    const Vec3 ahead = normalize({direction.x, 0, direction.z});
    const Vec3 right = cross(ahead, {0, 1, 0});
    // The sky turns, the sun does not: it always stands behind the left shoulder.
    const Vec3 sun = normalize(Vec3{0, 0.80f, 0} - right * 0.62f - ahead * 0.36f);

    const float turn = std::atan2(direction.z, direction.x) / (2 * kPi);
    const int sector = static_cast<int>(std::floor((turn < 0 ? turn + 1 : turn) * kSectors));
    std::vector<Crossing> crossings;
    for (const int i : sectors_[size_t(sector % kSectors)]) {
        const Cloud& cloud = clouds_[size_t(i)];
        const float away = length(cloud.centre);
        if (away < range.nearest || away > range.farthest)
            continue;
        const float middle = dot(cloud.centre, direction);
        const float squared =
            cloud.radius * cloud.radius - (dot(cloud.centre, cloud.centre) - middle * middle);
        if (squared <= 0)
            continue;
        const float half = std::sqrt(squared);
        // Nothing below the base.
        const float from = std::max(middle - half, kBase / std::max(1e-4f, direction.y) - 0.1f);
        if (from < middle + half)
            crossings.push_back({from, middle + half, &cloud});
    }
    std::sort(crossings.begin(), crossings.end(),
              [](const Crossing& a, const Crossing& b) { return a.from < b.from; });
    for (const Crossing& crossing : crossings) {
        march(crossing, direction, sun, texel, chance, sight);
        if (sight.opacity >= 0.99f)
            break;
    }
    return sight;
}

}  // namespace sky
