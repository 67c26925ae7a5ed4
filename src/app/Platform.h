// Where windows can be shown, found out before the toolkit would end the program over it.
#pragma once

#include <QString>

/// The toolkit's platform to use, "wayland" or "xcb"; empty, and `problem` one line, when neither a
/// compositor nor an X server answers.
QString choosePlatform(QString& problem);

/// Whether the compositor has surfaces for backgrounds (layer-shell).
bool hasLayerShell();
