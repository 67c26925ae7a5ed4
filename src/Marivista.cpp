#include "Marivista.h"

#include <GL/glu.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include "Globals.h"
#include "Proportions.h"
#include "system/Loudness.h"

namespace {

/// Frames of each of the texture animations, and how long each frame shows.
constexpr int ANIMATION_FRAMES = 32;
constexpr Uint32 ANIMATION_FRAME_MS = 50;

/// More milliseconds after a picture are no frame but time that nobody has seen: the process was
/// stopped, the machine asleep, or the clock, which may follow that on the wall, was set back. One
/// picture a second, and a slow machine with a large one, stay well below.
constexpr Uint32 LONGEST_FRAME = 3000;
/// The same after a tick that became no picture: whoever ticks without drawing may do so slowly.
constexpr Uint32 LONGEST_TICK = 600000;

constexpr double NEAR_PLANE = 0.1;
constexpr double FAR_PLANE = 1000;

/// From left to right, around x = 0, world units.
constexpr float SKYFLAT_WIDTH = 140;
constexpr float FLOOR_WIDTH = 60;
constexpr float FADER_WIDTH = 60;
constexpr float WATER_WIDTH = 50;
constexpr float HIGHLIGHT_WIDTH = 50;

void playAnimation(QModel& model, const char* name, int last, float fps) {
    model.addAnimation(0, last, name);
    model.setFPS(fps);
}

/// The same along every axis unless three are given.
struct SCALE {
    SCALE(float all) : x(all), y(all), z(all) {}
    SCALE(float x, float y, float z) : x(x), y(y), z(z) {}
    float x, y, z;
};

/// Two layers: the thing's own picture and the first frame of a caustics animation over it.
void addCausticTextures(RenderObject& object, Texture& picture, Texture& caustics, float scale) {
    object.addTexture(&picture);
    object.addTexture(&caustics);
    object.scaleTextureInLayer(1, scale);
}

/// Elapsed milliseconds since a tick count, right across the wrap of the 32-bit count.
Sint64 since(Uint32 start, Uint32 now) { return static_cast<Uint32>(now - start); }

void limitFish(int* count, const char* key) {
    if (*count > MAX_FISH) {
        std::printf("%s %d is more than %d, running with %d\n", key, *count, MAX_FISH, MAX_FISH);
        *count = MAX_FISH;
    }
}

/// Seconds of rest as milliseconds, kept within the range of an int: a product that overflows would
/// end a long rest at once.
int saturatedSeconds(int seconds) {
    constexpr int limit = 2000000;
    return (seconds > limit ? limit : seconds < -limit ? -limit : seconds) * 1000;
}

}  // namespace

CMarivistaScreensaver::CMarivistaScreensaver() : BASECLASS(nullptr, nullptr) {
    std::strcpy(strRegPath, "Software\\Orvo\\Screensavers\\Atollia");
    std::strcpy(strProjectName, "Orvo Atollia");
    getModulePath(dataPath, sizeof dataPath);
    std::strcat(dataPath, "Atollia/");
    std::srand(static_cast<unsigned>(std::time(nullptr)));
    fpsstr[0] = '\0';
    timer = gulltimer = cameratimer = sceneTicks();
    bird_gull = wantedwssettings.bird_gull;
    language.setLanguage(DEFAULT_LANGUAGE);
    language.openFile(dataFile("Language.dat").c_str());
    soundtimer.set(20000, 30000);
}

bool CMarivistaScreensaver::releaseGL() { return true; }
bool CMarivistaScreensaver::doConfig() { return true; }
bool CMarivistaScreensaver::resetEvents() { return true; }

bool CMarivistaScreensaver::processSDLEvents(SDL_Event* event) {
    return BASECLASS::processSDLEvents(event);
}

// ---------------------------------------------------------------------------------------------
// Settings

bool CMarivistaScreensaver::readSettings() {
    if (!openSettingsFile(strRegPath, strProjectName))
        return true;
    for (const SETTING& setting : settings_read)
        if (setting.number)
            wantedwssettings.*setting.number =
                readInt(setting.key, wantedwssettings.*setting.number);
        else
            wantedwssettings.*setting.flag = readBool(setting.key, wantedwssettings.*setting.flag);
    closeSettingsFile();
    return true;
}

bool CMarivistaScreensaver::writeSettings() {
    if (!openSettingsFile(strRegPath, strProjectName))
        return true;
    for (const SETTING& setting : settings_written)
        writeInt(setting.key, setting.number ? wantedwssettings.*setting.number
                                             : int(wantedwssettings.*setting.flag));
    closeSettingsFile();
    return true;
}

void CMarivistaScreensaver::readExtraSettings() {
    if (!openSettingsFile(strRegPath, strProjectName))
        return;
    for (const EXTRA_SETTING& setting : extra_settings)
        extras.*setting.field =
            std::clamp(readInt(setting.key, extras.*setting.field), setting.low, setting.high);
    closeSettingsFile();
}

// ---------------------------------------------------------------------------------------------
// Start

double CMarivistaScreensaver::aspect() const {
    return static_cast<double>(resolution_x) / (resolution_y > 0 ? resolution_y : 1);
}

bool CMarivistaScreensaver::initGL() {
    glEnable(GL_TEXTURE_2D);
    glShadeModel(GL_SMOOTH);
    glClearColor(0, 0, 0, 1);
    glClearDepth(1.0);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glHint(GL_PERSPECTIVE_CORRECTION_HINT, GL_NICEST);

    glViewport(0, 0, resolution_x, resolution_y);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    gluPerspective(VIEW_ANGLE, std::min(aspect(), MAX_ASPECT), NEAR_PLANE, FAR_PLANE);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();

    const GLfloat fog_colour[] = {0.12109375f, 0.58984375f, 0.70703125f, 1.0f};
    glFogfv(GL_FOG_COLOR, fog_colour);
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, 25.0f);
    glFogf(GL_FOG_END, 50.0f);
    return true;
}

void CMarivistaScreensaver::setViewSize(int width, int height) {
    resolution_x = width;
    resolution_y = height;
    initGL();
    fpstext.setScreensize(width, height);
}

struct CMarivistaScreensaver::PICTURE {
    Texture& texture;
    std::string name;
    TEXTURE_FLAG flags = TEXTURE_FLAG(QUALITY_NORMAL | WRAP_REPEAT);
};

// In the order in which they are loaded.
std::vector<CMarivistaScreensaver::PICTURE> CMarivistaScreensaver::pictures() {
    std::vector<PICTURE> list = {
        {tex_sky, wantedwssettings.skytype == 0 ? "sky_cloudy.nlt"
                  : colordepth == 32            ? "sky_clear_32.nlt"
                                                : "sky_clear_16.nlt"},
        {tex_gull, "models//gull.nlt"},
        {tex_manta, "models//manta.nlt"},
        {tex_terrain, "terrain.nlt"},
        {tex_coral_a, "models//coral_a.nlt"},
        {tex_coral_b, "models//coral_b.nlt"},
        {tex_coral_c, "models//coral_c.nlt"},
        {tex_coral_d, "models//coral_d.nlt"},
        {tex_coral_f, "models//coral_f.nlt"},
        {tex_coral_g, "models//coral_g.nlt"},
        {tex_coral_h, "models//coral_h.nlt"},
        {tex_coral_i, "models//coral_i.nlt"},
        {tex_water, "water.nlt"},
        {tex_gwfader, "gwfader.nlt"},
        {tex_rock2, "models//rock2.nlt"},
        {tex_island, "island.nlt"},
    };
    const auto addFrames = [&list](Texture(&frames)[ANIMATION_FRAMES], const char* pattern,
                                   int first, TEXTURE_FLAG flags) {
        for (int i = 0; i < ANIMATION_FRAMES; ++i) {
            char name[64];
            std::snprintf(name, sizeof name, pattern, first + i);
            list.push_back({frames[i], name, flags});
        }
    };
    const auto caustics = TEXTURE_FLAG(QUALITY_NORMAL | WRAP_REPEAT);
    addFrames(tex_caustics, "caustics64/caust%.2d.nlt", 0, caustics);
    addFrames(tex_caustics_fish, "causticsfish32/caust%.2d.nlt", 0, caustics);
    addFrames(tex_highlight, "highlight/highlight%.5d.nlt", 44, QUALITY_FASTEST);
    for (const PICTURE& picture : std::initializer_list<PICTURE>{
             {tex_highlight_blend, "blendmap.nlt"},
             {tex_fish_blue, "models/reeffishes/blaugelbfish.nlt"},
             {tex_fish_red, "models/reeffishes/rotfish.nlt"},
             {tex_fish_moorishidol, "models/reeffishes/moorishidol.nlt"},
             {tex_fish_gsb, "models/reeffishes/gsbfish.nlt"},
             {tex_fish_swp, "models/reeffishes/swpfish.nlt"},
             {tex_fish_rbig, "models/reeffishes/rbig.nlt"},
             {tex_fish_ybig, "models/reeffishes/ybig.nlt"},
             {tex_fish_yellow, wantedwssettings.boidmodel != 0
                                   ? "models/reeffishes/anglefish.nlt"
                                   : "models/reeffishes/silverfish.nlt"},
         })
        list.push_back(picture);
    return list;
}

void CMarivistaScreensaver::sharpenSlants() {
    const auto* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
    if (!extensions || !std::strstr(extensions, "GL_EXT_texture_filter_anisotropic"))
        return;
    constexpr int EIGHTFOLD = 8;
    GLint most = 1;
    glGetIntegerv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &most);
    const auto sharpen = [factor = std::min(most, EIGHTFOLD)](const Texture& texture) {
        glBindTexture(GL_TEXTURE_2D, texture.id);
        glTexParameterf(GL_TEXTURE_2D, GL_TEXTURE_MAX_ANISOTROPY_EXT, static_cast<float>(factor));
    };
    for (const Texture* texture : {&tex_terrain, &tex_water, &tex_sky})
        sharpen(*texture);
    for (const Texture& texture : tex_caustics)
        sharpen(texture);
}

void CMarivistaScreensaver::loadTextures() {
    for (const PICTURE& picture : pictures()) {
        const std::string file = dataFile(picture.name.c_str());
        Texture& texture = picture.texture;
        note(texture.loadBMP(file.c_str(), picture.flags) && texture.has_image, file);
    }
}

void CMarivistaScreensaver::note(bool loaded, const std::string& file) {
    if (!loaded && missing.empty())
        missing = file;
}

void CMarivistaScreensaver::loadModels() {
    const SaverSettings& wanted = wantedwssettings;
    const struct {
        QModel& model;
        const char* name;
        bool needed;
    } models[] = {
        {gull_model, "models//gull.nlm", wanted.bird_gull},
        {manta_model, "models//manta.nlm", wanted.fish_manta},
        {coral_a_model, "models/coral_a.nlm", true},
        {coral_b_model, "models/coral_b.nlm", true},
        {coral_c_model, "models/coral_c.nlm", true},
        {coral_d_model, "models/coral_d.nlm", true},
        {coral_f_model, "models/coral_f.nlm", true},
        {coral_g_model, "models/coral_g.nlm", true},
        {coral_h_model, "models/coral_h.nlm", true},
        {coral_i_model, "models/coral_i.nlm", true},
        {yellowbigfish_model, "models/reeffishes/ybig.nlm", wanted.fish_big_grey},
        // The red one hangs on the grey one's key: without the grey one it has nothing to show.
        {redbigfish_model, "models/reeffishes/rbig.nlm", wanted.fish_big_grey},
        {fish_stripe_model, "models/reeffishes/moorishidol.nlm", wanted.fish_stripe},
        {fish_red_model, "models/reeffishes/rfish.nlm", wanted.fish_red},
        {fish_blue_model, "models/reeffishes/rfish.nlm", wanted.fish_blue},
        {fish_yell_blu_model, "models/reeffishes/gsbfish.nlm", wanted.fish_yell_blu},
        {crowd_model,
         wanted.boidmodel != 0 ? "models/reeffishes/rfish.nlm" : "models/reeffishes/silverfish.nlm",
         wanted.boidcount > 0},
        {hunter1_model, "models/reeffishes/swpfish.nlm", wanted.fish_dot},
    };
    for (const auto& model : models) {
        if (!model.needed)
            continue;
        const std::string file = dataFile(model.name);
        note(model.model.loadMD3(file.c_str()), file);
    }
}

bool CMarivistaScreensaver::initScene() {
    const SceneClock::Running running(clock);
    limitFish(&wantedwssettings.boidcount, "BoidCount");
    limitFish(&wantedwssettings.fishcount, "FishCount");
    fpstext.setRenderColor(GLColor(1, 1, 1, 1));
    fpstext.setScreensize(resolution_x, resolution_y);
    fpstext.setFontfile(dataFile("font.nlf").c_str());
    initSound();
    loadTextures();
    loadModels();
    initCamera();
    bird_gull = wantedwssettings.bird_gull;
    if (bird_gull)
        initGull();
    initSchoolLeader();

    // The single fish share one budget, first come, first served; the reef fish get what is left.
    int budget = wantedwssettings.fishcount;
    const auto takes = [&budget](bool wanted) {
        const bool has_room = wanted && budget > 0;
        budget -= has_room;
        return has_room;
    };
    if (takes(wantedwssettings.fish_manta))
        initManta();
    if (takes(wantedwssettings.fish_dot))
        initHunter();
    if (takes(wantedwssettings.fish_big_grey))
        initBigFish(yellowbigfish, yellowbigfish_model, tex_fish_ybig, 0.05f, 8);
    if (takes(wantedwssettings.fish_big_red))
        initBigFish(redbigfish, redbigfish_model, tex_fish_rbig, 0.07f, 5);
    initBigFishRoute();
    if (budget > 0)
        initReefFish(budget);

    initSchool();
    initSky();
    initSeaFloor();
    initCorals();
    initWaterAndQuads();
    if (draw_in_rows) {
        fader_covers = opaqueRows(dataFile("gwfader.nlt").c_str());
        sparkle_shows = shownRows(dataFile("blendmap.nlt").c_str());
    }

    const GLVector3 leader = vegetarian1.getPositionVector();
    fishsteering.setTargetPoint(leader.x, leader.y, leader.z);
    fishsteering.init();
    soundtimer.reset();
    if (extras.daytime) {
        initHours();
        followHours(true);
    }
    return true;
}

void CMarivistaScreensaver::initSound() {
    if (!wantedwssettings.soundOn)
        return;
    sound = new Sound;
    sound->initialize();
    // A device that is opened anew is as loud as it can be.
    loudness = wantedLoudness(localTime());
    setLoudness(loudness);
    sound->loadMusic(dataFile("sound/water.wav").c_str());
    sound->playMusic();
    const char* const calls[] = {"sound/seagull1.wav", "sound/seagull2.wav", "sound/seagull3.wav",
                                 "sound/seagull4.wav"};
    for (int id = 0; id < 4; ++id)
        sound->loadSound(dataFile(calls[id]).c_str(), id);
}

void CMarivistaScreensaver::initCamera() {
    camera.set(0, 2, -7, 0, 0, 1, 0, 1, 0);
    switch (wantedwssettings.camerapos) {
        case 0:
            autocameramove = true;
            break;
        case 1:
            camera.pitch(CAMERA_TOP_PITCH);
            break;
        case 2:
            camera.pitch(CAMERA_MIDDLE_PITCH);
            break;
        case 3:
            camera.pitch(CAMERA_LOW_PITCH);
            break;
        default:
            break;
    }
}

void CMarivistaScreensaver::initGull() {
    gull.setModel(&gull_model);
    gull.addTexture(&tex_gull);
    gull.removeFlags(WORLD_POSITIONING);
    gull.scale(0.05f);
    gull.setPosition(0, 5.5f, 0);
    gull_model.addAnimation(0, 19, "glide");
    gull_model.addAnimation(23, 42, "fly");
    gull_model.setAnimation("fly");
    gull_model.setFPS(20);
    gulltrack.setRenderObject(&gull);
    for (int round = 0; round < 2; ++round) {
        addGullWaypoints(gullreverseflight);
        gullreverseflight = !gullreverseflight;
    }
    gulltrack.setStartpointIndex(0);
    gulltrack.setSpeed(0.005f);
    gulltrack.setMaxRollStep(0.6f);
}

void CMarivistaScreensaver::initSchoolLeader() {
    vegetarian1.setModel(&crowd_model);
    addCausticTextures(vegetarian1, tex_fish_yellow, tex_caustics_fish[0], 0.4f);
    vegetarian1.scale(0.02f);
    vegetarian1.removeFlags(WORLD_POSITIONING);
    const float x = randomf(-4, 3, 2);
    const float z = randomf(3, 17, 2);
    vegetarian1.setPositionVector(x, -3.5f, z);
    vegetarian1.setViewVector(x + 1, -3.5f, z + 1);
    vegetarian1.enableAlphaBlending(true);
    vmove1.setModel(&vegetarian1);
    vmove1.init();
}

void CMarivistaScreensaver::initManta() {
    manta.setModel(&manta_model);
    manta.addTexture(&tex_manta);
    manta.scale(0.07f);
    manta.setPosition(-17, -5, 4);
    playAnimation(manta_model, "swim", 19, 6);
    mantatrack.setRenderObject(&manta);
    for (int round = 0; round < 2; ++round) {
        addMantaWaypoints(mantareverse);
        mantareverse = !mantareverse;
    }
    mantatrack.setStartpointIndex(0);
    mantatrack.setSpeed(0.0017f);
    mantatrack.setMovement(MOVE_SPLINE);
    mantatrack.setRollFactor(5.0f);
}

void CMarivistaScreensaver::initHunter() {
    hunter1.setModel(&hunter1_model);
    hunter1_model.addAnimation(20, 39, "swim");
    hunter1_model.setFPS(12);
    addCausticTextures(hunter1, tex_fish_swp, tex_caustics_fish[0], 0.4f);
    hunter1.scale(0.02f);
    hunter1.removeFlags(WORLD_POSITIONING);
    const float x = randomf(-4, -1, 2);
    const float z = randomf(3, 17, 2);
    hunter1.setPositionVector(x, -4.2f, z);
    hunter1.setViewVector(x - 1, -4.2f, z);
    hunter1.enableAlphaBlending(true);

    huntmove1.setModel(&hunter1);
    SingleMovementSettings& settings = huntmove1.settings;
    settings.height = -4.2f;
    settings.normal_max_speed = 0.0009f;
    settings.speed_animation_factor = 30000;
    settings.max_speed_change = 0.000003f;
    settings.hunter = wantedwssettings.boidcount > 0;
    huntmove1.fishboid = &fishsteering;
    settings.area_center.set(-4, 5.5f);
    settings.variablespeed = true;
    settings.max_speed_change = 0.000001f;  // The second value is the one that the hunter keeps.
    settings.turn_animation = false;
    huntmove1.init();
}

void CMarivistaScreensaver::initBigFish(ModelCore& big, QModel& model, Texture& picture,
                                        float scale, float fps) {
    big.setModel(&model);
    addCausticTextures(big, picture, tex_caustics_fish[0], 0.8f);
    big.scale(scale);
    playAnimation(model, "swim", 19, fps);
    big.enableAlphaBlending(true);
    bigfishmove.models.push_back(&big);
}

void CMarivistaScreensaver::initBigFishRoute() {
    const GLVector3 route[] = {{24, -6, 32}, {10, -6, 27}, {4, -6, 20},
                               {0, -6, 14},  {-2, -6, 9},  {-11, -6, 1}};
    bigfishmove.points.assign(std::begin(route), std::end(route));
    bigfishmove.init();
}

void CMarivistaScreensaver::initReefFish(int count) {
    const struct {
        bool wanted;
        QModel& model;
        float scale;
        Texture& texture;
    } all_species[] = {
        {wantedwssettings.fish_stripe, fish_stripe_model, 0.02f, tex_fish_moorishidol},
        {wantedwssettings.fish_red, fish_red_model, 0.02f, tex_fish_red},
        {wantedwssettings.fish_blue, fish_blue_model, 0.018f, tex_fish_blue},
        {wantedwssettings.fish_yell_blu, fish_yell_blu_model, 0.02f, tex_fish_gsb},
    };
    std::vector<int> species;
    for (int i = 0; i < 4; ++i)
        if (all_species[i].wanted)
            species.push_back(i);
    if (species.empty())
        return;

    playAnimation(fish_stripe_model, "swim", 19, 7);
    fish_red_model.addAnimation(0, 9, "swim");  // Keeps its default rate: it swims livelier.
    playAnimation(fish_blue_model, "swim", 9, 7);
    playAnimation(fish_yell_blu_model, "swim", 19, 7);

    numFish = count;
    fish = new ModelCore[static_cast<size_t>(count)];
    fishmove = new SingleFishMovement[static_cast<size_t>(count)];
    float facing = 1;
    for (int i = 0; i < count; ++i) {
        const auto& kind = all_species[species[static_cast<size_t>(i) % species.size()]];
        ModelCore& one = fish[i];
        one.setModel(&kind.model);
        one.scale(kind.scale);
        addCausticTextures(one, kind.texture, tex_caustics_fish[0], 0.4f);
        one.enableAlphaBlending(true);
        one.removeFlags(WORLD_POSITIONING);
        const float x = randomf(-5.5f, 6, 2);
        const float y = static_cast<float>(i % 3) * 0.6f - 3.0f;
        const float z = randomf(3, 21, 2);
        one.setPositionVector(x, y, z);
        one.setViewVector(x + facing, y, z);
        facing = -facing;

        SingleFishMovement& mover = fishmove[i];
        mover.setModel(&one);
        mover.settings.top_right.set(14, 25);
        mover.settings.bottom_right.set(5, 2);
        mover.fishboid = &fishsteering;
        mover.settings.area_center.set(-1, 8);
        mover.init();
    }
}

void CMarivistaScreensaver::initSchool() {
    if (wantedwssettings.boidcount <= 0)
        return;
    boidcount = wantedwssettings.boidcount;
    fishcrowd = new ModelCore[static_cast<size_t>(boidcount)];
    for (int i = 0; i < boidcount; ++i) {
        ModelCore& one = fishcrowd[i];
        one.setModel(&crowd_model);
        addCausticTextures(one, tex_fish_yellow, tex_caustics_fish[0], 0.4f);
        one.scale(0.015f);
        one.enableAlphaBlending(true);
        fishsteering.addFish(&one);
    }
    playAnimation(crowd_model, "swim", 9, 44);
}

void CMarivistaScreensaver::initSky() {
    sky.addTexture(&tex_sky);
    sky.init(SKY_PLANE);
    sky.setRotationSpeed(-0.75f);
    skyflat.setSize(SKYFLAT_WIDTH, 100);
    skyflat.setPosition(0, 45, 100);
    skyflat.addTexture(&tex_sky);
}

void CMarivistaScreensaver::initSeaFloor() {
    const std::string map = dataFile("terrain_map.nlt");
    note(terrain.loadBMP(map.c_str()), map);
    addCausticTextures(terrain, tex_terrain, tex_caustics[0], 5);
    terrain.setSize(FLOOR_WIDTH, 50);
    terrain.setHeightFactor(0.015f);
    terrain.setNumSegments(50);
    terrain.setPosition(0, -8, 0);
}

void CMarivistaScreensaver::initCorals() {
    // clang-format off
    const struct {
        QModel& model;
        int last_frame;
        float fps;
    } growths[] = {
        {coral_a_model,  9, 5},
        {coral_b_model, 19, 5},
        {coral_c_model, 19, 5},
        {coral_d_model, 19, 5},
        {coral_f_model,  9, 3},
        {coral_g_model,  9, 3},
        {coral_h_model,  9, 3},
        {coral_i_model,  9, 3},
    };
    const struct {
        ModelCore& coral;
        QModel& model;
        Texture& texture;
        GLVector3 position;
        GLVector3 rotation;  // Degrees about x, y and z.
        SCALE scale;
    } places[] = {
        {coral_a,    coral_a_model, tex_coral_a, { -2.8f, -5.4f, 20.2f}, {  0,   0,  0}, 1},
        {coral_b[0], coral_b_model, tex_coral_b, { -3.7f, -7.6f, 14.2f}, {-35, -45,  0}, 0.04f},
        {coral_b[1], coral_b_model, tex_coral_b, { -5,    -7.5f, 13.7f}, { 25, -15,  0}, 0.045f},
        {coral_b[2], coral_b_model, tex_coral_b, { -3.4f, -7.6f, 12.8f}, { 30,  40,  0}, 0.03f},
        {coral_c,    coral_c_model, tex_coral_c, { -8.9f, -6.2f, 19.2f}, { 30, -10,  0}, 0.04f},
        {coral_d[0], coral_d_model, tex_coral_d, { -5.6f, -7.4f, 15   }, {  0,  45,  0}, 0.05f},
        {coral_d[1], coral_d_model, tex_coral_d, {-11.6f, -5.6f, 15   }, {  0,  45,  0}, {0.04f, 0.02f, 0.04f}},
        {coral_f,    coral_f_model, tex_coral_f, {-10,    -6,    20.2f}, {-30,  40, 25}, 1},
        {coral_g,    coral_g_model, tex_coral_g, {  0,    -7,    25.2f}, {  0,   0,  0}, 1},
        {coral_h,    coral_h_model, tex_coral_h, {  7,    -7.2f, 22   }, {  0,   0, 10}, {1,     0.5f,  1}},
        {coral_i,    coral_i_model, tex_coral_i, { 11,    -7,    18.4f}, { 12,  15, -5}, {1.2f,  1.4f,  1.3f}},
    };
    // clang-format on

    for (const auto& growth : growths)
        playAnimation(growth.model, "wabbel", growth.last_frame, growth.fps);
    for (const auto& place : places) {
        place.coral.setModel(&place.model);
        place.coral.addTexture(&place.texture);
        place.coral.setPosition(place.position);
        place.coral.rotateX(place.rotation.x);
        place.coral.rotateY(place.rotation.y);
        place.coral.rotateZ(place.rotation.z);
        place.coral.scale(place.scale.x, place.scale.y, place.scale.z);
        place.coral.enableAlphaBlending(true);
    }
    coral_h.scaleTextureInLayer(0, 3);
}

void CMarivistaScreensaver::initWaterAndQuads() {
    island.setSize(30, 30);
    island.setPosition(16, 4, 44);
    island.addTexture(&tex_island);
    island.enableAlphaBlending(true);

    rock2.setSize(10, 12);
    rock2.setPosition(-31.7f, 4, 60);
    rock2.rotateY(30);
    rock2.addTexture(&tex_rock2);
    rock2.enableAlphaBlending(true);

    water.addTexture(&tex_water);
    water.setPosition(0, 0, 20);
    water.setXRotation(-90);
    water.initialize(WATER_WIDTH, 50, 50, 50);
    water.enableAlphaBlending(true);

    highlight.setSize(HIGHLIGHT_WIDTH, 40);
    highlight.setPosition(0, 0.2f, 15);
    highlight.setXRotation(-90);
    highlight.addTexture(&tex_highlight_blend);
    highlight.addTexture(&tex_highlight[0]);
    highlight.scaleTextureInLayer(1, 12);
    highlight.enableAlphaBlending(true);

    gwfader.setSize(FADER_WIDTH, 14);
    gwfader.setPosition(0, -3.4f, 40);
    gwfader.setXRotation(-60);
    gwfader.addTexture(&tex_gwfader);
    gwfader.enableAlphaBlending(true);
}

// ---------------------------------------------------------------------------------------------
// The hours of the day

void CMarivistaScreensaver::initHours() {
    hours.load(dataFile, wantedwssettings.skytype == 0);
    hours.addAbove(gull);
    for (RenderObject* object : std::initializer_list<RenderObject*>{
             &terrain, &manta, &hunter1, &yellowbigfish, &redbigfish, &coral_a, &coral_b[0],
             &coral_b[1], &coral_b[2], &coral_c, &coral_d[0], &coral_d[1], &coral_f, &coral_g,
             &coral_h, &coral_i})
        hours.addUnder(*object);
    for (int i = 0; i < numFish; ++i)
        hours.addUnder(fish[i]);
    for (int i = 0; i < boidcount; ++i)
        hours.addUnder(fishcrowd[i]);
    // With the sea that is painted into the pictures of the sky.
    for (RenderObject* object :
         std::initializer_list<RenderObject*>{&water, &gwfader, &sky, &skyflat})
        hours.addSea(*object);
    hours.addScenery(island, dataFile("hours/island_evening.nlt"),
                     dataFile("hours/island_night.nlt"));
    hours.addScenery(rock2, dataFile("hours/rock2_evening.nlt"), dataFile("hours/rock2_night.nlt"));
    note(hours.lacking().empty(), hours.lacking());
    hours.setGlints(highlight);
    for (const PICTURE& picture : pictures())
        if (picture.name.compare(0, 8, "caustics") == 0)
            hours.addCaustics(picture.texture, dataFile(picture.name.c_str()));

    cruises.push_back({&vmove1, vmove1.settings.height, vmove1.settings.normal_max_speed, true});
    for (int i = 0; i < numFish; ++i)
        cruises.push_back({&fishmove[i], fishmove[i].settings.height,
                           fishmove[i].settings.normal_max_speed, false});
}

bool CMarivistaScreensaver::isGullSeen() const {
    GLVector3 away = gull.vPos - camera.vEye;
    GLVector3 ahead = camera.vAt - camera.vEye;
    away.y = ahead.y = 0;
    const float reach = vectorLength(&away) - 3;
    return dot(&away, &ahead) > 0.7f * reach * vectorLength(&ahead);
}

float CMarivistaScreensaver::wantedLoudness(const LOCAL_TIME& time) const {
    if (isWithinHours(time, extras.quiet_from, extras.quiet_to))
        return 0;
    const auto volume = static_cast<float>(extras.volume);
    if (!extras.daytime)
        return volume;
    // The sounds come first, and must not begin as loud as at noon.
    const DAY_LIGHT light =
        hours.isOn() ? hours.light() : lightAt(sunHour(time.minute, extras.latitude, time.day));
    return volume * light.loudness;
}

void CMarivistaScreensaver::followHours(bool left_out) {
    const LOCAL_TIME time = localTime();
    if (hours.isOn()) {
        const bool changed = hours.update(time, extras.latitude, lastframetime, left_out);
        const DAY_LIGHT& light = hours.light();
        if (changed)
            for (const CRUISE& cruise : cruises) {
                SingleMovementSettings& settings = cruise.mover->settings;
                settings.normal_max_speed = cruise.speed * light.pace;
                if (cruise.mover->state == 0)
                    cruise.mover->wanted_speed = settings.normal_max_speed;
                settings.height = cruise.height - (cruise.lower ? light.depth : 0);
            }
        // It comes and goes where nobody sees it.
        const bool about = wantedwssettings.bird_gull && light.gull > 0.5f;
        if (about != bird_gull && (left_out || !isGullSeen())) {
            bird_gull = about;
            gulltrack.time = timer;
        }
    }
    if (!sound)
        return;
    const float wanted = wantedLoudness(time);
    if (wanted == loudness)
        return;
    approximation(&loudness, wanted, static_cast<float>(lastframetime) * 0.05f);
    setLoudness(loudness);
}

// ---------------------------------------------------------------------------------------------
// One tick

void CMarivistaScreensaver::updateScene() {
    const SceneClock::Running running(clock);
    camerascrolling = false;
    Uint32 now = sceneTicks();
    const bool left_out = unseen || now - timer > (drawn ? LONGEST_FRAME : LONGEST_TICK);
    if (left_out) {
        clock.leaveOut(now - timer);
        now = timer;
    }
    unseen = drawn = false;
    lastframetime = now - timer;
    timer = now;
    followHours(left_out);

    fpstimer += lastframetime;
    ++framecounter;
    if (fpstimer > 999) {
        const float fps = static_cast<float>(framecounter) * 1000 / static_cast<float>(fpstimer);
        fpstimer = 0;
        std::snprintf(fpsstr, sizeof fpsstr, "%d x %d   %.2f fps", resolution_x, resolution_y,
                      static_cast<double>(fps));
        framecounter = 0;
    }
    if (fpsOn)
        fpstext.setSingleLineText(fpsstr);

    watertexmotion = modulo(watertexmotion + static_cast<float>(lastframetime) * -0.000015f, 1);
    if (watertexmotion < 0)
        watertexmotion += 1;
    if (watertexmotion >= 1)  // What a tiny negative offset rounds to.
        watertexmotion = 0;
    water.update();
    tex_water.setOffset(watertexmotion, 0);
    sky.setPosition(camera.vEye.x, camera.vEye.y - 300, -camera.vEye.z);
    for (int i = 0; i < ANIMATION_FRAMES; ++i) {
        tex_caustics[i].setOffset(watertexmotion, 0);
        tex_caustics_fish[i].setOffset(watertexmotion, 0);
    }

    if (soundtimer.update(saturatedMs(lastframetime)) && wantedwssettings.soundOn && bird_gull)
        playRandomGullsound();
    if (bird_gull)
        moveGull();
    if (manta.model)
        moveManta();

    // The leader is the school's target and its enemy alike: fleeing, it scatters from the leader.
    GLVector3 leader = vegetarian1.getPositionVector();
    fishsteering.setTargetPoint(leader.x, leader.y, leader.z);
    fishsteering.setEnemyPoint(leader.x, leader.y, leader.z);
    fishsteering.move();
    huntmove1.setBoidPoint(&leader);
    vmove1.move();
    huntmove1.move();
    bigfishmove.move();
    for (int i = 0; i < numFish; ++i)
        fishmove[i].move();

    if (autocameramove)
        autoCameraMove();
}

void CMarivistaScreensaver::skipUnseenTime() { unseen = true; }

void CMarivistaScreensaver::addGullWaypoints(bool reverse) {
    GLVector3 points[4];
    for (int i = 0; i < 4; ++i) {
        const float z = randomf(5.0f, 35.0f, 2);
        const float y = randomf(2.5f, 4.5f, 2);
        points[i].set(30.0f - 20.0f * static_cast<float>(i), y, z);
    }
    for (int i = 0; i < 4; ++i)
        gulltrack.addPoint(points[reverse ? 3 - i : i], 0);
}

void CMarivistaScreensaver::addMantaWaypoints(bool reverse) {
    GLVector3 points[6];
    for (int i = 0; i < 6; ++i) {
        const float z = randomf(30.0f, 40.0f, 2);
        const float y = -randomf(2.0f, 4.0f, 2);
        points[i].set(26.0f - 10.4f * static_cast<float>(i), y, z);
    }
    for (int i = 0; i < 6; ++i)
        mantatrack.addPoint(points[reverse ? 5 - i : i], 0);
}

void CMarivistaScreensaver::moveGull() {
    const Uint32 now = sceneTicks();
    const int choice = std::rand() & 3;
    const int frame = gull_model.getActFrame();

    // Switching only at the last frame of either animation never cuts a wing beat.
    if (since(gulltimer, now) > gull_nextani && (frame == 19 || frame == 42)) {
        gull_nextani = std::rand() % 3000 + 2000;
        gulltimer = now;
        gullflyanimation = !gullflyanimation;
        gull_model.setAnimation(gullflyanimation ? "fly" : "glide");
    }

    if (gulltrack.getActWaypoint() > 3) {
        for (int i = 0; i < 4; ++i)
            gulltrack.removeFirstPoint();
        if (choice != 0) {
            addGullWaypoints(gullreverseflight);
            gullreverseflight = !gullreverseflight;
        } else {
            // A loop past the viewer; the side it comes from stays, so it can be flown again.
            const float side = gullreverseflight ? -1.0f : 1.0f;
            gulltrack.addPoint(side * 18, 1, 25, 0);
            gulltrack.addPoint(side * 4, 1, 4, 0);
            gulltrack.addPoint(0, 3, -7, 0);
            gulltrack.addPoint(side * 18, 3.5f, -7, 0);
        }
    }
    gulltrack.move();
}

void CMarivistaScreensaver::moveManta() {
    if (mantatrack.getActWaypoint() > 5) {
        for (int i = 0; i < 6; ++i)
            mantatrack.removeFirstPoint();
        addMantaWaypoints(mantareverse);
        mantareverse = !mantareverse;
    }
    mantatrack.move();
}

void CMarivistaScreensaver::autoCameraMove() {
    const Uint32 now = sceneTicks();
    const float step = static_cast<float>(lastframetime) *
                       static_cast<float>(wantedwssettings.cameraspeed) / 1000.0f;
    if (autoCameraDirection == 0) {
        if (since(cameratimer, now) <= camera_nextmove)
            return;
        cameratimer = now;
        autoCameraDirection = camera.rotationX >= 0 ? 1 : -1;
        camerascrolling = true;
        return;
    }
    const bool upwards = autoCameraDirection == 1;
    if (upwards ? camera.rotationX <= CAMERA_TOP_PITCH : camera.rotationX >= 0) {
        autoCameraDirection = 0;
        camera_nextmove = saturatedSeconds(upwards ? wantedwssettings.camerafix_top
                                                   : wantedwssettings.camerafix_bottom);
        cameratimer = sceneTicks();
        camerascrolling = false;
    } else {
        camera.pitch(upwards ? -step : step);
    }
}

void CMarivistaScreensaver::playRandomGullsound() {
    if (sound)
        sound->playSound(std::rand() % 4, 0);
}

// ---------------------------------------------------------------------------------------------
// One picture

int CMarivistaScreensaver::animationFrame() {
    return static_cast<int>(SDL_GetTicks() / ANIMATION_FRAME_MS % ANIMATION_FRAMES);
}

VIEW_WINDOW CMarivistaScreensaver::view() const {
    if (!extras.proportions)
        return trueView(std::min(aspect(), MAX_ASPECT), 0);
    const GLVector3 sight = camera.vAt - camera.vEye;
    const double level = std::hypot(sight.x, sight.z);
    return trueView(aspect(), level > 0 ? -sight.y / level : 0);
}

void CMarivistaScreensaver::setTrueView() {
    const VIEW_WINDOW view = this->view();
    wide = aspect() > WIDER_FROM;
    const double depth = FAR_PLANE - NEAR_PLANE;
    const double frustum[16] = {2 / view.width(),
                                0,
                                0,
                                0,
                                0,
                                2 / view.height(),
                                0,
                                0,
                                (view.right + view.left) / view.width(),
                                (view.top + view.bottom) / view.height(),
                                -(FAR_PLANE + NEAR_PLANE) / depth,
                                -1,
                                0,
                                0,
                                -2 * FAR_PLANE * NEAR_PLANE / depth,
                                0};
    GLfloat matrix[16];
    std::copy(std::begin(frustum), std::end(frustum), matrix);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMultMatrixf(matrix);
    glMatrixMode(GL_MODELVIEW);
}

void CMarivistaScreensaver::renderBeyond(RenderObject& object, float width, float missing) {
    if (!wide)
        return;
    for (const float edge : {-width / 2, width / 2 - missing}) {
        glPushMatrix();
        glTranslatef(2 * edge, 0, 0);
        glScalef(-1, 1, 1);
        object.render();
        glPopMatrix();
    }
}

void CMarivistaScreensaver::renderBackOfIsland() {
    glPushMatrix();
    glTranslatef(13.4f, 0, -2);
    glScalef(1, 0.9f, 1);
    hours.renderScenery(island);
    glPopMatrix();
}

void CMarivistaScreensaver::renderNoonSky() {
    if (wantedwssettings.skytype == 0) {
        sky.render();
    } else {
        skyflat.render();
        renderBeyond(skyflat, SKYFLAT_WIDTH);
    }
}

void CMarivistaScreensaver::renderSky() {
    if (!draw_in_rows) {
        hours.renderSky(camera.vEye);
        if (hours.showsNoonSky())
            renderNoonSky();
        hours.renderSkyOverNoon(camera.vEye);
        return;
    }
    const double noon_begins = rowsAbove(sight(), hours.noonSkyBegins(), resolution_y);
    for (const ROWS& rows : rowsOfSky(sight(), terrain, gwfader, fader_covers, resolution_y)) {
        if (hours.isOn())
            draw_in_rows(rows.low, rows.high, [this] { hours.renderSky(camera.vEye); });
        if (hours.showsNoonSky() && rows.high > noon_begins)
            draw_in_rows(std::max(rows.low, noon_begins), rows.high, [this] {
                renderNoonSky();
                hours.renderSkyOverNoon(camera.vEye);
            });
    }
}

void CMarivistaScreensaver::renderSparkle() {
    const auto draw = [this] {
        hours.renderGlints(highlight, tex_highlight[(animationFrame() + 13) % ANIMATION_FRAMES]);
        if (!hours.showsPath())
            renderBeyond(highlight, HIGHLIGHT_WIDTH);
    };
    // The path is drawn without its empty rows anyway.
    if (!draw_in_rows || hours.showsPath()) {
        draw();
        return;
    }
    const ROWS rows = rowsOf(sight(), highlight, sparkle_shows, resolution_y);
    draw_in_rows(rows.low, rows.high, draw);
}

void CMarivistaScreensaver::renderScene() {
    const SceneClock::Running running(clock);
    drawn = true;
    wide = false;
    if (extras.proportions && aspect() > MAX_ASPECT)
        setTrueView();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glLoadIdentity();
    camera.setViewMatrix();

    if (bird_gull)
        gull.render();
    renderSky();
    hours.colourFog();

    glEnable(GL_FOG);
    terrain.setTexture(&tex_caustics[animationFrame()], 1);
    terrain.render();
    // On the right it is one sample of its map narrower.
    renderBeyond(terrain, FLOOR_WIDTH, terrain.mapsize_x ? FLOOR_WIDTH / terrain.mapsize_x : 0);
    glDisable(GL_FOG);
    hours.renderScenery(rock2);
    gwfader.render();
    renderBeyond(gwfader, FADER_WIDTH);

    glEnable(GL_FOG);
    Texture* const caustics = &tex_caustics_fish[animationFrame()];
    for (int i = 0; i < boidcount; ++i) {
        fishcrowd[i].setTexture(caustics, 1);
        fishcrowd[i].render();
    }
    if (hunter1.model) {
        hunter1.setTexture(caustics, 1);
        hunter1.render();
    }
    coral_h.render();
    coral_i.render();
    coral_g.render();
    coral_f.render();
    coral_a.render();
    for (int i = 0; i < numFish; ++i) {
        fish[i].setTexture(caustics, 1);
        fish[i].render();
    }
    if (yellowbigfish.model)
        yellowbigfish.setTexture(caustics, 1);
    if (redbigfish.model)
        redbigfish.setTexture(caustics, 1);
    bigfishmove.render();
    coral_c.render();
    for (ModelCore& coral : coral_d)
        coral.render();
    for (ModelCore& coral : coral_b)
        coral.render();
    glDisable(GL_FOG);

    if (wide)
        renderBackOfIsland();
    hours.renderScenery(island);
    if (manta.model)
        manta.render();
    water.render();
    renderBeyond(water, WATER_WIDTH);
    // Loading the next sparkle is skipped in the one tick in which a camera travel starts.
    if (!camerascrolling)
        highlight.setTexture(&tex_highlight[animationFrame()], 1);
    renderSparkle();
    if (fpsOn)
        fpstext.render();
}

// ---------------------------------------------------------------------------------------------
// End

bool CMarivistaScreensaver::cleanup() {
    for (ModelCore* model : {&gull, &manta, &vegetarian1, &hunter1, &yellowbigfish, &redbigfish})
        model->cleanup();
    if (fish) {
        for (int i = 0; i < numFish; ++i)
            fish[i].cleanup();
        delete[] fish;
        fish = nullptr;
    }
    delete[] fishmove;
    fishmove = nullptr;
    numFish = 0;
    if (fishcrowd) {
        for (int i = 0; i < boidcount; ++i)
            fishcrowd[i].cleanup();
        fishsteering.fishcrowd.clear();
        delete[] fishcrowd;
        fishcrowd = nullptr;
    }
    boidcount = 0;

    RenderObject* const drawables[] = {
        &sky,     &skyflat,    &terrain,    &coral_a,   &coral_b[0], &coral_b[1], &coral_b[2],
        &coral_c, &coral_d[0], &coral_d[1], &coral_f,   &coral_g,    &coral_h,    &coral_i,
        &rock2,   &island,     &water,      &highlight, &gwfader,
    };
    for (RenderObject* drawable : drawables)
        drawable->cleanup();

    // The textures too, while the context is there: their destructors run when it is gone.
    fpstext.cleanup();
    for (const PICTURE& picture : pictures())
        picture.texture.cleanup();
    hours.cleanup();

    delete sound;
    sound = nullptr;
    return true;
}
