#include "fish/big_fish.h"

namespace art {

Fish bigFish() {
    Fish f;
    f.body.top = {{0, 0.004f},     {0.02f, 0.032f}, {0.06f, 0.072f}, {0.13f, 0.128f},
                  {0.24f, 0.184f}, {0.38f, 0.208f}, {0.54f, 0.190f}, {0.74f, 0.114f},
                  {0.91f, 0.058f}, {1.0f, 0.054f}};
    f.body.bottom = {{0, -0.056f},     {0.02f, -0.078f}, {0.06f, -0.104f}, {0.13f, -0.134f},
                     {0.24f, -0.166f}, {0.38f, -0.182f}, {0.54f, -0.168f}, {0.74f, -0.098f},
                     {0.91f, -0.054f}, {1.0f, -0.050f}};
    f.body.width = {{0, 0.026f},     {0.03f, 0.052f}, {0.12f, 0.088f}, {0.28f, 0.112f},
                    {0.50f, 0.096f}, {0.76f, 0.050f}, {0.94f, 0.022f}, {1.03f, 0}};
    f.body.widest = 0.5f;
    f.body.keel = 1.02f;
    f.body.stations = {0,     0.015f, 0.045f, 0.09f, 0.15f, 0.22f, 0.30f, 0.39f,
                       0.49f, 0.59f,  0.69f,  0.79f, 0.89f, 0.96f, 1.03f};
    f.body.half_sides = 9;

    Fin tail;
    tail.part = Part::TAIL;
    tail.root = {{0.895f, 0.060f}, {0.905f, 0}, {0.895f, -0.056f}};
    tail.flare = 1.6f;
    tail.margin = {
        {1.275f, 0.195f}, {1.245f, 0.095f}, {1.215f, 0}, {1.245f, -0.092f}, {1.275f, -0.190f}};
    tail.front = tail.rear = {0.24f, 0.27f};
    tail.columns = 18;
    tail.rows = 4;

    Fin dorsal;
    dorsal.part = Part::DORSAL;
    dorsal.root = {
        {0.25f, 0.165f}, {0.42f, 0.192f}, {0.60f, 0.155f}, {0.76f, 0.090f}, {0.89f, 0.052f}};
    dorsal.margin = {{0.275f, 0.235f}, {0.34f, 0.292f}, {0.46f, 0.288f},  {0.58f, 0.252f},
                     {0.70f, 0.258f},  {0.82f, 0.238f}, {0.900f, 0.180f}, {0.925f, 0.105f}};
    dorsal.front = {0.24f, 0.85f};
    dorsal.rear = {0.28f, 0.75f};
    dorsal.columns = 22;
    dorsal.rows = 2;
    dorsal.ripple = 0.010f;

    Fin anal;
    anal.part = Part::ANAL;
    anal.root = {{0.60f, -0.138f}, {0.74f, -0.090f}, {0.88f, -0.050f}};
    anal.margin = {{0.630f, -0.215f},
                   {0.72f, -0.258f},
                   {0.83f, -0.230f},
                   {0.900f, -0.165f},
                   {0.920f, -0.095f}};
    anal.front = {0.32f, 0.80f};
    anal.rear = {0.35f, 0.75f};
    anal.columns = 15;
    anal.rows = 2;
    anal.ripple = 0.010f;

    Fin pelvic;
    pelvic.part = Part::PELVIC;
    pelvic.root = {{0.30f, -0.155f}, {0.37f, -0.168f}};
    pelvic.margin = {{0.445f, -0.315f}, {0.485f, -0.285f}, {0.470f, -0.210f}};
    pelvic.front = {0.50f, 0.45f};
    pelvic.rear = {0.50f, 0.60f};
    pelvic.columns = 10;
    pelvic.rows = 2;
    pelvic.paired = true;
    pelvic.splay = 24;
    pelvic.paddle = 4;

    Fin pectoral;
    pectoral.part = Part::PECTORAL;
    pectoral.root = {{0.300f, -0.025f}, {0.274f, -0.056f}, {0.310f, -0.087f}};
    pectoral.margin = {{0.470f, 0.020f}, {0.520f, -0.050f}, {0.490f, -0.125f}, {0.410f, -0.170f}};
    pectoral.front = {0.50f, 0.50f};
    pectoral.rear = {0.50f, 0.55f};
    pectoral.columns = 14;
    pectoral.rows = 2;
    pectoral.paired = true;
    pectoral.splay = 34;
    pectoral.paddle = 9;

    f.fins = {tail, dorsal, anal, pelvic, pectoral};
    f.eye = {{0.130f, 0.062f}, 0.031f, 0.35f};
    f.swim = {16.5f, 0.75f, 0.03f, 2.4f};
    f.shadow.depth = 23;
    f.shadow.width = 0.30f;
    f.length = 62;
    f.centre = 0.56f;
    return f;
}

Detail bigFishDetail() {
    Detail d;
    d.gill = {0.282f, -0.01f};
    d.gill_height = 0.135f;
    d.mouth_front = {-0.02f, -0.024f};
    d.mouth_corner = {0.088f, -0.060f};
    d.lips = 0.017f;
    return d;
}

}  // namespace art
