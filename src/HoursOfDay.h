// What the hour does to the scene: colours that things are drawn with, other pictures of sky and
// island, the contrast of the caustics, the path of light on the water.
#pragma once

#include <functional>
#include <list>
#include <string>
#include <vector>

#include "DayLight.h"
#include "LocalTime.h"
#include "ShownRows.h"
#include "SkyBand.h"
#include "system/Texture.h"
#include "system/TexturedQuad.h"

/// Off until load(); then update() with every tick. Works on things of the scene that are made
/// known to it and must outlive it. Draws nothing and changes nothing while it is off, and at noon
/// draws exactly what is drawn without it.
class HoursOfDay {
public:
    /// Loads the further pictures; a GL context must be current. file gives the path of a data
    /// file.
    void load(const std::function<std::string(const char*)>& file, bool cloudy);
    bool isOn() const { return on; }
    /// The first picture that could not be loaded; empty while there is none.
    const std::string& lacking() const { return missing; }
    void cleanup();

    // What takes part.
    void addAbove(RenderObject& object) { above.push_back(&object); }
    void addUnder(RenderObject& object) { under.push_back(&object); }
    void addSea(RenderObject& object) { sea.push_back(&object); }
    /// A quad with a picture that has others for the evening and the night.
    void addScenery(TexturedQuad& quad, const std::string& evening, const std::string& night);
    /// A frame of caustics, loaded, and the picture that it was loaded from; where that cannot be
    /// read again, or is no 24-bit one, it stays as it is.
    void addCaustics(Texture& frame, const std::string& file);
    void setGlints(TexturedQuad& quad);

    /// Time goes on by so many milliseconds to the hour of the clock. A clock that jumps is
    /// followed in a moment of half a second, or at once if nobody has seen the time since the last
    /// update. Colours and caustics follow if the light has changed: true then.
    bool update(const LOCAL_TIME& clock, int latitude, unsigned elapsed, bool unseen);
    const DAY_LIGHT& light() const { return now; }

    /// Whether something of the noon's sky is to be seen; it must be drawn after what hides it and
    /// before what is blended over it.
    bool showsNoonSky() const { return !on || now.evening < 1; }
    /// Whether the glints are on the path of light only.
    bool showsPath() const { return on && now.path >= 0.5f; }
    /// Degrees above the horizon up to which nothing of the noon's sky is to be seen.
    float noonSkyBegins() const;
    void colourFog() const;
    /// Draws the hour's sky round the eye, where it hides noon's.
    void renderSky(const GLVector3& eye);
    /// The same where noon's is seen through it.
    void renderSkyOverNoon(const GLVector3& eye);
    /// Draws the glints, and those of another moment between them on a path of light.
    void renderGlints(TexturedQuad& quad, Texture& other_frame);
    /// Draws a quad that was added as scenery, with two of its pictures in each other where both
    /// show, or any other quad as it is.
    void renderScenery(TexturedQuad& quad);

private:
    /// Copies of a quad, without the empty rows of its pictures, are drawn for it.
    struct SCENERY {
        const TexturedQuad* quad;
        TexturedQuad single, both;  ///< with one picture, with two
        Texture evening, night;
    };
    struct LAYER {
        Texture* picture;
        TINT tint;
        float share;
    };
    struct FRAME {
        Texture* texture;
        std::string file;
        int contrast;  ///< as it is, in steps
    };

    void loadPicture(Texture& texture, const std::string& file);
    /// The rows of the picture that show something. Where these are no more than half of it, only
    /// that half is loaded.
    TEXTURE_ROWS loadScenery(Texture& texture, const std::string& file);
    void apply();
    SKY_CHANGE eveningComes() const;
    SKY_CHANGE nightComes() const;
    void renderLayers(SCENERY& scenery, const LAYER& under, const LAYER& over);
    void prepareEvening(const GLVector3& eye);
    void renderBand(Texture& picture, SKY_ROWS rows, bool blending);
    /// Gives frames the contrast of the light: all of them, or the next one that has another.
    void setContrast(bool all);

    bool on = false;
    std::string missing;
    double hour = -1;     ///< of the sun; negative before the first update
    double applied = -1;  ///< the hour whose light the scene has
    DAY_LIGHT now = lightAt(NOON);
    SkyBand band;      ///< with the evening's or the night's sky
    SkyBand twilight;  ///< with both
    Texture sky_evening, sky_night, path;
    std::list<SCENERY> sceneries;
    std::vector<RenderObject*> above, under, sea;
    std::vector<FRAME> frames;
    TexturedQuad* glints = nullptr;
    Texture* glints_all_over = nullptr;
};
