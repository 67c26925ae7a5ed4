// Drawing into some rows of the viewport only.
#pragma once

#include <functional>

/// Has `draw` change no pixel outside the rows of the viewport from `low` to `high`, 0 at its
/// bottom and 1 at its top; those that lie partly inside count as inside. A scissor that is set
/// already goes on to hold; afterwards it is what it was. Needs a current context.
void drawInRows(double low, double high, const std::function<void()>& draw);
