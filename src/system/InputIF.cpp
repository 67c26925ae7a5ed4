#include "system/InputIF.h"

#include <algorithm>
#include <cstdlib>

namespace {

// Bits of inputflags.
constexpr int keyboard_on = 1;
constexpr int mouse_on = 2;
constexpr int hide_cursor = 4;

/// Relative motion beyond this is a jump, such as that of our own warp, and none of the hand.
constexpr int longest_motion = 50;
/// So near an edge the pointer is taken back to the middle.
constexpr int margin = 80;

/// Codes have no gaps, symbols have; between two gaps both count up together.
struct KEY_RUN {
    SDLKey first, last;
    IIF_KEY code;  ///< of the first symbol
};
constexpr KEY_RUN key_runs[] = {
    {SDLK_BACKSPACE, SDLK_TAB, IIF_BACKSPACE},
    {SDLK_CLEAR, SDLK_RETURN, IIF_CLEAR},
    {SDLK_PAUSE, SDLK_PAUSE, IIF_PAUSE},
    {SDLK_ESCAPE, SDLK_ESCAPE, IIF_ESCAPE},
    {SDLK_SPACE, SDLK_DOLLAR, IIF_SPACE},
    {SDLK_AMPERSAND, SDLK_AT, IIF_AMPERSAND},
    {SDLK_LEFTBRACKET, SDLK_z, IIF_LEFTBRACKET},
    {SDLK_DELETE, SDLK_DELETE, IIF_DELETE},
    {SDLK_KP0, SDLK_F15, IIF_KP0},
    {SDLK_NUMLOCK, SDLK_MODE, IIF_NUMLOCK},
    {SDLK_HELP, SDLK_EURO, IIF_HELP},
};

bool isDown(int button, int repeat) { return button > 0 && (repeat != 0 || button == 1); }

}  // namespace

void InputIF::initialize(int w, int h) {
    screen_w = w;
    screen_h = h;
    halfscreen_w = w / 2;
    halfscreen_h = h / 2;
    if (inputflags & hide_cursor)
        SDL_ShowCursor(0);
    initialized = true;
}

bool InputIF::updateInput(SDL_Event* event) {
    if (!initialized)
        return false;

    const auto find = [&] {
        const IIF_KEY key = getFromSDLKey(event->key.keysym.sym);
        return std::find_if(keys.begin(), keys.end(), [&](const SKey& k) { return k.key == key; });
    };
    const auto setButton = [&](int counter) {
        if (!(inputflags & mouse_on))
            return;
        switch (event->button.button) {
            case SDL_BUTTON_LEFT:
                mousebutton1 = counter;
                break;
            case SDL_BUTTON_RIGHT:
                mousebutton2 = counter;
                break;
            case SDL_BUTTON_MIDDLE:
                mousebutton3 = counter;
                break;
        }
    };

    switch (event->type) {
        case SDL_KEYDOWN:
            // A key that repeats by itself sends this again and again.
            if ((inputflags & keyboard_on) && find() == keys.end())
                keys.push_back({getFromSDLKey(event->key.keysym.sym), 0});
            return true;
        case SDL_KEYUP:
            if (inputflags & keyboard_on) {
                const auto held = find();
                if (held != keys.end())
                    keys.erase(held);
            }
            return true;
        case SDL_MOUSEMOTION:
            if (inputflags & mouse_on) {
                const SDL_MouseMotionEvent& motion = event->motion;
                abs_mouse_x = motion.x;
                abs_mouse_y = motion.y;
                const bool jumped = std::abs(motion.xrel) > longest_motion ||
                                    std::abs(motion.yrel) > longest_motion;
                mouse_x = jumped ? 0 : motion.xrel;
                mouse_y = jumped ? 0 : motion.yrel;
            }
            return true;
        case SDL_MOUSEBUTTONDOWN:
            setButton(1);
            return true;
        case SDL_MOUSEBUTTONUP:
            setButton(0);
            return true;
    }
    return false;
}

void InputIF::reset() {
    if (!initialized)
        return;
    if (inputflags & keyboard_on) {
        for (SKey& held : keys)
            ++held.repeat;
    }
    if (inputflags & mouse_on) {
        if (abs_mouse_x < margin || abs_mouse_x > screen_w - margin || abs_mouse_y < margin ||
            abs_mouse_y > screen_h - margin)
            SDL_WarpMouse(Uint16(halfscreen_w), Uint16(halfscreen_h));
        for (int* button : {&mousebutton1, &mousebutton2, &mousebutton3}) {
            if (*button > 0)
                ++*button;
        }
    }
}

bool InputIF::isPressed(IIF_KEY key, int repeat) {
    for (const SKey& held : keys) {
        if (held.key == key)
            return repeat != 0 || held.repeat == 0;
    }
    return false;
}

bool InputIF::isButton1(int repeat) { return isDown(mousebutton1, repeat); }
bool InputIF::isButton2(int repeat) { return isDown(mousebutton2, repeat); }
bool InputIF::isButton3(int repeat) { return isDown(mousebutton3, repeat); }

void InputIF::getMouseMove(int* dx, int* dy) {
    *dx = mouse_x;
    *dy = mouse_y;
    mouse_x = mouse_y = 0;
}

IIF_KEY InputIF::getFromSDLKey(SDLKey sym) {
    for (const KEY_RUN& run : key_runs) {
        if (sym >= run.first && sym <= run.last)
            return IIF_KEY(run.code + (sym - run.first));
    }
    return IIF_UNKNOWN;
}
