// How the settings dialog looks and speaks in every language: texts, sizes, pictures, names.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <KUrlLabel>
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSlider>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "Globals.h"
#include "dialog.h"
#include "framework/LanguagePack.h"
#include "setup/SetupLanguage.h"

using test::ConfigFolder;
using test::Dialog;

namespace {

constexpr int PAGES = 8;

std::string nameOf(const QObject* object) { return object->objectName().toStdString(); }

class SetupLooks : public testing::TestWithParam<const char*> {
protected:
    ConfigFolder folder;
};

/// A text that a widget shows, and the room it has for it.
struct SHOWN {
    const QWidget* widget;
    QSize needed;
};

/// Every text and control of the page that is shown now.
std::vector<SHOWN> shownNow(const Dialog& dialog) {
    std::vector<SHOWN> shown;
    for (const QWidget* widget : dialog.findChildren<QWidget*>()) {
        if (!widget->isVisible())
            continue;
        if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            if (label == dialog.PixmapLabel1)
                continue;
            QSize needed = label->sizeHint();
            if (label->wordWrap()) {
                const QRect text = label->fontMetrics().boundingRect(
                    QRect(0, 0, label->width(), 10000), Qt::TextWordWrap, label->text());
                needed = text.size();
            }
            shown.push_back({label, needed});
        } else if (const auto* box = qobject_cast<const QGroupBox*>(widget)) {
            shown.push_back({box, QSize(box->fontMetrics().horizontalAdvance(box->title()), 0)});
            shown.push_back({box, box->minimumSizeHint()});
        } else if (qobject_cast<const QAbstractButton*>(widget) ||
                   qobject_cast<const QComboBox*>(widget) ||
                   (qobject_cast<const QSlider*>(widget))) {
            shown.push_back({widget, widget->sizeHint()});
        }
    }
    return shown;
}

void expectNothingCut(Dialog& dialog) {
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setCurrentRow(page);
        QCoreApplication::processEvents();
        const std::vector<SHOWN> shown = shownNow(dialog);
        EXPECT_GE(shown.size(), 4u) << "page " << page;
        for (const SHOWN& entry : shown) {
            const QWidget* widget = entry.widget;
            EXPECT_GE(widget->width(), entry.needed.width()) << page << " " << nameOf(widget);
            EXPECT_GE(widget->height(), entry.needed.height()) << page << " " << nameOf(widget);
            const QRect place(widget->mapTo(&dialog, QPoint()), widget->size());
            EXPECT_TRUE(dialog.rect().contains(place)) << page << " " << nameOf(widget);
        }
        // Neighbours do not lie on each other.
        for (const SHOWN& a : shown) {
            for (const SHOWN& b : shown) {
                if (a.widget >= b.widget || a.widget->parent() != b.widget->parent())
                    continue;
                EXPECT_FALSE(a.widget->geometry().intersects(b.widget->geometry()))
                    << page << " " << nameOf(a.widget) << " " << nameOf(b.widget);
            }
        }
    }
    EXPECT_FALSE(dialog.sellist->verticalScrollBar()->isVisible());
    for (int row = 0; row < dialog.sellist->count(); ++row) {
        const QListWidgetItem* item = dialog.sellist->item(row);
        const QRect place = dialog.sellist->visualItemRect(item);
        EXPECT_TRUE(dialog.sellist->viewport()->rect().contains(place)) << row;
        const int text = dialog.sellist->fontMetrics().horizontalAdvance(item->text());
        EXPECT_GE(place.width(), text + 6) << row;
    }
}

/// Distance from the first to the last column with ink, in a picture on a plain background.
int inkWidth(const QImage& image) {
    const QRgb background = image.pixel(image.width() - 1, 0);
    int first = image.width(), last = -1;
    for (int x = 0; x < image.width(); ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (std::abs(qGray(image.pixel(x, y)) - qGray(background)) > 60) {
                first = std::min(first, x);
                last = x;
            }
        }
    }
    return last - first;
}

int inkWidth(const QString& text, const QWidget* like) {
    QImage image(like->width(), 40, QImage::Format_RGB32);
    image.fill(like->palette().window().color());
    QPainter painter(&image);
    painter.setFont(like->font());
    painter.setPen(like->palette().windowText().color());
    painter.drawText(10, 25, text);
    return inkWidth(image);
}

}  // namespace

TEST_P(SetupLooks, TitlesAreDrawnToTheirLastLetter) {
    Dialog dialog(GetParam());
    dialog.open();
    int titles = 0;
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setCurrentRow(page);
        QCoreApplication::processEvents();
        for (QGroupBox* box : dialog.pages[page].frame->findChildren<QGroupBox*>()) {
            const QRect line(0, 0, box->width(), box->fontMetrics().height());
            const QImage drawn = box->grab(line).toImage();
            EXPECT_GE(inkWidth(drawn), inkWidth(box->title(), box)) << nameOf(box);
            ++titles;
        }
    }
    EXPECT_EQ(titles, 10);
}

TEST_P(SetupLooks, OpensAtItsSizeWithEveryTextWhole) {
    Dialog dialog(GetParam());
    dialog.open();
    EXPECT_EQ(dialog.size(), QSize(460, 299));
    expectNothingCut(dialog);
}

TEST_P(SetupLooks, CutsNothingAtItsSmallestAndAtALargeSize) {
    Dialog dialog(GetParam());
    dialog.open();
    dialog.resize(1, 1);
    expectNothingCut(dialog);
    dialog.resize(900, 700);
    expectNothingCut(dialog);
}

TEST_P(SetupLooks, GrowsWithLargerFonts) {
    const QFont before = QApplication::font();
    for (int points : {10, 12, 16}) {
        QApplication::setFont(QFont(before.family(), points));
        Dialog dialog(GetParam());
        dialog.open();
        expectNothingCut(dialog);
    }
    QApplication::setFont(before);
}

TEST_P(SetupLooks, PagesKeepTheWindowAsItIs) {
    Dialog dialog(GetParam());
    dialog.open();
    const QRect list = dialog.sellist->geometry();
    const QPoint ok = dialog.okbutton->mapTo(&dialog, QPoint());
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setCurrentRow(page);
        QCoreApplication::processEvents();
        EXPECT_EQ(dialog.size(), QSize(460, 299));
        EXPECT_EQ(dialog.sellist->geometry(), list);
        EXPECT_EQ(dialog.okbutton->mapTo(&dialog, QPoint()), ok);
        EXPECT_EQ(dialog.pages[page].frame->geometry(), dialog.page_intro->geometry());
    }
}

TEST_P(SetupLooks, ShowsEveryTextOfItsLanguage) {
    LanguagePack texts(LANGUAGE_FILE, GetParam());
    const auto text = [&texts](const char* key) { return QString(texts.getString(key)); };
    const Dialog dialog(GetParam());
    const char* const pages[] = {"intro", "boid",   "fish",  "birds",
                                 "sky",   "camera", "sound", "extras"};
    ASSERT_EQ(dialog.sellist->count(), PAGES);
    for (int page = 0; page < PAGES; ++page)
        EXPECT_EQ(dialog.sellist->item(page)->text(), text(pages[page]));
    const struct {
        const char* key;
        QString shown;
    } entries[] = {
        {"caption", dialog.windowTitle()},
        {"cancel", dialog.cancelbutton->text()},
        {"infotxt", dialog.infotext->text()},
        {"hyperlink_txt", dialog.hyperlink->text()},
        {"hyperlink", dialog.hyperlink->url()},
        {"boidtype", dialog.boidtype_txt->title()},
        {"boidcount", dialog.boidcount_txt->title()},
        {"fishtype", dialog.fishspecies_txt->title()},
        {"fishcount", dialog.fishcount_txt->title()},
        {"birdtype", dialog.birdspecies_txt->title()},
        {"skytext", dialog.sky_txt->title()},
        {"cloudy", dialog.sky_radio1->text()},
        {"cloudless", dialog.sky_radio2->text()},
        {"cameratext", dialog.camera_txt->title()},
        {"automatic", dialog.camerapos_combo->itemText(0)},
        {"top", dialog.camerapos_combo->itemText(1)},
        {"middle", dialog.camerapos_combo->itemText(2)},
        {"bottom", dialog.camerapos_combo->itemText(3)},
        {"scrollspeed", dialog.scrollspeed_txt->text()},
        {"resttime_top", dialog.resttop_txt->text()},
        {"resttime_bottom", dialog.restbottom_txt->text()},
        {"soundtext", dialog.sound_txt->title()},
        {"on_off", dialog.usesound->text()},
        {"daytime", dialog.daytime_txt->title()},
        {"noon", dialog.daytime_radio1->text()},
        {"clock", dialog.daytime_radio2->text()},
        {"volume", dialog.volume_txt->title()},
        {"proportions", dialog.trueproportions->text()},
    };
    for (const auto& entry : entries) {
        EXPECT_FALSE(entry.shown.isEmpty()) << entry.key;
        EXPECT_EQ(entry.shown, text(entry.key)) << entry.key;
        EXPECT_FALSE(entry.shown.contains(QChar::ReplacementCharacter)) << entry.key;
    }
    EXPECT_EQ(dialog.camerapos_combo->count(), 4);
    EXPECT_EQ(dialog.okbutton->text(), "OK");
}

// For people who cannot see the pictures.
TEST_P(SetupLooks, EveryControlHasANameOfItsOwn) {
    Dialog dialog(GetParam());
    dialog.open();
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setCurrentRow(page);
        std::set<QString> names;
        for (const QWidget* widget : dialog.pages[page].frame->findChildren<QWidget*>()) {
            if (widget->focusPolicy() == Qt::NoFocus)
                continue;
            EXPECT_FALSE(widget->objectName().isEmpty());
            QAccessibleInterface* spoken =
                QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
            ASSERT_TRUE(spoken) << nameOf(widget);
            const QString name = spoken->text(QAccessible::Name);
            EXPECT_FALSE(name.isEmpty()) << nameOf(widget);
            EXPECT_TRUE(names.insert(name).second) << nameOf(widget) << " is called like another";
        }
    }
}

TEST_P(SetupLooks, AnimalsAreNamedInTheDialogsLanguage) {
    LanguagePack texts(LANGUAGE_FILE, GetParam());
    Dialog dialog(GetParam());
    const std::pair<const QAbstractButton*, const char*> animals[] = {
        {dialog.boidtype_radio1, "school_silver"},
        {dialog.boidtype_radio2, "school_angel"},
        {dialog.fishspecies1, "fish_red"},
        {dialog.fishspecies2, "fish_blue"},
        {dialog.fishspecies3, "fish_stripe"},
        {dialog.fishspecies4, "fish_dot"},
        {dialog.fishspecies5, "fish_yell_blu"},
        {dialog.fishspecies6, "fish_big_grey"},
        {dialog.fishspecies7, "fish_big_red"},
        {dialog.fishspecies8, "fish_manta"},
        {dialog.birdspecies1, "gull"},
    };
    for (const auto& [button, key] : animals) {
        const QString name = texts.getString(key);
        EXPECT_FALSE(name.isEmpty()) << key;
        EXPECT_EQ(button->toolTip(), name) << key;
        EXPECT_EQ(button->accessibleName(), name) << key;
    }
    EXPECT_EQ(dialog.sellist->accessibleName(), texts.getString("pages"));
    EXPECT_FALSE(dialog.sellist->accessibleName().isEmpty());
    EXPECT_FALSE(dialog.camerapos_combo->accessibleName().isEmpty());
}

// Kept beside the test program, to be looked at.
TEST_P(SetupLooks, LeavesPicturesOfItsPages) {
    Dialog dialog(GetParam());
    dialog.open();
    std::set<QByteArray> different;
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setCurrentRow(page);
        const QImage image = dialog.grab().toImage();
        different.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()),
                                    static_cast<int>(image.sizeInBytes())));
        const QString name = QStringLiteral("setup-%1-%2.png").arg(GetParam()).arg(page + 1);
        EXPECT_TRUE(image.save(QStringLiteral(PICTURE_DIR) + name));
    }
    EXPECT_EQ(different.size(), size_t(PAGES)) << "every page looks different";
}

INSTANTIATE_TEST_SUITE_P(Languages, SetupLooks, testing::Values("GER", "ENG", "FRA", "ESP", "ITA"),
                         [](const auto& info) { return std::string(info.param); });

class SetupPictures : public testing::Test {
protected:
    ConfigFolder folder;
    Dialog dialog;
};

TEST_F(SetupPictures, EveryKindHasAPictureOfItsOwn) {
    std::vector<QAbstractButton*> buttons;
    for (auto* box : {dialog.boidtype_txt, dialog.fishspecies_txt, dialog.birdspecies_txt,
                      dialog.sky_txt, dialog.daytime_txt})
        for (auto* button : box->findChildren<QAbstractButton*>())
            buttons.push_back(button);
    ASSERT_EQ(buttons.size(), 15u);
    std::set<QByteArray> different;
    for (const QAbstractButton* button : buttons) {
        ASSERT_FALSE(button->icon().isNull()) << nameOf(button);
        const QImage image = button->icon().pixmap(button->iconSize()).toImage();
        EXPECT_EQ(image.size(), button->iconSize()) << nameOf(button);
        different.insert(QByteArray(reinterpret_cast<const char*>(image.constBits()),
                                    static_cast<int>(image.sizeInBytes())));
        // An animal or clouds, not bare water: a good number of colours in the middle row.
        std::set<QRgb> colours;
        for (int x = image.width() / 5; x < image.width() * 4 / 5; ++x)
            for (int y = image.height() / 3; y < image.height() * 2 / 3; ++y)
                colours.insert(image.pixel(x, y));
        EXPECT_GT(colours.size(), 100u) << nameOf(button);
    }
    EXPECT_EQ(different.size(), buttons.size());
}

namespace {

/// The names of this process's threads.
std::vector<std::string> threads() {
    std::vector<std::string> names;
    for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream in(thread.path() / "comm");
        std::getline(in, names.emplace_back());
    }
    return names;
}

}  // namespace

// Qt 5.15 lets a pool of threads convert large pictures, and the last one to finish may write to
// the stack of a thread that waits no longer: about one conversion in 200 000 ended in a crash.
TEST_F(SetupPictures, AreConvertedByNoOtherThread) {
    dialog.open();
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setCurrentRow(page);
        dialog.repaint();
    }
    EXPECT_THAT(threads(), testing::Each(testing::Ne("Thread (pooled)")));
}

TEST_F(SetupPictures, IntroductionShowsTheLagoon) {
    dialog.open();
    EXPECT_GE(dialog.PixmapLabel1->width(), 300);
    EXPECT_GE(dialog.PixmapLabel1->height(), 60);
    const QImage image = dialog.PixmapLabel1->grab().toImage();
    // Mostly the blue and green of sea and sky.
    int blue = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            blue += qBlue(image.pixel(x, y)) > qRed(image.pixel(x, y));
    EXPECT_GT(blue, image.width() * image.height() / 4);
}

TEST_F(SetupPictures, GrowWithTheLetters) {
    const QFont before = QApplication::font();
    const QSize usual = dialog.birdspecies1->iconSize();
    QApplication::setFont(QFont(before.family(), 16));
    const Dialog large;
    QApplication::setFont(before);
    EXPECT_EQ(usual, QSize(240, 128));
    EXPECT_GE(large.birdspecies1->iconSize().width(), usual.width() * 16 / 9 - 10);
    EXPECT_GT(large.fishspecies1->iconSize().width(), dialog.fishspecies1->iconSize().width());
}

// The knob is drawn whole: no row of it is cut off at the edge of the slider.
TEST_F(SetupPictures, KnobsOfSlidersAreWhole) {
    dialog.open();
    dialog.sellist->setCurrentRow(5);
    QCoreApplication::processEvents();
    const QImage drawn = dialog.resttop_slider->grab().toImage();
    const QRgb background = drawn.pixel(0, 0);
    for (int x = 0; x < drawn.width(); ++x)
        EXPECT_EQ(drawn.pixel(x, 0), background) << "column " << x;
}

class SetupKeyboard : public testing::Test {
protected:
    ConfigFolder folder;
    Dialog dialog{"ENG"};
};

TEST_F(SetupKeyboard, SlidersAreTheBuddiesOfTheirLabels) {
    EXPECT_EQ(dialog.boidcount_edit->buddy(), dialog.boidcount_slider);
    EXPECT_EQ(dialog.fishcount_edit->buddy(), dialog.fishcount_slider);
    EXPECT_EQ(dialog.scrollspeed_txt->buddy(), dialog.scrollspeed_slider);
    EXPECT_EQ(dialog.resttop_txt->buddy(), dialog.resttop_slider);
    EXPECT_EQ(dialog.restbottom_txt->buddy(), dialog.restbottom_slider);
}

TEST_F(SetupKeyboard, SchoolSliderSpeaksTheNumberShown) {
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(dialog.boidcount_slider);
    ASSERT_TRUE(spoken && spoken->valueInterface());
    EXPECT_EQ(spoken->role(), QAccessible::Slider);
    EXPECT_EQ(spoken->text(QAccessible::Value), "10");
    EXPECT_EQ(spoken->valueInterface()->currentValue(), 10);
    EXPECT_EQ(spoken->valueInterface()->maximumValue(), 20);
    EXPECT_EQ(spoken->valueInterface()->minimumStepSize(), 5);
    spoken->valueInterface()->setCurrentValue(15);
    EXPECT_EQ(dialog.settings.boidcount, 15);
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(dialog.resttop_slider)->text(QAccessible::Value),
        "30 s");
}

TEST_F(SetupKeyboard, LinkIsALink) {
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(dialog.hyperlink);
    ASSERT_TRUE(spoken);
    EXPECT_EQ(spoken->role(), QAccessible::Link);
    EXPECT_EQ(spoken->text(QAccessible::Name), dialog.hyperlink->text());
    EXPECT_TRUE(spoken->actionInterface()->actionNames().contains(
        QAccessibleActionInterface::pressAction()));
}

TEST_F(SetupKeyboard, OkIsTheDefaultButton) {
    EXPECT_TRUE(dialog.okbutton->isDefault());
    EXPECT_FALSE(dialog.cancelbutton->isDefault());
}

TEST_F(SetupKeyboard, TabWalksThroughListPageAndButtons) {
    dialog.open();
    const std::vector<std::vector<QWidget*>> stops = {
        {dialog.hyperlink},
        {dialog.boidtype_radio1, dialog.boidcount_slider},
        {dialog.fishspecies1, dialog.fishspecies2, dialog.fishspecies3, dialog.fishspecies4,
         dialog.fishspecies5, dialog.fishspecies6, dialog.fishspecies7, dialog.fishspecies8,
         dialog.fishcount_slider},
        {dialog.birdspecies1},
        {dialog.sky_radio1},
        {dialog.camerapos_combo, dialog.scrollspeed_slider, dialog.resttop_slider,
         dialog.restbottom_slider},
        {dialog.usesound},
        {dialog.daytime_radio1, dialog.volume_slider, dialog.trueproportions},
    };
    for (int page = 0; page < PAGES; ++page) {
        dialog.sellist->setFocus();
        dialog.sellist->setCurrentRow(page);
        std::vector<QWidget*> expected = stops[page];
        expected.insert(expected.end(), {dialog.okbutton, dialog.cancelbutton, dialog.sellist});
        for (QWidget* stop : expected) {
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
            EXPECT_EQ(nameOf(dialog.focusWidget()), nameOf(stop)) << "page " << page;
        }
    }
}

TEST_F(SetupKeyboard, ListHasTheFocusAtFirst) {
    dialog.open();
    EXPECT_EQ(dialog.focusWidget(), dialog.sellist);
}

// The language that the dialog opens in.

TEST(SetupLanguageTest, IsTheFirstOneThatTheFileHas) {
    const auto chosen = [](const QStringList& languages) {
        return setupLanguage(languages, LANGUAGE_FILE);
    };
    EXPECT_EQ(chosen({"de-AT", "de-Latn-AT"}), "GER");
    EXPECT_EQ(chosen({"en-US", "en"}), "ENG");
    EXPECT_EQ(chosen({"fr-FR"}), "FRA");
    EXPECT_EQ(chosen({"es_MX"}), "ESP");
    EXPECT_EQ(chosen({"it"}), "ITA");
    EXPECT_EQ(chosen({"sv-SE", "en-US"}), "ENG");
    for (const QStringList& none : {QStringList(), QStringList("C"), QStringList("sv-SE")})
        EXPECT_EQ(chosen(none), DEFAULT_LANGUAGE);
    EXPECT_EQ(setupLanguage({"fr"}, "/nowhere/Language.dat"), DEFAULT_LANGUAGE);
}

TEST(SetupLanguageTest, CodesOfTheFileAndOfLocalesNameASection) {
    EXPECT_EQ(languageSection("FRA", LANGUAGE_FILE), "FRA");
    EXPECT_EQ(languageSection("ita", LANGUAGE_FILE), "ITA");
    EXPECT_EQ(languageSection("es", LANGUAGE_FILE), "ESP");
    for (const char* unknown : {"", "SWE", "sv", "C", "GERMAN", "ENG]"})
        EXPECT_EQ(languageSection(unknown, LANGUAGE_FILE), "") << unknown;
}

// Without texts everything else still works.

class SetupWithoutTexts : public testing::TestWithParam<std::pair<const char*, const char*>> {
protected:
    ConfigFolder folder;
};

TEST_P(SetupWithoutTexts, StaysEmptyAndUsable) {
    Dialog dialog(GetParam().first, GetParam().second);
    dialog.open();
    EXPECT_EQ(dialog.okbutton->text(), "OK");
    EXPECT_EQ(dialog.cancelbutton->text(), "");
    EXPECT_EQ(dialog.windowTitle(), "");
    EXPECT_EQ(dialog.infotext->text(), "");
    EXPECT_EQ(dialog.hyperlink->text(), "");
    EXPECT_EQ(dialog.sellist->count(), PAGES);
    EXPECT_EQ(dialog.camerapos_combo->count(), 4);
    dialog.sellist->setCurrentRow(6);
    EXPECT_TRUE(dialog.page_sound->isVisible());
    dialog.usesound->click();
    dialog.okbutton->click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_TRUE(folder.read().contains("SoundOn=false\n"));
}

INSTANTIATE_TEST_SUITE_P(Ways, SetupWithoutTexts,
                         testing::Values(std::pair("GER", "/nowhere/Language.dat"),
                                         std::pair("SWE", LANGUAGE_FILE)));

TEST(SetupTexts, LongPageNamesEndAtAWholeCharacter) {
    ConfigFolder folder;
    const QString path = QDir(folder.path()).filePath("Language.dat");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[ENG] intro={" + QByteArray("ä").repeated(100) + "} boid={x" +
               QByteArray("ä").repeated(100) + "}");
    file.close();
    const Dialog dialog("ENG", path.toLocal8Bit());
    EXPECT_EQ(dialog.sellist->item(0)->text(), QString("ä").repeated(63));
    EXPECT_EQ(dialog.sellist->item(1)->text(), "x" + QString("ä").repeated(63));
    EXPECT_EQ(dialog.sellist->item(2)->text(), "");
}
