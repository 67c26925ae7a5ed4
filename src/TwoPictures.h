// One picture laid over another in a single pass, by the second texture unit, which costs less than
// to draw both one after the other. For what is drawn with two textures and has multitexturing; to
// be called between binding and drawing, and the next binding ends it.
#pragma once

#include "DayLight.h"

/// The second picture covers the first by the alpha of the vertices.
void coverByVertices();

/// The second picture, in a tint of its own, covers the first by a share from 0 to below 1, colour
/// and alpha. The vertices are to have the colour that is returned: so the first one shows in its
/// tint.
TINT coverByShare(TINT first, TINT second, float share);
