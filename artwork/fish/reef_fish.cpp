#include "fish/reef_fish.h"

namespace art {

Fish reefFish() {
    Fish f;
    f.body.top = {{0, 0.006f},     {0.02f, 0.034f}, {0.06f, 0.078f}, {0.13f, 0.138f},
                  {0.25f, 0.204f}, {0.40f, 0.234f}, {0.56f, 0.216f}, {0.76f, 0.132f},
                  {0.91f, 0.062f}, {1.0f, 0.056f}};
    f.body.bottom = {{0, -0.026f},     {0.02f, -0.048f}, {0.06f, -0.080f}, {0.13f, -0.124f},
                     {0.25f, -0.180f}, {0.40f, -0.214f}, {0.56f, -0.200f}, {0.76f, -0.122f},
                     {0.91f, -0.060f}, {1.0f, -0.054f}};
    f.body.width = {{0, 0.012f},     {0.04f, 0.042f}, {0.13f, 0.074f}, {0.30f, 0.094f},
                    {0.52f, 0.080f}, {0.78f, 0.038f}, {0.95f, 0.016f}, {1.03f, 0}};
    f.body.widest = 0.52f;
    f.body.keel = 1.12f;
    f.body.stations = {0,     0.02f, 0.06f, 0.12f, 0.20f, 0.30f,
                       0.41f, 0.53f, 0.65f, 0.77f, 0.89f, 1.03f};
    f.body.half_sides = 7;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.895f, 0.064f}, {0.905f, 0}, {0.895f, -0.062f}};
    tail.flare = 1.6f;
    tail.margin = {{1.275f, 0.215f},  {1.222f, 0.130f},  {1.150f, 0.058f}, {1.118f, 0},
                   {1.150f, -0.058f}, {1.222f, -0.130f}, {1.275f, -0.215f}};
    tail.front = tail.rear = {0.16f, 0.20f};
    tail.columns = 18;
    tail.rows = 4;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {
        {0.21f, 0.165f}, {0.40f, 0.215f}, {0.60f, 0.185f}, {0.78f, 0.105f}, {0.89f, 0.055f}};
    dorsal.margin = {{0.245f, 0.245f}, {0.36f, 0.315f}, {0.50f, 0.330f},
                     {0.68f, 0.305f},  {0.84f, 0.240f}, {0.955f, 0.130f}};
    dorsal.front = {0.16f, 0.85f};
    dorsal.rear = {0.30f, 0.80f};
    dorsal.columns = 18;
    dorsal.rows = 2;
    dorsal.ripple = 0.008f;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.46f, -0.195f}, {0.62f, -0.165f}, {0.78f, -0.100f}, {0.89f, -0.052f}};
    anal.margin = {
        {0.505f, -0.270f}, {0.62f, -0.310f}, {0.76f, -0.285f}, {0.87f, -0.215f}, {0.955f, -0.120f}};
    anal.front = {0.30f, 0.80f};
    anal.rear = {0.35f, 0.80f};
    anal.columns = 14;
    anal.rows = 2;
    anal.ripple = 0.008f;

    Fin pelvic;
    pelvic.part = Part::PELVIC;
    pelvic.root = {{0.31f, -0.170f}, {0.37f, -0.185f}};
    pelvic.margin = {{0.42f, -0.335f}, {0.46f, -0.310f}, {0.46f, -0.240f}};
    pelvic.front = {0.50f, 0.45f};
    pelvic.rear = {0.50f, 0.60f};
    pelvic.columns = 9;
    pelvic.paired = true;
    pelvic.splay = 16;
    pelvic.paddle = 3;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.285f, -0.020f}, {0.262f, -0.046f}, {0.293f, -0.072f}};
    pectoral.margin = {{0.445f, 0.015f}, {0.475f, -0.045f}, {0.450f, -0.100f}, {0.395f, -0.135f}};
    pectoral.front = {0.50f, 0.50f};
    pectoral.rear = {0.50f, 0.55f};
    pectoral.columns = 12;
    pectoral.rows = 2;
    pectoral.paired = true;
    pectoral.splay = 34;
    pectoral.paddle = 5;  // at four strokes a second more looks like clockwork

    f.fins = {tail, dorsal, anal, pelvic, pectoral};
    f.eye = {{0.128f, 0.040f}, 0.034f, 0.28f};
    f.swim = {10.5f, 0.72f, 0.02f, 3.2f};
    f.shadow.depth = 194;
    f.length = 45;
    f.centre = 0.58f;
    return f;
}

Detail reefFishDetail() {
    Detail d;
    d.scale = 0.030f;
    d.gill = {0.262f, -0.01f};
    d.gill_height = 0.135f;
    d.mouth_front = {-0.01f, -0.014f};
    d.mouth_corner = {0.050f, -0.036f};
    return d;
}

}  // namespace art
