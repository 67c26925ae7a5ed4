// The saver's settings dialog: a list of pages on the left, one page at a time beside it.
#pragma once

#include <QDialog>
#include <array>
#include <string>
#include <vector>

#include "ExtraSettings.h"
#include "MVSettingsDlg.h"

class KUrlLabel;
class LanguagePack;
class QCheckBox;
class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QListWidget;
class QPushButton;
class QRadioButton;
class QSlider;

/// One entry of the page list.
struct FramePage {
    char name[128];  ///< the title in the list, UTF-8, null-terminated
    QFrame* frame;   ///< the page; owned by the dialog's widget tree
};

/// Edits the saver's settings. The controls write into `settings` as they are used; OK saves the
/// record and closes, everything else that closes the dialog leaves the file alone. The texts come
/// from the language file; without one they stay empty and everything still works.
///
/// What is out of a control's range appears as the nearest value that it has. Camera speed and
/// rests become that value, the size of the school a multiple of 5 from 0 to 20; the number of
/// fish, the kinds of school and sky and the camera's place stay as they were read until the person
/// changes them.
///
/// Settings for everyone on the machine count too, and are not copied into the person's own file.
class KMarivistaSetup : public QDialog {
    Q_OBJECT

public:
    explicit KMarivistaSetup(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());
    /// The dialog in another language or from another language file, for a host whose `extras`
    /// have these defaults.
    KMarivistaSetup(std::string languagefile, std::string language, QWidget* parent,
                    Qt::WindowFlags flags, const EXTRA_SETTINGS& usual_extras = {});

    // Every widget is owned by the widget tree and carries its member's name as object name. The
    // buttons of a choice are numbered from 0 in the order of their members.
    QFrame* page_boid;
    QGroupBox* boidcount_txt;
    QLabel* boidcount_edit;
    QSlider* boidcount_slider;  ///< fifths of the school's size: 0 to 4
    QGroupBox* boidtype_txt;
    QRadioButton* boidtype_radio1;
    QRadioButton* boidtype_radio2;

    QFrame* page_fish;
    QGroupBox* fishspecies_txt;
    QCheckBox* fishspecies1;  ///< red
    QCheckBox* fishspecies2;  ///< blue
    QCheckBox* fishspecies3;  ///< striped
    QCheckBox* fishspecies4;  ///< dotted
    QCheckBox* fishspecies5;  ///< yellow and blue
    QCheckBox* fishspecies6;  ///< big grey
    QCheckBox* fishspecies7;  ///< big red
    QCheckBox* fishspecies8;  ///< manta
    QGroupBox* fishcount_txt;
    QLabel* fishcount_edit;
    QSlider* fishcount_slider;  ///< 0 to 10 fish

    QListWidget* sellist;

    QFrame* page_birds;
    QGroupBox* birdspecies_txt;
    QCheckBox* birdspecies1;

    QFrame* page_sky;
    QGroupBox* sky_txt;
    QRadioButton* sky_radio1;  ///< cloudy
    QRadioButton* sky_radio2;  ///< cloudless

    QFrame* page_camera;
    QGroupBox* camera_txt;
    QLabel* restbottom_txt;
    QLabel* scrollspeed_txt;
    QLabel* resttop_txt;
    QComboBox* camerapos_combo;
    QSlider* scrollspeed_slider;  ///< degrees per second: 1 to 9
    QSlider* resttop_slider;      ///< seconds: 1 to 60
    QSlider* restbottom_slider;   ///< seconds: 5 to 60

    QFrame* page_sound;
    QGroupBox* sound_txt;
    QCheckBox* usesound;

    QFrame* page_extras;
    QGroupBox* daytime_txt;
    QRadioButton* daytime_radio1;  ///< always noon
    QRadioButton* daytime_radio2;  ///< by the clock
    QGroupBox* volume_txt;
    QSlider* volume_slider;  ///< percent: 0 to 100
    QCheckBox* trueproportions;

    QPushButton* okbutton;
    QPushButton* cancelbutton;

    QFrame* page_intro;
    KUrlLabel* hyperlink;
    QLabel* infotext;
    QLabel* PixmapLabel1;

    int actpage;                   ///< index of the page shown
    SaverSettings settings;        ///< the values being edited
    EXTRA_SETTINGS extras;         ///< the same for what goes beyond those
    std::vector<FramePage> pages;  ///< in the order of the list

public slots:
    /// Reads settings and texts and fills every control anew. The constructor calls it last.
    virtual void init();
    /// Saves `settings` and `extras` and closes the dialog. A key of `extras` that nobody has set
    /// is written only when it differs from its default. When they cannot be saved, says so in one
    /// message and leaves dialog and file as they are.
    virtual void writeConfig();
    /// Replaces all of `settings` and `extras`; a key that is missing gets its default.
    virtual void readConfig();
    /// Shows the address in the person's browser.
    virtual void leftClickedURL(const QString& url);
    /// Shows another page; an index without a page changes the caption only.
    virtual void changePage(int index);
    virtual void boidcount_slider_valueChanged(int value);
    virtual void boidtype_clicked(int id);
    virtual void fishspecies_clicked(int id);
    virtual void fishcount_slider_valueChanged(int value);
    virtual void birdtype_clicked(int id);
    virtual void sky_clicked(int id);
    virtual void camerapos_activated(int index);
    virtual void scrollspeed_valueChanged(int value);
    virtual void resttop_valueChanged(int value);
    virtual void restbottom_valueChanged(int value);
    virtual void usesound_changed(bool on);

private:
    struct SPECIES_BOX {
        QCheckBox* box;
        bool SaverSettings::*flag;
    };
    std::array<SPECIES_BOX, 8> speciesBoxes() const;
    QFrame* addPage(const char* name);
    void buildList();
    void buildIntroPage();
    void buildBoidPage();
    void buildFishPage();
    void buildBirdsPage();
    void buildSkyPage();
    void buildCameraPage();
    void buildSoundPage();
    void buildExtrasPage();
    void buildButtons();
    void nameAnimals(LanguagePack& texts);
    void fitTexts();
    void tellNotSaved();

    const EXTRA_SETTINGS usual;         ///< what a missing key of `extras` stands for
    const std::string language_file;    ///< path
    const std::string language_code;    ///< section of the file
    std::vector<QWidget*> travel_rows;  ///< what concerns the camera that travels by itself only
};
