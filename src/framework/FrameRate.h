// How often a host draws.
#pragma once

/// Whether a GL_RENDERER text names one that draws on the processor. False for null.
bool isSoftwareRenderer(const char* name);

/// Frames per second at most: the monitor's refresh rate, or less when asked for; 30 with a
/// renderer that draws on the processor unless asked otherwise. `wanted` is 0 when nothing is asked
/// for; a refresh rate that is not known, 0 or less, counts as 60.
double frameLimit(double wanted, double refreshRate, bool softwareRenderer);
