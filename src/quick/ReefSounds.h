// The sounds of this process's reefs: it has one mixer, and one scene at a time has that.
#pragma once

class CMarivistaScreensaver;

/// Lets the scene be heard, unless another one is; then it may be asked for again. On the thread
/// that draws the scene.
void startSounds(CMarivistaScreensaver& scene);

/// Takes its sounds from the scene, which may go at once. They fade, and the mixer is closed when
/// that has been heard, on a thread of its own: no picture waits for it. The process does at its
/// end, a second at most.
void stopSounds(CMarivistaScreensaver& scene);

/// Holds back what the process's sounding scene plays, or lets it go on. On any thread.
void holdSounds(bool held);
