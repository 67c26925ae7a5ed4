// The command line of the program for people.
#pragma once

#include <QString>
#include <QStringList>

/// What the program is asked to do.
struct OPTIONS {
    bool fullscreen = false;
    bool until_input = false;  ///< ends at the first key, click or real movement of the pointer
    bool wallpaper = false;    ///< on the background layer of the compositor
    bool settings = false;     ///< the dialog of the settings and nothing else
    QString screen;            ///< name of the screen to show on; empty: any, or with wallpaper all
    int status = -1;           ///< the exit status when everything is said already, else -1
    QString text;              ///< what to say then: on standard error unless status is 0
};

/// Reads the words, the program's name first.
OPTIONS parseOptions(const QStringList& words);
