// The scene: builds the island-and-reef world, advances it and draws it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "BigFishMovement.h"
#include "ExtraSettings.h"
#include "FishSteering.h"
#include "HoursOfDay.h"
#include "LocalTime.h"
#include "MVSettingsDlg.h"
#include "ShownRows.h"
#include "SingleFishMovement.h"
#include "SkyDome.h"
#include "WaterGround.h"
#include "WaterSurface.h"
#include "framework/LanguagePack.h"
#include "system/AnimationTrack.h"
#include "system/Camera.h"
#include "system/GLHelpers.h"
#include "system/GLText.h"
#include "system/InputIF.h"
#include "system/ModelCore.h"
#include "system/QModel.h"
#include "system/SceneClock.h"
#include "system/Sound.h"
#include "system/Texture.h"
#include "system/TexturedQuad.h"

// The frame that the scene sits in. Another host frame names its header in BASECLASS_HEADER, and
// that header defines BASECLASS.
#ifdef BASECLASS_HEADER
#include BASECLASS_HEADER
#else
#include "framework/KDEFrame.h"
#define BASECLASS KDEFrame
#endif

/// The one scene object of the saver. The frame calls readSettings, initGL and initScene once,
/// then updateScene and renderScene for every tick, and cleanup before the GL context goes; all of
/// them, and construction, on one thread. From initGL on a GL context must be current.
///
/// Every world object is a member; only the fish arrays and the sound player are allocated, by
/// initScene, and released by cleanup. After cleanup the scene may still be updated and drawn: what
/// was released is simply gone.
class CMarivistaScreensaver : public BASECLASS {
public:
    CMarivistaScreensaver();
    ~CMarivistaScreensaver() override = default;

    bool initScene() override;
    bool initGL() override;
    void updateScene() override;
    void renderScene() override;
    bool releaseGL() override;
    bool cleanup() override;
    bool doConfig() override;
    bool readSettings() override;
    bool writeSettings() override;
    bool resetEvents() override;
    bool processSDLEvents(SDL_Event* event) override;

    /// Reads the settings beside the saver's own, kept in their ranges. A host that wants them
    /// calls this after construction; without it they keep the values of `extras`.
    void readExtraSettings();
    /// The drawing area has another size, in pixels: sets viewport and projection anew, loads
    /// nothing. Its context must be current, and initScene done.
    void setViewSize(int width, int height);
    /// Filters what is seen at a slant, floor, water and sky, eightfold along the slant, where GL
    /// can; for hosts that draw with graphics hardware, after initScene and with its context
    /// current.
    void sharpenSlants();
    /// The first picture or model of this scene that initScene could not load; empty when it has
    /// them all. What is lacking is not drawn, or without its picture.
    const std::string& lacking() const { return missing; }
    /// The time since the last tick was seen by nobody and does not pass in the scene. A host that
    /// held drawing back calls this before the next updateScene. More than three seconds since a
    /// picture, and a clock set back since then, count as unseen by themselves.
    void skipUnseenTime();

    // The steps of initScene and updateScene that stand alone.
    /// Opens the sound and starts the waves, if the settings want it.
    void initSound();
    /// Puts the camera where the settings want it.
    void initCamera();
    void loadTextures();
    void loadModels();
    /// Four points there, or back if reverse is set.
    void addGullWaypoints(bool reverse);
    /// Six points there, or back if reverse is set.
    void addMantaWaypoints(bool reverse);
    void moveGull();
    void moveManta();
    void autoCameraMove();
    void playRandomGullsound();

    SaverSettings wantedwssettings;
    EXTRA_SETTINGS extras;
    bool init = false;
    Uint32 timer;  ///< The scene's time at the previous update, milliseconds.
    char fpsstr[1024];
    int framecounter = 0;
    bool wireframe = false;
    bool fpsOn = false;  ///< Show the frame-rate line; may be set at any time.
    bool helpexpanded = false;
    bool helpvisible = true;
    /// Has something drawn within rows of the viewport (see drawInRows): a host that sets it,
    /// before initScene, spares the renderer what cannot be seen. The picture is the same.
    std::function<void(double low, double high, const std::function<void()>& draw)> draw_in_rows;
    Uint32 fpstimer = 0;       ///< Milliseconds since the last frame-rate line.
    Uint32 lastframetime = 0;  ///< Length of the last tick, milliseconds.
    float watertexmotion = 0;  ///< Texture offset of water and caustics, in [0, 1).
    Uint32 gulltimer;          ///< Start of the gull's current animation phase, ticks.
    bool gullflyanimation = true;
    bool gullreverseflight = false;
    int gull_nextani = 3000;  ///< Length of that phase, milliseconds.
    bool mantareverse = false;
    int autoCameraDirection = 0;  ///< 0 resting, 1 travelling up, -1 travelling down.
    Uint32 cameratimer;           ///< Start of the current rest, ticks.
    int camera_nextmove = 10000;  ///< Length of the current rest, milliseconds.
    bool autocameramove = false;
    bool camerascrolling = false;  ///< The camera started a travel in this tick.
    int numFish = 0;               ///< Reef fish in fish and fishmove.
    int boidcount = 0;             ///< School fish in fishcrowd.
    bool bird_gull = false;
    LanguagePack language;
    Sound* sound = nullptr;  ///< Owned; only with sound switched on.
    Texture tex_sky, tex_gull, tex_manta, tex_terrain, tex_coral_a, tex_coral_b, tex_coral_c,
        tex_coral_d, tex_coral_f, tex_coral_g, tex_coral_h, tex_coral_i, tex_water, tex_gwfader,
        tex_rock2, tex_island;
    Texture tex_caustics[32], tex_caustics_fish[32], tex_highlight[32];
    Texture tex_highlight_blend, tex_fish_blue, tex_fish_yellow, tex_fish_red, tex_fish_moorishidol,
        tex_fish_ybig, tex_fish_rbig, tex_fish_gsb, tex_fish_swp;
    ModelCore gull, manta;
    QModel gull_model, manta_model;
    ModelCore coral_a, coral_b[3], coral_c, coral_d[2], coral_f, coral_g, coral_h, coral_i;
    QModel coral_a_model, coral_b_model, coral_c_model, coral_d_model, coral_f_model, coral_g_model,
        coral_h_model, coral_i_model;
    ModelCore vegetarian1;  ///< The school's leader; never drawn.
    SingleFishMovement vmove1;
    InputIF input;
    GLText gltext, fpstext;
    Camera camera;
    SkyDome sky;
    TexturedQuad skyflat;
    WaterSurface water;
    TexturedQuad gwfader, highlight, island, rock2;
    AnimationTrack mantatrack, gulltrack;
    IntervallTimer soundtimer, helptexttimer;
    BigFishMovement bigfishmove;
    ModelCore yellowbigfish, redbigfish;
    QModel yellowbigfish_model, redbigfish_model;
    ModelCore* fish = nullptr;  ///< Owned array of numFish.
    QModel fish_stripe_model, fish_red_model, fish_blue_model, fish_yell_blu_model;
    SingleFishMovement* fishmove = nullptr;  ///< Owned array of numFish.
    WaterGround terrain;
    FishSteering fishsteering;
    ModelCore* fishcrowd = nullptr;  ///< Owned array of boidcount.
    QModel crowd_model;
    ModelCore hunter1;
    QModel hunter1_model;
    SingleFishMovement huntmove1;
    HoursOfDay hours;  ///< at work only with extras.daytime
    /// The clock that the hours follow.
    std::function<LOCAL_TIME()> localTime = readLocalTime;

private:
    /// A texture and the file that it shows.
    struct PICTURE;
    /// Every texture of the scene.
    std::vector<PICTURE> pictures();

    /// Remembers the first file that was not loaded.
    void note(bool loaded, const std::string& file);
    void initGull();
    void initSchoolLeader();
    void initManta();
    void initHunter();
    /// One of the two that cross the scene on one route.
    void initBigFish(ModelCore& big, QModel& model, Texture& picture, float scale, float fps);
    void initBigFishRoute();
    void initReefFish(int count);
    void initSchool();
    void initSky();
    void initSeaFloor();
    void initCorals();
    void initWaterAndQuads();

    double aspect() const;
    /// What the picture shows; hangs on the camera's pitch where it keeps its proportions.
    VIEW_WINDOW view() const;
    /// The projection of a picture that keeps its proportions.
    void setTrueView();
    /// Without what lies below everything that can be seen of it.
    void renderSky();
    void renderNoonSky();
    void renderSparkle();
    Sight sight() const { return {camera.vEye, camera.vAt, view()}; }
    /// In a wide picture, what is so wide around x = 0, less what is missing on the right, goes on
    /// beyond both its ends as its own reflection.
    void renderBeyond(RenderObject& object, float width, float missing = 0);
    /// The island's picture ends right of the design's view: here more of it, lower and farther
    /// away, comes out behind it.
    void renderBackOfIsland();

    void initHours();
    void followHours(bool left_out);
    float wantedLoudness(const LOCAL_TIME& time) const;
    bool isGullSeen() const;

    SceneClock clock;
    std::string missing;
    TEXTURE_ROWS fader_covers, sparkle_shows;
    bool wide = false;     ///< the picture shows more to the sides than the design's
    bool unseen = false;   ///< the time until the next tick is seen by nobody
    bool drawn = false;    ///< the last tick has become a picture
    float loudness = 100;  ///< percent, as the sound has it
    /// Swimming as it was set up for noon.
    struct CRUISE {
        SingleFishMovement* mover;
        float height, speed;
        bool lower;
    };
    std::vector<CRUISE> cruises;

    /// Frame of the 20 pictures-a-second animations that is due now.
    static int animationFrame();
};
