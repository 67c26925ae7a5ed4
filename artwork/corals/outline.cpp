#include "corals/outline.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace art {
namespace {

/// Twice the area of a triangle; its sign tells which way round it goes.
int area(const MeshPoint& a, const MeshPoint& b, const MeshPoint& c) {
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

class Outline {
public:
    Outline(std::vector<MeshPoint>& points, const std::vector<MeshTriangle>& triangles,
            const Image& picture, int reach)
        : points_(points), triangles_(triangles), around_(points.size()), reach_(reach) {
        for (const MeshPoint& p : points) {
            width_ = std::max(width_, p.x);
            height_ = std::max(height_, p.y);
        }
        findShown(picture);
        for (size_t t = 0; t < triangles.size(); ++t)
            for (const int point : triangles[t])
                around_[size_t(point)].push_back(t);
    }

    /// The points of edges that only one triangle has.
    std::set<int> rim() const {
        std::map<std::pair<int, int>, int> edges;
        for (const MeshTriangle& t : triangles_)
            for (size_t c = 0; c < 3; ++c)
                ++edges[std::minmax(t[c], t[(c + 1) % 3])];
        std::set<int> points;
        for (const auto& [edge, count] : edges)
            if (count == 1)
                points.insert({edge.first, edge.second});
        return points;
    }

    /// Moves a point to where its triangles are smallest and still show what they do.
    void drawIn(int point) {
        const std::vector<size_t>& own = around_[size_t(point)];
        MeshPoint& moved = points_[size_t(point)];
        const MeshPoint start = moved;
        const std::vector<MeshPoint> texels = shownBy(own);
        for (const Place& place : placesFor(point)) {
            moved = place.point;
            if (std::all_of(texels.begin(), texels.end(),
                            [&](const MeshPoint& texel) { return carried(own, texel); }))
                return;
        }
        moved = start;
    }

private:
    /// A place for a point, and how large its triangles would be.
    struct Place {
        int areas;
        MeshPoint point;
    };

    void findShown(const Image& picture) {
        constexpr int kSlack = 2;  // texels; linear filtering reaches over the edge
        shown_.assign(size_t(width_) * size_t(height_), 0);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.at(x, y).alpha <= 0)
                    continue;
                const int right = std::min(width_ - 1, x + kSlack),
                          bottom = std::min(height_ - 1, y + kSlack);
                for (int v = std::max(0, y - kSlack); v <= bottom; ++v)
                    for (int u = std::max(0, x - kSlack); u <= right; ++u)
                        shown_[index(u, v)] = 1;
            }
    }
    size_t index(int x, int y) const { return size_t(y) * size_t(width_) + size_t(x); }

    const MeshPoint& corner(size_t triangle, size_t c) const {
        return points_[size_t(triangles_[triangle][c % 3])];
    }
    int areaOf(size_t triangle) const {
        return area(corner(triangle, 0), corner(triangle, 1), corner(triangle, 2));
    }

    /// Whether any of the triangles has the middle of a texel.
    bool carried(const std::vector<size_t>& triangles, const MeshPoint& texel) const {
        return std::any_of(triangles.begin(), triangles.end(), [&](size_t t) {
            int right = 0, left = 0;
            for (size_t c = 0; c < 3; ++c) {
                const MeshPoint &a = corner(t, c), &b = corner(t, c + 1);
                // Twice as far as they are, for whole numbers.
                const int side = (b.x - a.x) * (2 * (texel.y - a.y) + 1) -
                                 (b.y - a.y) * (2 * (texel.x - a.x) + 1);
                right += side >= 0;
                left += side <= 0;
            }
            return right == 3 || left == 3;
        });
    }

    /// The texels that some triangles have of what is shown.
    std::vector<MeshPoint> shownBy(const std::vector<size_t>& triangles) const {
        MeshPoint low = corner(triangles[0], 0), high = low;
        for (const size_t t : triangles)
            for (size_t c = 0; c < 3; ++c) {
                const MeshPoint& p = corner(t, c);
                low = {std::min(low.x, p.x), std::min(low.y, p.y)};
                high = {std::max(high.x, p.x), std::max(high.y, p.y)};
            }
        std::vector<MeshPoint> texels;
        for (int y = low.y; y < high.y; ++y)
            for (int x = low.x; x < high.x; ++x)
                if (shown_[index(x, y)] && carried(triangles, {x, y}))
                    texels.push_back({x, y});
        return texels;
    }

    /// Where a point may go without turning a triangle over or making it a needle, the smallest
    /// triangles first.
    std::vector<Place> placesFor(int point) {
        constexpr int kStep = 2;  // texels
        const int least = reach_ * reach_ / 6;
        const std::vector<size_t>& own = around_[size_t(point)];
        std::vector<int> turns;
        for (const size_t t : own)
            turns.push_back(areaOf(t) > 0 ? 1 : -1);
        MeshPoint& moved = points_[size_t(point)];
        const MeshPoint start = moved;
        std::vector<Place> places;
        for (int y = std::max(0, start.y - reach_); y <= std::min(height_, start.y + reach_);
             y += kStep)
            for (int x = std::max(0, start.x - reach_); x <= std::min(width_, start.x + reach_);
                 x += kStep) {
                moved = {x, y};
                int sum = 0, smallest = least;
                for (size_t k = 0; k < own.size(); ++k) {
                    const int a = turns[k] * areaOf(own[k]);
                    smallest = std::min(smallest, a);
                    sum += a;
                }
                if (smallest >= least)
                    places.push_back({sum, moved});
            }
        moved = start;
        std::sort(places.begin(), places.end(), [](const Place& a, const Place& b) {
            return std::make_tuple(a.areas, a.point.x, a.point.y) <
                   std::make_tuple(b.areas, b.point.x, b.point.y);
        });
        return places;
    }

    std::vector<MeshPoint>& points_;
    const std::vector<MeshTriangle>& triangles_;
    std::vector<std::vector<size_t>> around_;  ///< each point's triangles
    std::vector<char> shown_;                  ///< by texel, and a little beyond it
    int width_ = 0, height_ = 0, reach_;
};

}  // namespace

void tightenOutline(std::vector<MeshPoint>& points, const std::vector<MeshTriangle>& triangles,
                    const Image& picture, int reach) {
    constexpr int kPasses = 2;
    Outline outline(points, triangles, picture, reach);
    const std::set<int> rim = outline.rim();
    for (int pass = 0; pass < kPasses; ++pass)
        for (const int point : rim)
            outline.drawIn(point);
}

}  // namespace art
