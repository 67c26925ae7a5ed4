#pragma once

#include "host/KScreenSaver.h"

class KDEFrame;

/// The saver that a host gets: shows a scene's frame in the host's window.
class KDEScreensaverFrame : public KScreenSaver {
public:
    explicit KDEScreensaverFrame(unsigned long id);
    /// Releases the scene's GL objects and lets the frame go without destroying it: the scene is
    /// one per process and is destroyed when the program ends, exactly once.
    ~KDEScreensaverFrame() override;

    /// Embeds the frame on a black background and shows it.
    void init(KDEFrame* frame);

    KDEFrame* saver;  ///< the embedded frame; null before `init`
};
