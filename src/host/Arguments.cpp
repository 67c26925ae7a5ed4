#include "host/Arguments.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <locale>
#include <sstream>

#include "LocalTime.h"

namespace {

/// Exit status for an option that nobody knows, outside the saver modes.
constexpr int UNKNOWN_OPTION = 254;

/// Larger windows than this no renderer draws, or only with gigabytes of memory. Pixels.
constexpr int MAX_SIDE = 16384;
constexpr int MAX_PIXELS = 64 * 1024 * 1024;

constexpr std::array ignored_flags = {"install", "noinstall", "mono", "nocrashhandler"};
constexpr std::array ignored_values = {"visual", "session", "style", "name",
                                       "title",  "caption", "icon",  "miniicon"};

template <class LIST>
bool contains(const LIST& list, const std::string& name) {
    for (const char* entry : list)
        if (name == entry)
            return true;
    return false;
}

/// A decimal number within limits and nothing else.
std::optional<int> parseNumber(const std::string& text, int least, int most) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || !std::isdigit(static_cast<unsigned char>(text[0])) || *end ||
        value < least || value > most)
        return {};
    return static_cast<int>(value);
}

/// Reads an unsigned number at `at` and moves past it.
bool readNumber(const char*& at, int& number) {
    if (!std::isdigit(static_cast<unsigned char>(*at)))
        return false;
    char* end = nullptr;
    const long value = std::strtol(at, &end, 10);
    if (value > SHRT_MAX)  // X's coordinates have 16 bits
        return false;
    at = end;
    number = static_cast<int>(value);
    return true;
}

/// Reads a sign and a number, as in +20 or -0.
bool readOffset(const char*& at, int& number, bool& fromFarEdge) {
    if (*at != '+' && *at != '-')
        return false;
    fromFarEdge = *at++ == '-';
    return readNumber(at, number);
}

/// The options that choose what to do, as they came; their precedence is settled at the end.
struct REQUESTS {
    bool help = false;
    bool version = false;
    bool setup = false;
    bool demo = false;
    bool own_window = false;
    bool root = false;
    bool unknown = false;
    std::optional<std::string> window_id;
    bool no_window_id = false;  ///< -window-id came last and without a value
};

struct REQUEST_FLAG {
    const char* name;
    bool REQUESTS::*asked;
};
constexpr REQUEST_FLAG request_flags[] = {
    {"help", &REQUESTS::help}, {"version", &REQUESTS::version},   {"setup", &REQUESTS::setup},
    {"demo", &REQUESTS::demo}, {"window", &REQUESTS::own_window}, {"root", &REQUESTS::root},
};

struct FLAG {
    const char* name;
    bool ARGUMENTS::*flag;
    bool value;
};
constexpr FLAG flags[] = {
    {"fps", &ARGUMENTS::fps, true},
    {"no-fps", &ARGUMENTS::fps, false},
    {"fullscreen", &ARGUMENTS::fullscreen, true},
};

/// An option with a value; one that cannot be read is told and left out.
struct VALUE_OPTION {
    const char* name;
    const char* form;  ///< what the value has to be
    bool (*read)(ARGUMENTS& arguments, const std::string& text);
};

/// Reads a number of the settings beside the saver's own, in the range that it is kept in.
template <int EXTRA_SETTINGS::*FIELD>
bool readExtra(ARGUMENTS& arguments, const std::string& text) {
    for (const EXTRA_SETTING& setting : extra_settings)
        if (setting.field == FIELD)
            if (const auto number = parseNumber(text, setting.low, setting.high)) {
                arguments.extras.push_back({FIELD, *number});
                return true;
            }
    return false;
}

/// Reads `off` as 0 and `on` as 1 of such a setting.
bool readChoice(ARGUMENTS& arguments, int EXTRA_SETTINGS::*field, const std::string& text,
                const char* off, const char* on) {
    if (text != off && text != on)
        return false;
    arguments.extras.push_back({field, text == on ? 1 : 0});
    return true;
}

bool readScale(ARGUMENTS& arguments, const std::string& text) {
    if (text == "auto") {
        arguments.scale = {};
        return true;
    }
    // Not strtod: it reads what the locale calls a number.
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double number = 0;
    if (!(stream >> number) || !stream.eof() || !(number >= 0.4 && number <= 1))
        return false;
    arguments.scale = number;
    return true;
}

/// Noon, the clock, or a moment of the day that stays.
bool readDayTime(ARGUMENTS& arguments, const std::string& text) {
    const auto choice = parseDayChoice(text);
    if (!choice)
        return false;
    arguments.extras.push_back({&EXTRA_SETTINGS::daytime, choice->hours ? 1 : 0});
    arguments.minute = choice->minute;
    return true;
}

template <class VALUE>
bool keep(VALUE& place, const std::optional<VALUE>& value) {
    if (value)
        place = *value;
    return value.has_value();
}

const VALUE_OPTION value_options[] = {
    {"display", "", [](ARGUMENTS& a, const std::string& text) { return a.display = text, true; }},
    {"language", "", [](ARGUMENTS& a, const std::string& text) { return a.language = text, true; }},
    {"geometry", "of the form WxH+X+Y, at most 16384 wide and high and 64 megapixels",
     [](ARGUMENTS& a, const std::string& text) { return keep(a.geometry, parseGeometry(text)); }},
    {"maxfps", "a number from 0 to 1000",
     [](ARGUMENTS& a, const std::string& text) {
         return keep(a.maxfps, parseNumber(text, 0, 1000));
     }},
    {"samples", "a number from 0 to 32",
     [](ARGUMENTS& a, const std::string& text) {
         a.samples = parseNumber(text, 0, 32);
         return a.samples.has_value();
     }},
    {"scale", "auto or a number from 0.4 to 1", readScale},
    {"proportions", "stretched or true",
     [](ARGUMENTS& a, const std::string& text) {
         return readChoice(a, &EXTRA_SETTINGS::proportions, text, "stretched", "true");
     }},
    {"daytime", "noon, clock or a time as 18:15", readDayTime},
    {"volume", "a number from 0 to 100", readExtra<&EXTRA_SETTINGS::volume>},
};

template <class TABLE>
auto find(const TABLE& table, const std::string& name) -> decltype(std::begin(table)) {
    return std::find_if(std::begin(table), std::end(table),
                        [&](const auto& entry) { return name == entry.name; });
}

void refuse(ARGUMENTS& arguments, int status) {
    arguments.mode = SAVER_MODE::REFUSED;
    arguments.status = status;
}

/// Embeds in the window that the text names, or refuses.
void embed(ARGUMENTS& arguments, const std::string& text, const char* source) {
    const auto window = parseWindowId(text);
    if (!window) {
        arguments.complaints.push_back(std::string(source) + ": \"" + text +
                                       "\" is not a window id");
        refuse(arguments, 1);
        return;
    }
    arguments.mode = SAVER_MODE::EMBED;
    arguments.window = *window;
}

void chooseMode(ARGUMENTS& arguments, const REQUESTS& asked, const char* hostWindow) {
    if (asked.help)
        arguments.mode = SAVER_MODE::HELP;
    else if (asked.version)
        arguments.mode = SAVER_MODE::VERSION;
    else if (asked.setup)
        arguments.mode = SAVER_MODE::SETUP;
    else if (asked.demo)
        arguments.mode = SAVER_MODE::DEMO;
    else if (asked.no_window_id)
        refuse(arguments, 1);
    else if (asked.window_id)
        embed(arguments, *asked.window_id, "-window-id");
    else if (asked.own_window)
        arguments.mode = SAVER_MODE::DEMO;
    else if (hostWindow)
        // A host that names its window wrongly must not get a full-screen window instead.
        embed(arguments, hostWindow, "XSCREENSAVER_WINDOW");
    else
        arguments.mode = asked.root ? SAVER_MODE::ROOT : SAVER_MODE::DEMO;

    const bool carriesOn = arguments.mode == SAVER_MODE::EMBED ||
                           arguments.mode == SAVER_MODE::ROOT ||
                           arguments.mode == SAVER_MODE::REFUSED;
    if (asked.unknown && !carriesOn)
        refuse(arguments, UNKNOWN_OPTION);
}

}  // namespace

std::optional<std::uint32_t> parseWindowId(const std::string& text) {
    const bool hexadecimal = text.size() > 2 && text[0] == '0' && (text[1] | 0x20) == 'x';
    const std::string digits = hexadecimal ? text.substr(2) : text;
    const int base = hexadecimal ? 16 : 10;
    std::uint64_t value = 0;
    for (const char c : digits) {
        const auto digit = static_cast<unsigned char>(c);
        if (hexadecimal ? !std::isxdigit(digit) : !std::isdigit(digit))
            return {};
        value = value * base + (std::isdigit(digit) ? c - '0' : (c | 0x20) - 'a' + 10);
        if (value > std::numeric_limits<std::uint32_t>::max())
            return {};
    }
    if (value == 0)
        return {};
    return static_cast<std::uint32_t>(value);
}

std::optional<GEOMETRY> parseGeometry(const std::string& text) {
    GEOMETRY geometry;
    const char* at = text.c_str();
    if (std::isdigit(static_cast<unsigned char>(*at))) {
        if (!readNumber(at, geometry.width) || (*at | 0x20) != 'x')
            return {};
        ++at;
        if (!readNumber(at, geometry.height) || geometry.width == 0 || geometry.height == 0)
            return {};
    }
    if (*at) {
        geometry.placed = true;
        if (!readOffset(at, geometry.x, geometry.from_right) ||
            !readOffset(at, geometry.y, geometry.from_bottom))
            return {};
    }
    if (*at || text.empty() || geometry.width > MAX_SIDE || geometry.height > MAX_SIDE ||
        geometry.width * geometry.height > MAX_PIXELS)
        return {};
    return geometry;
}

ARGUMENTS parseArguments(const std::vector<std::string>& words, const char* hostWindow) {
    ARGUMENTS arguments;
    REQUESTS asked;

    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        const std::size_t dashes = word.compare(0, 2, "--") == 0 ? 2 : 1;
        if (word.size() <= dashes || word[0] != '-') {
            asked.unknown = true;
            arguments.complaints.push_back("unknown argument " + word);
            continue;
        }
        const std::size_t equals = word.find('=');
        const std::string name = word.substr(dashes, equals - dashes);  // npos: all of it

        const auto value = [&]() -> std::optional<std::string> {
            if (equals != std::string::npos)
                return word.substr(equals + 1);
            if (i + 1 < words.size())
                return words[++i];
            arguments.complaints.push_back(word + " needs a value");
            return {};
        };

        if (const auto request = find(request_flags, name); request != std::end(request_flags))
            asked.*request->asked = true;
        else if (const auto flag = find(flags, name); flag != std::end(flags))
            arguments.*flag->flag = flag->value;
        else if (const auto option = find(value_options, name); option != std::end(value_options)) {
            const auto text = value();
            if (text && !option->read(arguments, *text))
                arguments.complaints.push_back("-" + name + ": \"" + *text + "\" is not " +
                                               option->form);
        } else if (name == "window-id") {
            asked.window_id = value();
            asked.no_window_id = !asked.window_id;
        } else if (contains(ignored_values, name))
            value();
        else if (!contains(ignored_flags, name)) {
            asked.unknown = true;
            arguments.complaints.push_back("unknown option " + word);
        }
    }

    chooseMode(arguments, asked, hostWindow);
    return arguments;
}

std::string usage() {
    return "Usage: atollia.kss [option]...\n"
           "A tropical island and its reef as a screensaver.\n"
           "\n"
           "  -demo                 draw in a window of its own (also without any option)\n"
           "  -root                 draw on the root window, or where XSCREENSAVER_WINDOW says\n"
           "  -window-id ID         draw in the window with this id, decimal or 0xHEX\n"
           "  -setup                show the setup dialog\n"
           "  -language CODE        language of the setup dialog: GER, ENG, FRA, ESP or ITA\n"
           "  -geometry WxH+X+Y     size and place of the window of its own\n"
           "  -fullscreen           the window of its own fills the screen (F11, double click)\n"
           "  -display NAME         the X display to use\n"
           "  -fps, -no-fps         show the frame rate or not\n"
           "  -maxfps N             draw at most N frames per second, 0: as suggested\n"
           "  -samples N            smooth edges with N samples per pixel, 0 for none\n"
           "  -scale F              draw at this fraction of the resolution, 0.4 to 1, or auto\n"
           "  -proportions WHICH    stretched to the window, or true\n"
           "  -daytime WHEN         always noon, as the clock says, or a time as 18:15\n"
           "  -volume N             loudness of the sounds, from 0 to 100\n"
           "  -help                 print this text\n"
           "  -version              print name and version\n"
           "\n"
           "Options may be written with one dash or two. For hosts that pass them, these are\n"
           "accepted without effect: -visual V -install -noinstall -mono -session X -style X\n"
           "-name X -title X -caption X -icon X -miniicon X -nocrashhandler.\n";
}
