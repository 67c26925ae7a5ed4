// Makes the small pictures of the settings dialog.
//
//     portraits DATA OUT                               one card for every kind of animal
//     portraits --cut IN.png OUT.png X,Y,W,H WxH       a part of a picture, scaled to a card
//     portraits --jpeg IN.png OUT.jpg                  a picture, much smaller
//
// A model that cannot be loaded leaves its card with water or sky only.
#include <GL/gl.h>

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "frame_boxes.h"
#include "offscreen.h"
#include "system/ModelCore.h"
#include "system/QModel.h"
#include "system/Texture.h"

namespace {

/// Cards are drawn this many times larger and then scaled down.
constexpr int OVERSAMPLING = 4;
/// Part of a card's width and height that the animal fills at most.
constexpr double FILL = 0.88;

struct BACKDROP {
    float top[3], bottom[3];
};
constexpr BACKDROP WATER = {{0.24f, 0.70f, 0.80f}, {0.07f, 0.40f, 0.58f}};
constexpr BACKDROP SKY = {{0.22f, 0.50f, 0.82f}, {0.70f, 0.86f, 0.93f}};

struct PORTRAIT {
    const char* card;
    const char* model;    ///< below the data directory
    const char* texture;  ///< below the data directory
    int frame;
    float heading, height;  ///< turn and tilt towards the viewer, degrees
    int width, high;        ///< pixels
    BACKDROP backdrop;
};

// The nose points to the left, as far towards the viewer as shows the animal best.
constexpr int W = 120, H = 66, WIDE = 220, HIGH = 120;
constexpr PORTRAIT PORTRAITS[] = {
    {"boid1", "models/reeffishes/silverfish.nlm", "models/reeffishes/silverfish.nlt", 0, 75, 8,
     WIDE, HIGH, WATER},
    {"boid2", "models/reeffishes/rfish.nlm", "models/reeffishes/anglefish.nlt", 0, 75, 8, WIDE,
     HIGH, WATER},
    {"fish1", "models/reeffishes/rfish.nlm", "models/reeffishes/rotfish.nlt", 0, 75, 8, W, H,
     WATER},
    {"fish2", "models/reeffishes/rfish.nlm", "models/reeffishes/blaugelbfish.nlt", 0, 75, 8, W, H,
     WATER},
    {"fish3", "models/reeffishes/moorishidol.nlm", "models/reeffishes/moorishidol.nlt", 0, 75, 8, W,
     H, WATER},
    {"fish4", "models/reeffishes/swpfish.nlm", "models/reeffishes/swpfish.nlt", 20, 75, 8, W, H,
     WATER},
    {"fish5", "models/reeffishes/gsbfish.nlm", "models/reeffishes/gsbfish.nlt", 0, 75, 8, W, H,
     WATER},
    {"fish6", "models/reeffishes/ybig.nlm", "models/reeffishes/ybig.nlt", 0, 75, 8, W, H, WATER},
    {"fish7", "models/reeffishes/rbig.nlm", "models/reeffishes/rbig.nlt", 0, 75, 8, W, H, WATER},
    {"fish8", "models/manta.nlm", "models/manta.nlt", 0, 35, 40, W, H, WATER},
    {"gull", "models/gull.nlm", "models/gull.nlt", 0, 50, 30, 480, 256, SKY},
};

void drawBackdrop(const BACKDROP& backdrop) {
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glBegin(GL_QUADS);
    glColor3fv(backdrop.bottom);
    glVertex2f(-1, -1);
    glVertex2f(1, -1);
    glColor3fv(backdrop.top);
    glVertex2f(1, 1);
    glVertex2f(-1, 1);
    glEnd();
    glColor3f(1, 1, 1);
}

/// Sets a view that shows one frame of the model as large as the card allows; its floor is where
/// the animal ends below, its shadow lies deeper.
void frameModel(const QModel& model, int frame, float floor, float heading, float height,
                double aspect) {
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glRotatef(height, 1, 0, 0);
    glRotatef(heading, 0, 1, 0);
    float m[16];
    glGetFloatv(GL_MODELVIEW_MATRIX, m);
    double low[3] = {1e9, 1e9, 1e9}, high[3] = {-1e9, -1e9, -1e9};
    for (int i = 0; i < model.NumVerts; ++i) {
        const GLVector3& v = model.framedata[frame].vertices[i].pos;
        if (v.y < floor)
            continue;
        for (int axis = 0; axis < 3; ++axis) {
            const double value = m[axis] * v.x + m[4 + axis] * v.y + m[8 + axis] * v.z;
            low[axis] = std::min(low[axis], value);
            high[axis] = std::max(high[axis], value);
        }
    }
    const double half = std::max((high[1] - low[1]) / 2, (high[0] - low[0]) / 2 / aspect) / FILL;
    const double x = (low[0] + high[0]) / 2, y = (low[1] + high[1]) / 2;
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glOrtho(x - half * aspect, x + half * aspect, y - half, y + half, -high[2] - 1, -low[2] + 1);
    glMatrixMode(GL_MODELVIEW);
}

QImage toImage(const Picture& picture) {
    return QImage(picture.rgb.data(), picture.width, picture.height, picture.width * 3,
                  QImage::Format_RGB888)
        .copy();
}

/// Scales to a card with round corners.
bool saveCard(const QImage& image, const QSize& size, const std::string& path) {
    QImage card(size, QImage::Format_ARGB32_Premultiplied);
    card.fill(Qt::transparent);
    QPainter painter(&card);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(card.rect()), 10, 10);
    painter.fillPath(outline,
                     QBrush(image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)));
    painter.end();
    return card.save(QString::fromStdString(path), "PNG");
}

bool makePortrait(const PORTRAIT& portrait, const std::string& data, const std::string& out) {
    const int width = portrait.width * OVERSAMPLING, height = portrait.high * OVERSAMPLING;
    OffscreenContext context(width, height);
    if (!context.ok()) {
        std::fprintf(stderr, "portraits: no OpenGL context\n");
        return false;
    }
    glViewport(0, 0, width, height);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    drawBackdrop(portrait.backdrop);

    QModel model;
    Texture texture;
    if (model.loadMD3((data + portrait.model).c_str()) &&
        texture.loadBMP((data + portrait.texture).c_str(), QUALITY_NORMAL | WRAP_REPEAT)) {
        // An animation of one frame holds that frame still.
        model.addAnimation(portrait.frame, portrait.frame, "still");
        model.setAnimation("still");
        ModelCore animal;
        animal.setModel(&model);
        animal.addTexture(&texture);
        animal.enableAlphaBlending(true);
        glClear(GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        glDepthFunc(GL_LEQUAL);
        const int frame = std::min(portrait.frame, model.NumFrames - 1);
        const std::vector<FrameBox> boxes = readFrameBoxes((data + portrait.model).c_str());
        const bool known = static_cast<size_t>(frame) < boxes.size();
        const float floor = known ? boxes[static_cast<size_t>(frame)].low[1] - 0.1f : -1e9f;
        frameModel(model, frame, floor, portrait.heading, portrait.height,
                   static_cast<double>(width) / height);
        animal.render();
    }
    const bool saved = saveCard(toImage(context.read()), QSize(portrait.width, portrait.high),
                                out + "/" + portrait.card + ".png");
    model.cleanup();
    texture.cleanup();
    return saved;
}

bool cut(const char* in, const char* out, const char* part, const char* size) {
    int x, y, w, h, width, height;
    if (std::sscanf(part, "%d,%d,%d,%d", &x, &y, &w, &h) != 4 ||
        std::sscanf(size, "%dx%d", &width, &height) != 2)
        return false;
    const QImage image{QString::fromLocal8Bit(in)};
    return !image.isNull() && saveCard(image.copy(x, y, w, h), QSize(width, height), out);
}

}  // namespace

int main(int count, char** arguments) {
    if (count == 6 && std::strcmp(arguments[1], "--cut") == 0) {
        if (cut(arguments[2], arguments[3], arguments[4], arguments[5]))
            return 0;
        std::fprintf(stderr, "portraits: cannot make %s\n", arguments[3]);
        return 1;
    }
    if (count == 4 && std::strcmp(arguments[1], "--jpeg") == 0) {
        if (QImage(QString::fromLocal8Bit(arguments[2])).save(arguments[3], "JPEG", 80))
            return 0;
        std::fprintf(stderr, "portraits: cannot make %s\n", arguments[3]);
        return 1;
    }
    if (count != 3) {
        std::fprintf(stderr,
                     "usage: portraits DATA OUT | --cut IN.png OUT.png X,Y,W,H WxH | "
                     "--jpeg IN.png OUT.jpg\n");
        return 2;
    }
    for (const PORTRAIT& portrait : PORTRAITS)
        if (!makePortrait(portrait, arguments[1], arguments[2])) {
            std::fprintf(stderr, "portraits: cannot make %s\n", portrait.card);
            return 1;
        }
    return 0;
}
