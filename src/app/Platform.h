// Where windows can be shown and drawn in, found out before the toolkit would end the program over
// it.
#pragma once

#include <QString>

/// The toolkit's platform to use, "wayland" or "xcb"; empty, and `problem` one line, when neither a
/// compositor nor an X server answers.
QString choosePlatform(QString& problem);

/// Whether the toolkit, which has been started, can draw with OpenGL. What a driver and the toolkit
/// say when it cannot is told only to who set LIBGL_DEBUG.
bool hasOpenGL();

/// Whether the compositor has surfaces for backgrounds (layer-shell).
bool hasLayerShell();
