// Which part of the window's resolution a renderer that draws on the processor can afford.
#pragma once

/// Follows the measured time of frames, slowly: the fraction changes in steps while the camera
/// travels, when a change does not show, or after ten seconds in which it was needed; and freely in
/// the first seconds, to begin with. Between too slow and fast enough for the next larger step lies
/// room, so that it does not swing. All times in milliseconds, on any clock that does not go
/// backwards.
class AdaptiveScale {
public:
    /// `pace`: pictures a second that are always to be reached.
    explicit AdaptiveScale(double pace = 25);

    /// Of the window's width and height, 0.4 to 1.
    double fraction() const;
    /// A frame at this fraction has just been drawn, which took so long.
    void drawn(double now, double took, bool travelling);

private:
    int wantedStep(double mean) const;
    void measureAnew(double now);

    double longest;  ///< a frame that takes longer is too slow
    double best;     ///< what a change aims at
    int step = 0;    ///< index of the fraction
    int frames = 0;  ///< measured since `measured_since`
    double sum = 0;  ///< of their times
    double measured_since = 0;
    double started = -1;       ///< time of the first frame; negative before it
    double needed_since = -1;  ///< since when a change is wanted; negative: none is
};
