#include "app/Options.h"

#include <QCommandLineParser>
#include <QCoreApplication>

OPTIONS parseOptions(const QStringList& words) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("A tropical island, its lagoon and its reef.\n\n"
                       "F11 or a double click: full screen. Escape: leave it. 0 to 3: view. "
                       "S: sky. M: sound. P: pause.\nThe right button shows a menu."));
    const QCommandLineOption help({"h", "help"}, QStringLiteral("Print the options."));
    const QCommandLineOption version({"v", "version"}, QStringLiteral("Print name and version."));
    const QCommandLineOption fullscreen("fullscreen", QStringLiteral("Fill the screen."));
    const QCommandLineOption until_input(
        "until-input",
        QStringLiteral("End at the first key, click or real movement of the pointer."));
    const QCommandLineOption wallpaper(
        "wallpaper",
        QStringLiteral("Be the background of every screen, on Wayland compositors with "
                       "layer-shell."));
    const QCommandLineOption screen("screen",
                                    QStringLiteral("The screen to show on, for example HDMI-A-1."),
                                    QStringLiteral("name"));
    const QCommandLineOption settings(
        "settings", QStringLiteral("Change the settings, and show nothing else."));
    parser.addOptions({help, version, fullscreen, until_input, wallpaper, screen, settings});

    OPTIONS options;
    if (!parser.parse(words)) {
        options.status = 2;
        options.text = parser.errorText();
    } else if (parser.isSet(help)) {
        options.status = 0;
        options.text = parser.helpText().trimmed();
    } else if (parser.isSet(version)) {
        options.status = 0;
        options.text = QStringLiteral("Atollia %1").arg(QCoreApplication::applicationVersion());
    } else if (!parser.positionalArguments().isEmpty()) {
        options.status = 2;
        options.text =
            QStringLiteral("Unknown argument '%1'.").arg(parser.positionalArguments()[0]);
    } else if (parser.isSet(wallpaper) && (parser.isSet(fullscreen) || parser.isSet(until_input))) {
        options.status = 2;
        options.text =
            QStringLiteral("--wallpaper goes with neither --fullscreen nor --until-input.");
    } else if (parser.isSet(settings) && parser.optionNames().size() > 1) {
        options.status = 2;
        options.text = QStringLiteral("--settings goes with no other option.");
    }
    options.fullscreen = parser.isSet(fullscreen);
    options.until_input = parser.isSet(until_input);
    options.wallpaper = parser.isSet(wallpaper);
    options.settings = parser.isSet(settings);
    options.screen = parser.value(screen);
    return options;
}
