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

/// Whether a triangle has the middle of a texel.
bool carries(const std::array<MeshPoint, 3>& triangle, const MeshPoint& texel) {
    int right = 0, left = 0;
    for (size_t c = 0; c < 3; ++c) {
        const MeshPoint &a = triangle[c], &b = triangle[(c + 1) % 3];
        // Twice as far as they are, for whole numbers.
        const int side =
            (b.x - a.x) * (2 * (texel.y - a.y) + 1) - (b.y - a.y) * (2 * (texel.x - a.x) + 1);
        right += side >= 0;
        left += side <= 0;
    }
    return right == 3 || left == 3;
}

class Outline {
public:
    Outline(std::vector<MeshPoint>& points, std::vector<MeshTriangle>& triangles,
            const Image& picture, int reach)
        : points_(points), triangles_(triangles), reach_(reach) {
        for (const MeshPoint& p : points) {
            width_ = std::max(width_, p.x);
            height_ = std::max(height_, p.y);
        }
        findShown(picture);
    }

    /// Draws in all points along the edge of the mesh.
    void drawIn() {
        constexpr int kPasses = 3;
        around_.assign(points_.size(), {});
        for (size_t t = 0; t < triangles_.size(); ++t)
            for (const int point : triangles_[t])
                around_[size_t(point)].push_back(t);
        std::set<int> points;
        for (const auto& [edge, triangle] : rim())
            points.insert({edge.first, edge.second});
        for (int pass = 0; pass < kPasses; ++pass)
            for (const int point : points)
                drawIn(point);
    }

    /// Leaves out triangles that show nothing any more.
    void leaveOut() {
        std::vector<MeshTriangle> left;
        for (size_t t = 0; t < triangles_.size(); ++t)
            if (!shownBy({t}).empty())
                left.push_back(triangles_[t]);
        triangles_ = left;
    }

    /// Gives edges of the mesh a point more where that saves much; it costs but a triangle.
    void bendIn() {
        constexpr int kWorth = 16;  // texels
        std::map<Edge, size_t> edges = rim();
        std::map<Edge, Bend> bends;
        for (const auto& [edge, triangle] : edges)
            bends[edge] = bend(edge, triangle);
        while (!bends.empty()) {
            const auto best = std::max_element(
                bends.begin(), bends.end(),
                [](const auto& a, const auto& b) { return a.second.saved < b.second.saved; });
            if (best->second.saved < 2 * kWorth)
                return;
            const Edge edge = best->first;
            const size_t triangle = edges.at(edge);
            const int middle = static_cast<int>(points_.size());
            points_.push_back(best->second.point);
            triangles_.push_back(triangles_[triangle]);
            std::replace(triangles_[triangle].begin(), triangles_[triangle].end(), edge.second,
                         middle);
            std::replace(triangles_.back().begin(), triangles_.back().end(), edge.first, middle);
            bends.erase(edge);
            edges = rim();
            for (const size_t half : {triangle, triangles_.size() - 1})
                for (size_t c = 0; c < 3; ++c) {
                    const Edge side = edgeOf(half, c);
                    if (edges.count(side))
                        bends[side] = bend(side, half);
                }
        }
    }

private:
    /// Two points, the lower index first.
    using Edge = std::pair<int, int>;
    /// Where the middle of an edge goes, and twice the texels that this saves.
    struct Bend {
        int saved = 0;
        MeshPoint point{0, 0};
    };

    Edge edgeOf(size_t triangle, size_t c) const {
        return std::minmax({triangles_[triangle][c], triangles_[triangle][(c + 1) % 3]});
    }

    /// The edges that only one triangle has, and that triangle.
    std::map<Edge, size_t> rim() const {
        std::map<Edge, std::vector<size_t>> all;
        for (size_t t = 0; t < triangles_.size(); ++t)
            for (size_t c = 0; c < 3; ++c)
                all[edgeOf(t, c)].push_back(t);
        std::map<Edge, size_t> once;
        for (const auto& [edge, own] : all)
            if (own.size() == 1)
                once[edge] = own[0];
        return once;
    }

    Bend bend(const Edge& edge, size_t triangle) const {
        MeshPoint tip{0, 0};
        for (const int point : triangles_[triangle])
            if (point != edge.first && point != edge.second)
                tip = points_[size_t(point)];
        const MeshPoint &a = points_[size_t(edge.first)], &b = points_[size_t(edge.second)];
        const int whole = std::abs(area(a, b, tip)), turn = area(a, b, tip) > 0 ? 1 : -1;
        const std::vector<MeshPoint> texels = shownBy({triangle});
        Bend best;
        for (int y = std::min({a.y, b.y, tip.y}); y <= std::max({a.y, b.y, tip.y}); ++y)
            for (int x = std::min({a.x, b.x, tip.x}); x <= std::max({a.x, b.x, tip.x}); ++x) {
                const MeshPoint middle{x, y};
                const int one = turn * area(a, middle, tip), other = turn * area(middle, b, tip);
                const int saved = whole - one - other;
                if (std::min(one, other) < least() || saved <= best.saved)
                    continue;
                if (std::all_of(texels.begin(), texels.end(), [&](const MeshPoint& texel) {
                        return carries({a, middle, tip}, texel) || carries({middle, b, tip}, texel);
                    }))
                    best = {saved, middle};
            }
        return best;
    }

    /// Twice the area that a triangle has to have, or it would be a needle.
    int least() const { return reach_ * reach_ / 8; }

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

    /// A place for a point, and how large its triangles would be.
    struct Place {
        int areas;
        MeshPoint point;
    };

    void findShown(const Image& picture) {
        constexpr float kFaint = 0.12f;  // shows less than what it hides would
        constexpr int kSlack = 1;        // texels; linear filtering reaches over the edge
        shown_.assign(size_t(width_) * size_t(height_), 0);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x) {
                if (picture.at(x, y).alpha < kFaint)
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
            return carries({corner(t, 0), corner(t, 1), corner(t, 2)}, texel);
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
        const std::vector<size_t>& own = around_[size_t(point)];
        std::vector<int> turns;
        for (const size_t t : own)
            turns.push_back(areaOf(t) > 0 ? 1 : -1);
        MeshPoint& moved = points_[size_t(point)];
        const MeshPoint start = moved;
        std::vector<Place> places;
        for (int y = std::max(0, start.y - reach_); y <= std::min(height_, start.y + reach_); ++y)
            for (int x = std::max(0, start.x - reach_); x <= std::min(width_, start.x + reach_);
                 ++x) {
                moved = {x, y};
                int sum = 0, smallest = least();
                for (size_t k = 0; k < own.size(); ++k) {
                    const int a = turns[k] * areaOf(own[k]);
                    smallest = std::min(smallest, a);
                    sum += a;
                }
                if (smallest >= least())
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
    std::vector<MeshTriangle>& triangles_;
    std::vector<std::vector<size_t>> around_;  ///< each point's triangles
    std::vector<char> shown_;                  ///< by texel, and a little beyond it
    int width_ = 0, height_ = 0, reach_;
};

}  // namespace

void tightenOutline(std::vector<MeshPoint>& points, std::vector<MeshTriangle>& triangles,
                    const Image& picture, int reach) {
    Outline outline(points, triangles, picture, reach);
    outline.drawIn();
    outline.leaveOut();
    outline.bendIn();
    outline.drawIn();
    outline.leaveOut();
}

}  // namespace art
