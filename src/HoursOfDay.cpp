#include "HoursOfDay.h"

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "TwoPictures.h"
#include "system/Bitmap.h"

namespace {

constexpr auto PICTURE = TEXTURE_FLAG(QUALITY_NORMAL | WRAP_REPEAT);
constexpr TINT WHITE{1, 1, 1};
constexpr TINT NOON_FOG{0.12109375f, 0.58984375f, 0.70703125f};

/// Hours of the sun per millisecond that a jump of the clock is followed with.
constexpr double HASTE = 0.002;
/// Hours of the sun from one light to the next that is applied: a few seconds, far below what
/// would show as a step.
constexpr double GRAIN = 0.001;

/// How much smaller than the others the second glints on the path are.
constexpr float FINER = 1.6f;

/// The path slants and narrows towards the eye, and ends before its picture does; nothing of it
/// lies outside of these, in parts of the picture's width at its far and its near edge, and of its
/// depth.
constexpr float PATH_FAR_LEFT = 0.115f, PATH_FAR_RIGHT = 0.43f;
constexpr float PATH_NEAR_LEFT = 0.46f, PATH_NEAR_RIGHT = 0.505f;
constexpr float PATH_END = 0.9f;

constexpr int FULL_CONTRAST = 32;  // steps

/// Degrees in which the evening rises over the noon's sky, and the night comes over the evening's:
/// as high as what both cost there allows, and the first is another pass.
constexpr float EVENING_BELT = 9, NIGHT_BELT = 8;

constexpr SKY_ROWS ALL_ROWS = SKY_ROWS(ROWS_BEFORE | ROWS_SHARED | ROWS_AFTER);

/// The shortest way round the day from one hour to another.
double way(double from, double to) { return std::remainder(to - from, 24); }

void setColour(RenderObject& object, TINT tint) {
    object.setRenderColor(GLColor(tint.r, tint.g, tint.b, 1));
}

/// What a picture is drawn with whose sea was painted for the one light, so that it suits the
/// other.
TINT relative(TINT light, TINT painted) {
    return {std::min(1.0f, light.r / painted.r), std::min(1.0f, light.g / painted.g),
            std::min(1.0f, light.b / painted.b)};
}

/// Gives a texture its 24-bit picture anew, with so many steps of its contrast; its mean stays.
void reload(const Texture& texture, const std::string& file, int contrast) {
    SDL_Surface* image = readBitmap(SDL_RWFromFile(file.c_str(), "rb"));
    if (!image)
        return;
    if (image->format->BytesPerPixel == 3) {
        auto* const pixels = static_cast<std::uint8_t*>(image->pixels);
        const int row = image->w * 3;
        long sum[3] = {};
        for (int y = 0; y < image->h; ++y)
            for (int x = 0; x < row; ++x)
                sum[x % 3] += pixels[y * image->pitch + x];
        for (long& channel : sum)
            channel /= long{image->w} * image->h;
        for (int y = 0; y < image->h; ++y)
            for (int x = 0; x < row; ++x) {
                std::uint8_t& value = pixels[y * image->pitch + x];
                const auto mean = static_cast<int>(sum[x % 3]);
                value = static_cast<std::uint8_t>(mean + (value - mean) * contrast / FULL_CONTRAST);
            }
        glBindTexture(GL_TEXTURE_2D, texture.id);
        // In its place, since this may happen in every tick.
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, image->w, image->h, GL_BGR, GL_UNSIGNED_BYTE,
                        pixels);
    }
    SDL_FreeSurface(image);
}

}  // namespace

void HoursOfDay::loadPicture(Texture& texture, const std::string& file) {
    const bool complete = texture.loadBMP(file.c_str(), PICTURE) && texture.has_image;
    if (!complete && missing.empty())
        missing = file;
}

void HoursOfDay::load(const std::function<std::string(const char*)>& file, bool cloudy) {
    on = true;
    loadPicture(sky_evening, file(cloudy ? "hours/evening_cloudy.nlt" : "hours/evening_clear.nlt"));
    loadPicture(sky_night, file(cloudy ? "hours/night_cloudy.nlt" : "hours/night_clear.nlt"));
    loadPicture(path, file("hours/path.nlt"));
    band.addTexture(&sky_evening);
    twilight.addTexture(&sky_evening);
    twilight.addTexture(&sky_night);
}

void HoursOfDay::addScenery(TexturedQuad& quad, const std::string& evening,
                            const std::string& night) {
    SCENERY& scenery = sceneries.emplace_back();
    scenery.quad = &quad;
    const TEXTURE_ROWS shown = loadScenery(scenery.evening, evening);
    loadScenery(scenery.night, night);
    scenery.single = quad;
    if (!shown.empty())
        scenery.single.setRows(static_cast<float>(shown.first), static_cast<float>(shown.last));
    scenery.both = scenery.single;
    scenery.both.addTexture(&scenery.evening);
}

TEXTURE_ROWS HoursOfDay::loadScenery(Texture& texture, const std::string& file) {
    SDL_Surface* const image = readBitmap(SDL_RWFromFile(file.c_str(), "rb"));
    if (!image) {
        loadPicture(texture, file);  // says so
        return {};
    }
    const TEXTURE_ROWS shown = shownRows(*image);
    SDL_Surface loaded = *image;
    const int half = image->h / 2;
    const int last = static_cast<int>(std::lround(shown.last * image->h));
    const int first = std::min(half, static_cast<int>(std::lround(shown.first * image->h)));
    // Its first row and its last one are empty. As textures repeat, one of them will do.
    if (!shown.empty() && image->h % 2 == 0 && last - first - 1 <= half) {
        loaded.pixels = static_cast<std::uint8_t*>(image->pixels) + first * image->pitch;
        loaded.h = half;
        texture.setTileFactor_Y(2);
        texture.setOffset(0, -static_cast<float>(first) / static_cast<float>(half));
    }
    texture.load(loaded, file.c_str(), PICTURE);
    SDL_FreeSurface(image);
    if (!texture.has_image && missing.empty())
        missing = file;
    return shown;
}

void HoursOfDay::addCaustics(Texture& frame, const std::string& file) {
    frames.push_back({&frame, file, FULL_CONTRAST});
}

void HoursOfDay::setGlints(TexturedQuad& quad) {
    glints = &quad;
    glints_all_over = quad.textures[0];
}

void HoursOfDay::cleanup() {
    for (Texture* texture : {&sky_evening, &sky_night, &path})
        texture->cleanup();
    for (SCENERY& scenery : sceneries) {
        scenery.evening.cleanup();
        scenery.night.cleanup();
    }
    // The scene's own textures go with the scene.
    frames.clear();
    on = false;
}

bool HoursOfDay::update(const LOCAL_TIME& clock, int latitude, unsigned elapsed, bool unseen) {
    const double wanted = sunHour(clock.minute, latitude, clock.day);
    if (hour < 0 || unseen) {
        hour = wanted;
    } else {
        const double step = HASTE * elapsed;
        hour = std::fmod(hour + std::clamp(way(hour, wanted), -step, step) + 24, 24);
    }
    const bool changed = applied < 0 || std::fabs(way(applied, hour)) >= GRAIN;
    if (changed) {
        now = lightAt(hour);
        apply();
    }
    // All at once only where no picture waits for it.
    setContrast(unseen || applied < 0);
    if (changed)
        applied = hour;
    return changed;
}

void HoursOfDay::apply() {
    for (RenderObject* object : above)
        setColour(*object, now.above);
    for (RenderObject* object : under)
        setColour(*object, now.under);
    for (RenderObject* object : sea)
        setColour(*object, now.sea);
    if (glints) {
        // The maps change places while no glint is to be seen.
        glints->setTexture(showsPath() ? &path : glints_all_over, 0);
        if (showsPath())
            glints->setTaperedPart(PATH_FAR_LEFT, PATH_FAR_RIGHT, PATH_NEAR_LEFT, PATH_NEAR_RIGHT);
        else
            glints->setPart(0, 1);
        glints->setRows(0, showsPath() ? PATH_END : 1);
        setColour(*glints, now.sparkle);
        glints->setAlpha(now.glints * std::fabs(1 - 2 * now.path));
    }
}

void HoursOfDay::setContrast(bool all) {
    const int wanted = static_cast<int>(std::lround(now.caustics * FULL_CONTRAST));
    for (FRAME& frame : frames) {
        if (frame.contrast == wanted)
            continue;
        frame.contrast = wanted;
        if (frame.texture->loaded)
            reload(*frame.texture, frame.file, wanted);
        if (!all)
            return;
    }
}

SKY_CHANGE HoursOfDay::eveningComes() const { return {now.evening, EVENING_BELT, true}; }
SKY_CHANGE HoursOfDay::nightComes() const { return {now.night, NIGHT_BELT}; }

float HoursOfDay::noonSkyBegins() const {
    return on && now.evening > 0 ? eveningComes().lower() : SKY_AHEAD::BOTTOM;
}

void HoursOfDay::colourFog() const {
    if (!on)
        return;
    const GLfloat fog[] = {NOON_FOG.r * now.sea.r, NOON_FOG.g * now.sea.g, NOON_FOG.b * now.sea.b,
                           1};
    glFogfv(GL_FOG_COLOR, fog);
}

void HoursOfDay::prepareEvening(const GLVector3& eye) {
    band.setPosition(eye.x, eye.y, -eye.z);
    band.sky = now.glow;
    band.sea = relative(now.sea, lightAt(EVENING_PICTURE).sea);
    band.mist = now.mist;
    band.change = now.night > 0 ? nightComes() : eveningComes();
}

void HoursOfDay::renderSky(const GLVector3& eye) {
    if (!on || now.evening <= 0)
        return;
    prepareEvening(eye);
    if (now.night <= 0) {
        renderBand(sky_evening, ROWS_AFTER, false);
        return;
    }
    if (now.night < 1) {
        renderBand(sky_evening, twilight.multiTexturing ? ROWS_BEFORE : ALL_ROWS, false);
        if (twilight.multiTexturing) {
            twilight.setPosition(eye.x, eye.y, -eye.z);
            twilight.sky = band.sky;
            twilight.sea = band.sea;
            twilight.change = band.change;
            twilight.rows = ROWS_SHARED;
            twilight.render();
        }
    }
    band.sky = WHITE;
    band.sea = relative(now.sea, lightAt(NIGHT_PICTURE).sea);
    if (now.night < 1 && !twilight.multiTexturing)
        renderBand(sky_night, ROWS_SHARED, true);
    renderBand(sky_night, ROWS_AFTER, false);
}

void HoursOfDay::renderSkyOverNoon(const GLVector3& eye) {
    if (!on || now.evening <= 0 || now.evening >= 1)
        return;
    prepareEvening(eye);
    renderBand(sky_evening, ROWS_SHARED, true);
}

void HoursOfDay::renderBand(Texture& picture, SKY_ROWS rows, bool blending) {
    band.setTexture(&picture, 0);
    band.rows = rows;
    band.enableAlphaBlending(blending);
    band.render();
}

void HoursOfDay::renderGlints(TexturedQuad& quad, Texture& other_frame) {
    quad.render();
    if (!showsPath())
        return;
    Texture* const frame = quad.textures[1];
    const float scale = quad.texturescales[1];
    quad.setTexture(&other_frame, 1);
    quad.scaleTextureInLayer(1, scale * FINER);
    quad.render();
    quad.setTexture(frame, 1);
    quad.scaleTextureInLayer(1, scale);
}

void HoursOfDay::renderScenery(TexturedQuad& quad) {
    const auto found = std::find_if(sceneries.begin(), sceneries.end(),
                                    [&](const SCENERY& one) { return one.quad == &quad; });
    if (!on || now.evening <= 0 || found == sceneries.end()) {
        quad.render();
        return;
    }
    const LAYER noon{quad.textures[0], now.above, 1};
    const LAYER evening{&found->evening, now.glow, now.evening};
    const LAYER night{&found->night, WHITE, now.night};
    // The night's comes over the whole of the evening's.
    if (now.night <= 0)
        renderLayers(*found, noon, evening);
    else
        renderLayers(*found, evening, night);
}

void HoursOfDay::renderLayers(SCENERY& scenery, const LAYER& under, const LAYER& over) {
    if (over.share > 0 && over.share < 1 && scenery.both.multiTexturing) {
        TexturedQuad& both = scenery.both;
        both.setTexture(under.picture, 0);
        both.setTexture(over.picture, 1);
        both.preRender();
        const TINT colour = coverByShare(under.tint, over.tint, over.share);
        glColor4f(colour.r, colour.g, colour.b, 1);
        both.renderMesh();
        both.postRender();
        return;
    }
    for (const LAYER* layer : {&under, &over}) {
        if (layer->share <= 0 || (layer == &under && over.share >= 1))
            continue;
        TexturedQuad& single = scenery.single;
        single.setTexture(layer->picture, 0);
        setColour(single, layer->tint);
        single.setAlpha(layer->share);
        single.render();
    }
}
