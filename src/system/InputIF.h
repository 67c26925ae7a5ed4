// Keys, mouse buttons and mouse motion as a state to ask for, fed from SDL events.
#pragma once

#include <SDL.h>

#include <list>

/// One code per key symbol of SDL 1.2, in its order, without the "world" keys.
enum IIF_KEY {
    IIF_UNKNOWN = -1,
    IIF_BACKSPACE,
    IIF_TAB,
    IIF_CLEAR,
    IIF_RETURN,
    IIF_PAUSE,
    IIF_ESCAPE,
    IIF_SPACE,
    IIF_EXCLAIM,
    IIF_QUOTEDBL,
    IIF_HASH,
    IIF_DOLLAR,
    IIF_AMPERSAND,
    IIF_QUOTE,
    IIF_LEFTPAREN,
    IIF_RIGHTPAREN,
    IIF_ASTERISK,
    IIF_PLUS,
    IIF_COMMA,
    IIF_MINUS,
    IIF_PERIOD,
    IIF_SLASH,
    IIF_0,
    IIF_1,
    IIF_2,
    IIF_3,
    IIF_4,
    IIF_5,
    IIF_6,
    IIF_7,
    IIF_8,
    IIF_9,
    IIF_COLON,
    IIF_SEMICOLON,
    IIF_LESS,
    IIF_EQUALS,
    IIF_GREATER,
    IIF_QUESTION,
    IIF_AT,
    IIF_LEFTBRACKET,
    IIF_BACKSLASH,
    IIF_RIGHTBRACKET,
    IIF_CARET,
    IIF_UNDERSCORE,
    IIF_BACKQUOTE,
    IIF_a,
    IIF_b,
    IIF_c,
    IIF_d,
    IIF_e,
    IIF_f,
    IIF_g,
    IIF_h,
    IIF_i,
    IIF_j,
    IIF_k,
    IIF_l,
    IIF_m,
    IIF_n,
    IIF_o,
    IIF_p,
    IIF_q,
    IIF_r,
    IIF_s,
    IIF_t,
    IIF_u,
    IIF_v,
    IIF_w,
    IIF_x,
    IIF_y,
    IIF_z,
    IIF_DELETE,
    IIF_KP0,
    IIF_KP1,
    IIF_KP2,
    IIF_KP3,
    IIF_KP4,
    IIF_KP5,
    IIF_KP6,
    IIF_KP7,
    IIF_KP8,
    IIF_KP9,
    IIF_KP_PERIOD,
    IIF_KP_DIVIDE,
    IIF_KP_MULTIPLY,
    IIF_KP_MINUS,
    IIF_KP_PLUS,
    IIF_KP_ENTER,
    IIF_KP_EQUALS,
    IIF_UP,
    IIF_DOWN,
    IIF_RIGHT,
    IIF_LEFT,
    IIF_INSERT,
    IIF_HOME,
    IIF_END,
    IIF_PAGEUP,
    IIF_PAGEDOWN,
    IIF_F1,
    IIF_F2,
    IIF_F3,
    IIF_F4,
    IIF_F5,
    IIF_F6,
    IIF_F7,
    IIF_F8,
    IIF_F9,
    IIF_F10,
    IIF_F11,
    IIF_F12,
    IIF_F13,
    IIF_F14,
    IIF_F15,
    IIF_NUMLOCK,
    IIF_CAPSLOCK,
    IIF_SCROLLOCK,
    IIF_RSHIFT,
    IIF_LSHIFT,
    IIF_RCTRL,
    IIF_LCTRL,
    IIF_RALT,
    IIF_LALT,
    IIF_RMETA,
    IIF_LMETA,
    IIF_LSUPER,
    IIF_RSUPER,
    IIF_MODE,
    IIF_HELP,
    IIF_PRINT,
    IIF_SYSREQ,
    IIF_BREAK,
    IIF_MENU,
    IIF_POWER,
    IIF_EURO
};

/// Feed every event to updateInput(), ask, and call reset() once at the end of the frame.
class InputIF {
public:
    struct SKey {
        IIF_KEY key;
        int repeat;  ///< calls of reset() since the key went down; 0 in the frame of the press
    };

    /// Nothing is taken in before this call. Size of the screen in pixels.
    void initialize(int w, int h);
    /// False before initialize() and for events that are neither keys nor mouse.
    bool updateInput(SDL_Event* event);
    /// Ages keys and buttons by a frame, and takes the pointer back to the middle of the screen
    /// when it is about to meet an edge.
    void reset();

    /// With repeat 0: the key went down in this frame; otherwise: it is down.
    bool isPressed(IIF_KEY key, int repeat);
    /// Left, right and middle button; repeat as for keys.
    bool isButton1(int repeat);
    bool isButton2(int repeat);
    bool isButton3(int repeat);
    /// Motion in pixels since the last call, from the last event that counted.
    void getMouseMove(int* dx, int* dy);

    /// Bits of inputflags.
    void addFlags(int f) { inputflags |= f; }
    void removeFlags(int f) { inputflags &= ~f; }

    /// IIF_UNKNOWN for a symbol without a code.
    IIF_KEY getFromSDLKey(SDLKey sym);

    std::list<SKey> keys;  ///< held down, in the order they went down, each once
    int mouse_x = 0;
    int mouse_y = 0;
    // Left, right, middle button: 0 up, else 1 + calls of reset() since it went down.
    int mousebutton1 = 0;
    int mousebutton2 = 0;
    int mousebutton3 = 0;
    // Until the pointer has moved: somewhere away from the edges.
    int abs_mouse_x = 400;
    int abs_mouse_y = 300;
    int inputflags = 7;  ///< 1: keyboard on, 2: mouse on, 4: initialize() hides the cursor
    int screen_w = 800;
    int screen_h = 600;
    int halfscreen_w = 400;
    int halfscreen_h = 300;
    bool initialized = false;
};
