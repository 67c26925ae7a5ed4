#include "host/KDEScreensaverFrame.h"

#include "framework/KDEFrame.h"

KDEScreensaverFrame::KDEScreensaverFrame(unsigned long id) : KScreenSaver(id), saver(nullptr) {}

KDEScreensaverFrame::~KDEScreensaverFrame() {
    // A later saver may have embedded the same frame meanwhile; then it is no longer ours.
    if (saver && saver->parentWidget() == this) {
        saver->close(false);
        saver->setParent(nullptr);
    }
    saver = nullptr;
}

void KDEScreensaverFrame::init(KDEFrame* frame) {
    setBackgroundColor(Qt::black);
    erase();
    saver = frame;
    embed(saver);
    saver->show();
}
