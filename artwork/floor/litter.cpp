#include "floor/litter.h"

#include "common/noise.h"
#include "floor/ground.h"
#include "floor/placement.h"

namespace art {
namespace {

/// Where a coral stands and how far its garden reaches.
struct Footprint {
    float x, z, reach;
};
constexpr Footprint kFootprints[] = {
    {-2.8f, 20.2f, 2.7f}, {-3.7f, 14.2f, 0.85f}, {-5, 13.7f, 0.95f}, {-3.4f, 12.8f, 0.7f},
    {-8.9f, 19.2f, 1.1f}, {-5.6f, 15, 1.2f},     {-11.6f, 15, 1.3f}, {-10, 20.2f, 1.3f},
    {0, 25.2f, 2.2f},     {8.2f, 21.4f, 2.0f},   {11, 18.4f, 1.9f}};

std::vector<Stone> strewn() {
    Random random(4711);
    std::vector<Stone> stones;
    const Vec3 colours[] = {rgb(238, 212, 172), rgb(222, 186, 146), rgb(232, 158, 166),
                            rgb(208, 150, 172), rgb(200, 184, 124), rgb(250, 236, 208)};
    const Vec3 shells[] = {rgb(255, 248, 236), rgb(255, 224, 204), rgb(250, 208, 196)};
    const auto colour = [&] { return colours[random.index(6)]; };
    // Rubble: thick round the gardens, thinning outwards; a litter of bits elsewhere.
    for (const Footprint& f : kFootprints) {
        const int count = static_cast<int>(110 * f.reach);
        for (int i = 0; i < count; ++i) {
            const float angle = random.range(0, 2 * kPi);
            const float away = f.reach * (0.55f + 1.25f * random.unit() * random.unit());
            const float x = f.x + std::cos(angle) * away, z = f.z + std::sin(angle) * away * 0.9f;
            const float r = 0.035f + 0.15f * std::pow(random.unit(), 3.0f);
            stones.push_back(
                {x, z, r, r * random.range(0.5f, 0.9f), colour(), random.bits(), 0.6f});
        }
    }
    for (int i = 0; i < 2100; ++i) {
        const float x = random.range(-22, 22), z = random.range(1.3f, 27);
        // Before the eye a texel is as large as the smallest would be: fewer and larger ones there.
        const float close = 1 - smoothstep(9, 15, z);
        const float r = mix(0.018f + 0.055f * std::pow(random.unit(), 4.0f),
                            0.055f + 0.080f * std::pow(random.unit(), 3.0f), close);
        if (random.unit() < 0.72f * close)
            continue;
        const bool shell = random.unit() < 0.5f;
        const float patch = gradientNoise({x * 0.3f, z * 0.3f, 0.5f}, 571);
        if (random.unit() > 0.55f + 0.9f * patch)
            continue;
        stones.push_back({x, z, r, r * random.range(0.3f, 0.6f),
                          shell ? shells[random.index(3)] * 1.08f : colour() * 0.95f, random.bits(),
                          0.4f, shell});
    }
    // A few larger lumps in the open, with their own little heap.
    const Vec2 lumps[] = {{-9.3f, 11.6f}, {-1.2f, 15.6f}, {2.1f, 18.6f},   {5.2f, 15.4f},
                          {8.6f, 16.1f},  {13.4f, 14.2f}, {-13.9f, 11.2f}, {-7.2f, 8.3f}};
    for (const Vec2& at : lumps)
        for (int i = 0; i < 9; ++i) {
            const float r = i == 0 ? random.range(0.17f, 0.26f) : random.range(0.03f, 0.10f);
            const float d = i == 0 ? 0 : random.range(0.15f, 0.55f),
                        angle = random.range(0, 2 * kPi);
            stones.push_back({at.x + std::cos(angle) * d, at.y + std::sin(angle) * d, r, r * 0.7f,
                              colour(), random.bits(), 0.6f});
        }
    const auto under_star = [](const Stone& stone) {
        return std::any_of(stars().begin(), stars().end(), [&](const Star& star) {
            return length(Vec2{stone.x - star.x, stone.z - star.z}) <
                   1.1f * star.radius + stone.radius;
        });
    };
    stones.erase(std::remove_if(stones.begin(), stones.end(), under_star), stones.end());
    // Far ones first, so that near ones stand before them.
    std::stable_sort(stones.begin(), stones.end(),
                     [](const Stone& a, const Stone& b) { return a.z > b.z; });
    return stones;
}

}  // namespace

const std::vector<Stone>& stones() {
    static const std::vector<Stone> all = strewn();
    return all;
}

const std::vector<Star>& stars() {
    const Vec3 orange = rgb(250, 100, 44), blue = rgb(80, 124, 226), gold = rgb(240, 182, 70),
               red = rgb(208, 56, 62), violet = rgb(160, 92, 186);
    static const std::vector<Star> all = {
        {2.3f, 8.4f, 0.36f, 0.4f, orange},    {-1.2f, 7.1f, 0.24f, 1.3f, blue},
        {5.4f, 11.2f, 0.32f, 0.9f, violet},   {-7.4f, 10.4f, 0.42f, 2.1f, orange},
        {0.3f, 12.2f, 0.25f, 0.2f, gold},     {8.7f, 13.2f, 0.30f, 1.6f, red},
        {-13.2f, 13.0f, 0.34f, 0.7f, orange}, {3.6f, 17.2f, 0.34f, 1.1f, gold}};
    return all;
}

OnArm onArm(const Star& star, Vec2 place) {
    OnArm best{-1e9f, 0};
    float sum = 0;
    for (int i = 0; i < 5; ++i) {
        // No arm is as long as the next, nor bent like it; some have lost a piece.
        const auto own = [&](int what) {
            return hashUnit(static_cast<int>(star.x * 10), static_cast<int>(star.z * 10), i,
                            901 + static_cast<uint32_t>(what));
        };
        const float lost = own(3);
        const float reach = mix(0.80f, 1.06f, own(0)) * (lost < 0.12f ? 0.72f : 1.0f);
        const float bend = mix(-0.55f, 0.55f, own(1)), shift = mix(-0.14f, 0.14f, own(2));
        const float a = 2 * kPi * static_cast<float>(i) / 5 + shift - star.turn -
                        bend * (length(place) - 0.35f);
        const Vec2 axis{std::cos(a), std::sin(a)};
        const float along = std::min(0.92f * reach, std::max(0.0f, dot(place, axis)));
        const float share = along / reach;
        const float width = mix(0.23f, 0.08f, std::pow(share, 0.8f));
        const float away = length(place - axis * along) / width;
        const float inside = 1 - away * away;
        // Between two arms there is a web.
        sum += std::exp(2.2f * std::max(-6.0f, inside));
        if (inside > best.inside)
            best = {inside, share};
    }
    return {std::min(1.0f, std::log(sum) / 2.2f - 0.10f * (1 - best.along)), best.along};
}

float nearness(float x, float z) {
    float best = 1e9f;
    for (const Footprint& f : kFootprints)
        best = std::min(best, length(Vec2{x - f.x, z - f.z}) / f.reach);
    return best;
}

bool closeUp(const Stone& stone) {
    const float x = stone.x, z = stone.z;
    const bool large = stone.radius > 0.1f && nearness(x, z) > 1.6f;
    const bool in_sight = z > 4.5f && z < (large ? 17 : 14) && std::fabs(x) < 0.75f * (z - kEye.z);
    const bool before_thickets = z < 12.2f || std::fabs(x + 4.3f) > 2.2f;
    // It is drawn up to 1.5 nearer than it lies, and neither place may be on the big fish's way.
    const Vec3 lying{x, Ground::kBottom + 0.6f, z};
    const Vec3 drawn = lying + normalize(kEye - lying) * 1.5f;
    const bool off_the_way =
        std::min(distanceFromRoute(x, z), distanceFromRoute(drawn.x, drawn.z)) > 0.8f;
    return stone.radius > 0.05f && in_sight && before_thickets && off_the_way;
}

}  // namespace art
