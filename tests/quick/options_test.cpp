#include <gtest/gtest.h>

#include <QCoreApplication>

#include "app/Options.h"

namespace {

OPTIONS parse(QStringList words) {
    int count = 1;
    char name[] = "atollia";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    QCoreApplication::setApplicationVersion("7.8");
    words.prepend("atollia");
    return parseOptions(words);
}

TEST(Options, WithoutAnyTheWindowOpens) {
    const OPTIONS options = parse({});
    EXPECT_EQ(options.status, -1);
    EXPECT_FALSE(options.fullscreen || options.until_input || options.wallpaper);
    EXPECT_EQ(options.screen, "");
}

TEST(Options, AnIdlePicture) {
    const OPTIONS options = parse({"--fullscreen", "--until-input", "--screen", "DP-1"});
    EXPECT_EQ(options.status, -1);
    EXPECT_TRUE(options.fullscreen && options.until_input);
    EXPECT_EQ(options.screen, "DP-1");
}

TEST(Options, OnlyTheSettings) {
    const OPTIONS options = parse({"--settings"});
    EXPECT_EQ(options.status, -1);
    EXPECT_TRUE(options.settings);
    EXPECT_FALSE(parse({}).settings);
}

TEST(Options, HelpAndVersion) {
    const OPTIONS help = parse({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option :
         {"--fullscreen", "--until-input", "--wallpaper", "--screen <name>", "--settings"})
        EXPECT_TRUE(help.text.contains(option)) << option;
    const OPTIONS version = parse({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.text, "Atollia 7.8");
}

TEST(Options, WhatItDoesNotKnowEndsItWithOneLine) {
    for (const QStringList& words :
         {QStringList{"--what"}, QStringList{"picture.png"}, QStringList{"--screen"},
          QStringList{"--wallpaper", "--fullscreen"}, QStringList{"--wallpaper", "--until-input"},
          QStringList{"--settings", "--fullscreen"},
          QStringList{"--screen", "DP-1", "--settings"}}) {
        const OPTIONS options = parse(words);
        EXPECT_EQ(options.status, 2) << qPrintable(words.join(' '));
        EXPECT_FALSE(options.text.isEmpty() || options.text.contains('\n'));
    }
}

}  // namespace
