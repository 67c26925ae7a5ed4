// Draws at a fraction of the resolution and enlarges.
#pragma once

#include <functional>

/// Sees nothing but GL: any host with a current context of at least OpenGL 3.0, or one with frame
/// buffer objects, can use it. Without them everything is drawn as if there were no such class. All
/// operations need the one context current.
class ScaledDrawing {
public:
    /// `samples`: per pixel of the smaller picture, for smooth edges; 0 for none.
    explicit ScaledDrawing(int samples = 0) : samples_(samples) {}
    ScaledDrawing(const ScaledDrawing&) = delete;
    ScaledDrawing& operator=(const ScaledDrawing&) = delete;

    /// Has `picture` drawn, which finds the viewport that was set before, smaller by `fraction`;
    /// what it clears and draws lands, enlarged, in that viewport of the frame buffer bound before.
    /// At 1 and without samples nothing stands between, nor where the frame buffer itself has
    /// samples. Viewport, scissor test and binding are afterwards what they were; the picture finds
    /// no scissor test.
    /// `shown`, if there is one, gets the smaller picture first, in the frame buffer bound for
    /// reading; where it returns true nothing is enlarged.
    void draw(double fraction, const std::function<void()>& picture,
              const std::function<bool(int width, int height)>& shown = {});
    /// The uppermost rows of the viewport as the latest draw, if `shown` was asked, would have
    /// enlarged them, and what `over` draws on top, in a frame buffer bound for reading while
    /// `shown` runs. Viewport and binding are afterwards what they were.
    void drawTop(int rows, const std::function<void()>& over, const std::function<void()>& shown);
    /// Frees what it holds; the next draw makes it anew. Nothing is freed on destruction, when the
    /// context may be gone.
    void release();

private:
    struct TARGET {
        unsigned frame = 0, colour = 0, depth = 0, picture = 0;  ///< GL names, 0 for none
    };
    bool prepare(int width, int height);
    unsigned smallerPicture() const { return resolved_.frame ? resolved_.picture : drawn_.picture; }
    static bool make(TARGET& target, int width, int height, int samples, bool with_depth);
    static void free(TARGET& target);

    int samples_;
    int width_ = 0, height_ = 0;  ///< of both targets
    bool impossible_ = false;     ///< the context cannot, or not with these samples
    TARGET drawn_;                ///< what the picture is drawn into
    TARGET resolved_;             ///< its samples made one; only with samples
    TARGET top_;                  ///< for drawTop
    int top_width_ = 0, top_height_ = 0;
};
