#include "KMarivistaSetup.h"

#include <KConfig>
#include <KConfigGroup>
#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QSlider>
#include <QStandardPaths>
#include <QUrl>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <utility>

#include "Globals.h"
#include "framework/LanguagePack.h"
#include "framework/SettingsFile.h"
#include "setup/Controls.h"

// Outside every namespace, as the macro demands.
static void loadPictures() { Q_INIT_RESOURCE(pictures); }

namespace {

const char SETTINGS_FILE[] = "Orvo Atollia";

constexpr QSize WINDOW_SIZE(460, 299);
/// Fish that one step of the school's slider stands for.
constexpr int SCHOOL_STEP = 5;
constexpr QSize FISH_PICTURE(60, 33);
constexpr QSize SCHOOL_PICTURE(110, 60);
constexpr QSize GULL_PICTURE(240, 128);
constexpr QSize SKY_PICTURE(168, 84);
constexpr QSize HOUR_PICTURE(51, 34);
/// The intro picture keeps at least this height; it takes what the window has to spare.
constexpr int INTRO_HEIGHT = 60;

template <class Widget>
Widget* named(Widget* widget, const char* name) {
    widget->setObjectName(QLatin1String(name));
    return widget;
}

/// A label that shows a slider's value beside it, with room for every value.
QLabel* makeValueLabel(const char* name, const QString& text, const Slider* slider,
                       QWidget* parent) {
    auto* label = named(new QLabel(text, parent), name);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(
        label->fontMetrics().horizontalAdvance(slider->spoken(slider->maximum()) + "0"));
    return label;
}

/// Lets the label show the slider's value.
void showWith(QLabel* label, const Slider* slider) {
    const auto tell = [label, slider](int value) { label->setText(slider->spoken(value)); };
    tell(slider->value());
    QObject::connect(slider, &QSlider::valueChanged, label, tell);
}

/// A picture's size beside letters of the application's size; it is painted for 12 pixels high ones
/// and has twice as many pixels as needed there.
QSize besideLetters(const QSize& size) {
    const double factor = QFontInfo(QApplication::font()).pixelSize() / 12.0;
    return size * std::clamp(factor, 1.0, 2.0);
}

QString pictureFile(const char* picture) {
    return QStringLiteral(":/setup/%1.png").arg(QLatin1String(picture));
}

/// A picture of the resources; null if there is none of this name. QPixmap would let several
/// threads convert a large one, and as the last of them says that it is done, through a semaphore
/// of Qt 5.15, it may still write to the stack of this thread when that has gone on. So the picture
/// is painted into the format that a pixmap needs.
QPixmap loadPicture(const char* name) {
    const QImage file(pictureFile(name));
    if (file.isNull())
        return {};
    QImage picture(file.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(0, 0, file);
    painter.end();
    return QPixmap::fromImage(std::move(picture), Qt::NoFormatConversion);
}

/// One picture of several that have the same size.
QPixmap sideBySide(const std::vector<const char*>& pictures) {
    QPixmap strip;
    int x = 0;
    for (const char* picture : pictures) {
        const QPixmap part = loadPicture(picture);
        if (strip.isNull())
            strip = QPixmap(part.width() * static_cast<int>(pictures.size()), part.height());
        QPainter(&strip).drawPixmap(x, 0, part);
        x += part.width();
    }
    return strip;
}

void illustrate(QAbstractButton* button, const QPixmap& picture, const QSize& size) {
    button->setIcon(QIcon(picture));
    button->setIconSize(besideLetters(size));
}

void illustrate(QAbstractButton* button, const char* picture, const QSize& size) {
    illustrate(button, loadPicture(picture), size);
}

/// Numbers the choices of a box from 0. Check boxes stay without such a group: it would take all
/// but one of them off the tab key's way.
QButtonGroup* numberButtons(QGroupBox* box, const QList<QAbstractButton*>& buttons) {
    auto* group = new QButtonGroup(box);
    for (int id = 0; id < buttons.size(); ++id)
        group->addButton(buttons[id], id);
    return group;
}

QString settingsPath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1Char('/') + QLatin1String(SETTINGS_FILE);
}

/// The keys stand at the top of the file, in no named group.
KConfigGroup settingsKeys(KConfig& file) { return file.group(QString()); }

bool holdTheSame(const KConfig& a, const KConfig& b) {
    const QStringList groups = a.groupList();
    if (groups != b.groupList() || a.entryMap() != b.entryMap())
        return false;
    return std::all_of(groups.begin(), groups.end(), [&](const QString& group) {
        return a.entryMap(group) == b.entryMap(group);
    });
}

/// Saves all entries as the file `path`, or leaves that as it is and returns false. KConfig alone
/// takes a file that a full disk has cut short for saved; this one is read back before it replaces
/// the other.
bool save(const KConfig& config, const QString& path) {
    // A link stays a link.
    const QFileInfo old(path);
    const QString target = old.exists() ? old.canonicalFilePath() : path;
    if (old.exists() && !old.isWritable())
        return false;
    const QString draft = target + QLatin1String(".new");
    QFile::remove(draft);
    const std::unique_ptr<KConfig> written(config.copyTo(draft));
    bool saved = written->sync();
    written->markAsClean();
    if (old.exists())
        saved = saved && QFile::setPermissions(draft, old.permissions());
    saved = saved && holdTheSame(config, KConfig(draft, KConfig::SimpleConfig)) &&
            std::rename(QFile::encodeName(draft), QFile::encodeName(target)) == 0;
    if (!saved)
        QFile::remove(draft);
    return saved;
}

/// The one text that is not in the language file, so that it can be shown without it.
QString notSavedText(const std::string& language) {
    const struct {
        const char* language;
        const char* text;
    } texts[] = {
        {"GER", "Die Einstellungen konnten nicht gespeichert werden."},
        {"FRA", "Les réglages n’ont pas pu être enregistrés."},
        {"ESP", "No se han podido guardar los ajustes."},
        {"ITA", "Impossibile salvare le impostazioni."},
    };
    for (const auto& entry : texts)
        if (language == entry.language)
            return QString::fromUtf8(entry.text);
    return QStringLiteral("The settings could not be saved.");
}

/// Copies as many whole UTF-8 characters as have room.
void copyText(char* to, size_t room, const char* from) {
    size_t length = std::min(std::strlen(from), room - 1);
    const auto inside = [](char byte) { return (byte & 0xC0) == 0x80; };
    while (length > 0 && inside(from[length]))
        --length;
    std::memcpy(to, from, length);
    to[length] = '\0';
}

/// Shows the nearest value that the slider has without counting that as the person's choice.
void showValue(QSlider* slider, int value) {
    const QSignalBlocker blocker(slider);
    slider->setValue(value);
}

}  // namespace

KMarivistaSetup::KMarivistaSetup(QWidget* parent, Qt::WindowFlags flags)
    : KMarivistaSetup(dataFile("Language.dat"), DEFAULT_LANGUAGE, parent, flags) {}

KMarivistaSetup::KMarivistaSetup(std::string languagefile, std::string language, QWidget* parent,
                                 Qt::WindowFlags flags, const EXTRA_SETTINGS& usual_extras)
    : QDialog(parent, flags),
      actpage(0),
      usual(usual_extras),
      language_file(std::move(languagefile)),
      language_code(std::move(language)) {
    loadPictures();
    setObjectName(QStringLiteral("KMarivistaSetup"));

    auto* layout = new QGridLayout(this);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(0, 1);
    // The order of building is the order of the tab key.
    buildList();
    buildIntroPage();
    buildBoidPage();
    buildFishPage();
    buildBirdsPage();
    buildSkyPage();
    buildCameraPage();
    buildSoundPage();
    buildExtrasPage();
    buildButtons();

    init();
    resize(WINDOW_SIZE);
    fitTexts();
}

/// An empty page in the place that all pages share.
QFrame* KMarivistaSetup::addPage(const char* name) {
    auto* page = named(new QFrame(this), name);
    // Hidden pages keep claiming their room, so that the window fits all of them from the start.
    QSizePolicy policy = page->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    page->setSizePolicy(policy);
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    static_cast<QGridLayout*>(layout())->addWidget(page, 0, 1);
    return page;
}

void KMarivistaSetup::buildList() {
    sellist = named(new QListWidget(this), "sellist");
    sellist->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    sellist->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    static_cast<QGridLayout*>(layout())->addWidget(sellist, 0, 0);
    connect(sellist, &QListWidget::currentRowChanged, this, &KMarivistaSetup::changePage);
    // Picking the page that is shown already counts as highlighting it, too.
    connect(sellist, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { changePage(sellist->row(item)); });
}

void KMarivistaSetup::buildIntroPage() {
    page_intro = addPage("page_intro");
    PixmapLabel1 = named(new Banner(page_intro), "PixmapLabel1");
    PixmapLabel1->setPixmap(loadPicture("lagoon"));
    PixmapLabel1->setMinimumHeight(INTRO_HEIGHT);
    infotext = named(new QLabel(QStringLiteral("Infotext"), page_intro), "infotext");
    infotext->setWordWrap(true);
    infotext->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    hyperlink = named(new Link(page_intro), "hyperlink");
    hyperlink->setText(QStringLiteral("url"));
    hyperlink->setUseTips(true);
    connect(hyperlink, QOverload<>::of(&KUrlLabel::leftClickedUrl), this,
            [this] { leftClickedURL(hyperlink->url()); });

    auto* column = static_cast<QVBoxLayout*>(page_intro->layout());
    column->addWidget(PixmapLabel1, 1);
    column->addWidget(infotext);
    column->addWidget(hyperlink, 0, Qt::AlignLeft);
}

void KMarivistaSetup::buildBoidPage() {
    page_boid = addPage("page_boid");
    boidtype_txt = named(new TitledBox(page_boid), "boidtype_txt");
    boidtype_radio1 = named(new QRadioButton(boidtype_txt), "boidtype_radio1");
    boidtype_radio2 = named(new QRadioButton(boidtype_txt), "boidtype_radio2");
    illustrate(boidtype_radio1, "boid1", SCHOOL_PICTURE);
    illustrate(boidtype_radio2, "boid2", SCHOOL_PICTURE);
    auto* types = new QHBoxLayout(boidtype_txt);
    types->addWidget(boidtype_radio1);
    types->addWidget(boidtype_radio2);
    connect(numberButtons(boidtype_txt, {boidtype_radio1, boidtype_radio2}),
            &QButtonGroup::idClicked, this, &KMarivistaSetup::boidtype_clicked);

    boidcount_txt = named(new TitledBox(page_boid), "boidcount_txt");
    auto* slider = named(new Slider(0, 4, 1, boidcount_txt, SCHOOL_STEP), "boidcount_slider");
    boidcount_slider = slider;
    boidcount_edit = makeValueLabel("boidcount_edit", QStringLiteral("20"), slider, boidcount_txt);
    boidcount_edit->setBuddy(slider);
    auto* count = new QHBoxLayout(boidcount_txt);
    count->addWidget(boidcount_slider);
    count->addWidget(boidcount_edit);
    connect(boidcount_slider, &QSlider::valueChanged, this,
            &KMarivistaSetup::boidcount_slider_valueChanged);

    auto* column = static_cast<QVBoxLayout*>(page_boid->layout());
    column->addWidget(boidtype_txt);
    column->addWidget(boidcount_txt);
    column->addStretch();
}

void KMarivistaSetup::buildFishPage() {
    page_fish = addPage("page_fish");
    fishspecies_txt = named(new TitledBox(page_fish), "fishspecies_txt");
    QCheckBox** const boxes[] = {&fishspecies1, &fishspecies2, &fishspecies3, &fishspecies4,
                                 &fishspecies5, &fishspecies6, &fishspecies7, &fishspecies8};
    constexpr int COLUMNS = 3;
    auto* grid = new QGridLayout(fishspecies_txt);
    int id = 0;
    for (QCheckBox** const member : boxes) {
        auto* box = new QCheckBox(fishspecies_txt);
        box->setObjectName(QStringLiteral("fishspecies%1").arg(id + 1));
        const QByteArray picture = "fish" + QByteArray::number(id + 1);
        illustrate(box, picture.constData(), FISH_PICTURE);
        grid->addWidget(box, id / COLUMNS, id % COLUMNS);
        connect(box, &QCheckBox::clicked, this, [this, id] { fishspecies_clicked(id); });
        *member = box;
        ++id;
    }

    fishcount_txt = named(new TitledBox(page_fish), "fishcount_txt");
    auto* slider = named(new Slider(0, 10, 1, fishcount_txt), "fishcount_slider");
    fishcount_slider = slider;
    fishcount_edit = makeValueLabel("fishcount_edit", QStringLiteral("10"), slider, fishcount_txt);
    fishcount_edit->setBuddy(slider);
    auto* count = new QHBoxLayout(fishcount_txt);
    count->addWidget(fishcount_slider);
    count->addWidget(fishcount_edit);
    connect(fishcount_slider, &QSlider::valueChanged, this,
            &KMarivistaSetup::fishcount_slider_valueChanged);

    auto* column = static_cast<QVBoxLayout*>(page_fish->layout());
    column->addWidget(fishspecies_txt);
    column->addWidget(fishcount_txt);
    column->addStretch();
}

void KMarivistaSetup::buildBirdsPage() {
    page_birds = addPage("page_birds");
    birdspecies_txt = named(new TitledBox(page_birds), "birdspecies_txt");
    birdspecies1 = named(new QCheckBox(birdspecies_txt), "birdspecies1");
    illustrate(birdspecies1, "gull", GULL_PICTURE);
    (new QVBoxLayout(birdspecies_txt))->addWidget(birdspecies1);
    connect(birdspecies1, &QCheckBox::clicked, this, [this] { birdtype_clicked(0); });

    auto* column = static_cast<QVBoxLayout*>(page_birds->layout());
    column->addWidget(birdspecies_txt);
    column->addStretch();
}

void KMarivistaSetup::buildSkyPage() {
    page_sky = addPage("page_sky");
    sky_txt = named(new TitledBox(page_sky), "sky_txt");
    sky_radio1 = named(new QRadioButton(sky_txt), "sky_radio1");
    sky_radio2 = named(new QRadioButton(sky_txt), "sky_radio2");
    illustrate(sky_radio1, "cloudy", SKY_PICTURE);
    illustrate(sky_radio2, "cloudless", SKY_PICTURE);
    auto* choices = new QVBoxLayout(sky_txt);
    choices->addWidget(sky_radio1);
    choices->addWidget(sky_radio2);
    connect(numberButtons(sky_txt, {sky_radio1, sky_radio2}), &QButtonGroup::idClicked, this,
            &KMarivistaSetup::sky_clicked);

    auto* column = static_cast<QVBoxLayout*>(page_sky->layout());
    column->addWidget(sky_txt);
    column->addStretch();
}

void KMarivistaSetup::buildCameraPage() {
    page_camera = addPage("page_camera");
    camera_txt = named(new TitledBox(page_camera), "camera_txt");
    camerapos_combo = named(new QComboBox(camera_txt), "camerapos_combo");
    auto* grid = new QGridLayout(camera_txt);
    grid->setColumnStretch(1, 1);
    grid->addWidget(camerapos_combo, 0, 0, 1, 3);

    const auto addRow = [&](QLabel** label, const char* label_name, QSlider** slider,
                            const char* slider_name, Slider* made) {
        *label = named(new QLabel(camera_txt), label_name);
        *slider = named(made, slider_name);
        (*label)->setBuddy(made);
        QLabel* value = makeValueLabel("", QString(), made, camera_txt);
        showWith(value, made);
        const int row = grid->rowCount();
        grid->addWidget(*label, row, 0);
        grid->addWidget(made, row, 1);
        grid->addWidget(value, row, 2);
        travel_rows.insert(travel_rows.end(), {*label, made, value});
    };
    addRow(&scrollspeed_txt, "scrollspeed_txt", &scrollspeed_slider, "scrollspeed_slider",
           new Slider(1, 9, 1, camera_txt, 1, " °/s"));
    addRow(&resttop_txt, "resttop_txt", &resttop_slider, "resttop_slider",
           new Slider(1, 60, 5, camera_txt, 1, " s"));
    addRow(&restbottom_txt, "restbottom_txt", &restbottom_slider, "restbottom_slider",
           new Slider(5, 60, 5, camera_txt, 1, " s"));
    // A fixed camera hides these; what is left must not move.
    for (QWidget* widget : travel_rows) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }

    connect(camerapos_combo, QOverload<int>::of(&QComboBox::activated), this,
            &KMarivistaSetup::camerapos_activated);
    connect(scrollspeed_slider, &QSlider::valueChanged, this,
            &KMarivistaSetup::scrollspeed_valueChanged);
    connect(resttop_slider, &QSlider::valueChanged, this, &KMarivistaSetup::resttop_valueChanged);
    connect(restbottom_slider, &QSlider::valueChanged, this,
            &KMarivistaSetup::restbottom_valueChanged);

    auto* column = static_cast<QVBoxLayout*>(page_camera->layout());
    column->addWidget(camera_txt);
    column->addStretch();
}

void KMarivistaSetup::buildSoundPage() {
    page_sound = addPage("page_sound");
    sound_txt = named(new TitledBox(page_sound), "sound_txt");
    usesound = named(new QCheckBox(sound_txt), "usesound");
    (new QVBoxLayout(sound_txt))->addWidget(usesound);
    connect(usesound, &QCheckBox::toggled, this, &KMarivistaSetup::usesound_changed);

    auto* column = static_cast<QVBoxLayout*>(page_sound->layout());
    column->addWidget(sound_txt);
    column->addStretch();
}

void KMarivistaSetup::buildExtrasPage() {
    page_extras = addPage("page_extras");
    daytime_txt = named(new TitledBox(page_extras), "daytime_txt");
    daytime_radio1 = named(new QRadioButton(daytime_txt), "daytime_radio1");
    daytime_radio2 = named(new QRadioButton(daytime_txt), "daytime_radio2");
    illustrate(daytime_radio1, sideBySide({"noon"}), HOUR_PICTURE);
    illustrate(daytime_radio2, sideBySide({"morning", "evening", "night"}),
               {3 * HOUR_PICTURE.width(), HOUR_PICTURE.height()});
    auto* choices = new QVBoxLayout(daytime_txt);
    choices->addWidget(daytime_radio1);
    choices->addWidget(daytime_radio2);
    connect(numberButtons(daytime_txt, {daytime_radio1, daytime_radio2}), &QButtonGroup::idClicked,
            this, [this](int id) { extras.daytime = id; });

    volume_txt = named(new TitledBox(page_extras), "volume_txt");
    auto* slider = named(new Slider(0, 100, 10, volume_txt, 1, " %"), "volume_slider");
    volume_slider = slider;
    QLabel* value = makeValueLabel("", QString(), slider, volume_txt);
    auto* row = new QHBoxLayout(volume_txt);
    row->addWidget(slider);
    row->addWidget(value);
    showWith(value, slider);
    connect(slider, &QSlider::valueChanged, this, [this](int volume) { extras.volume = volume; });

    trueproportions = named(new QCheckBox(page_extras), "trueproportions");
    connect(trueproportions, &QCheckBox::toggled, this,
            [this](bool on) { extras.proportions = on; });

    auto* column = static_cast<QVBoxLayout*>(page_extras->layout());
    column->addWidget(daytime_txt);
    column->addWidget(volume_txt);
    column->addWidget(trueproportions);
    column->addStretch();
}

void KMarivistaSetup::buildButtons() {
    auto* box = new QDialogButtonBox(this);
    okbutton = named(new QPushButton(QStringLiteral("OK"), box), "okbutton");
    cancelbutton = named(new QPushButton(QStringLiteral("Cancel"), box), "cancelbutton");
    // The box puts the buttons in the order that the desktop is used to.
    box->addButton(okbutton, QDialogButtonBox::AcceptRole);
    box->addButton(cancelbutton, QDialogButtonBox::RejectRole);
    okbutton->setDefault(true);
    static_cast<QGridLayout*>(layout())->addWidget(box, 1, 0, 1, 2);
    connect(okbutton, &QPushButton::clicked, this, &KMarivistaSetup::writeConfig);
    connect(cancelbutton, &QPushButton::clicked, this, &KMarivistaSetup::reject);
}

/// By id. Dotted comes before yellow and blue here, unlike in the record: the boxes stand in that
/// order on the page.
std::array<KMarivistaSetup::SPECIES_BOX, 8> KMarivistaSetup::speciesBoxes() const {
    return {{
        {fishspecies1, &SaverSettings::fish_red},
        {fishspecies2, &SaverSettings::fish_blue},
        {fishspecies3, &SaverSettings::fish_stripe},
        {fishspecies4, &SaverSettings::fish_dot},
        {fishspecies5, &SaverSettings::fish_yell_blu},
        {fishspecies6, &SaverSettings::fish_big_grey},
        {fishspecies7, &SaverSettings::fish_big_red},
        {fishspecies8, &SaverSettings::fish_manta},
    }};
}

void KMarivistaSetup::init() {
    LanguagePack texts;
    actpage = 0;
    readConfig();
    texts.openFile(language_file.c_str());
    texts.setLanguage(language_code.c_str());
    const auto text = [&texts](const char* key) { return QString::fromUtf8(texts.getString(key)); };

    pages.clear();
    sellist->clear();
    const struct {
        const char* key;
        QFrame* frame;
    } list[] = {
        {"intro", page_intro}, {"boid", page_boid},     {"fish", page_fish},
        {"birds", page_birds}, {"sky", page_sky},       {"camera", page_camera},
        {"sound", page_sound}, {"extras", page_extras},
    };
    for (const auto& entry : list) {
        FramePage page = {};
        copyText(page.name, sizeof page.name, texts.getString(entry.key));
        page.frame = entry.frame;
        pages.push_back(page);
    }
    for (const FramePage& page : pages) {
        sellist->addItem(QString::fromUtf8(page.name));
        page.frame->hide();
    }
    pages[0].frame->show();
    sellist->setCurrentRow(0);

    // Highlighting the first entry has set a caption of its own; this one stands until the person
    // picks a page.
    setWindowTitle(text("caption"));
    cancelbutton->setText(text("cancel"));
    infotext->setText(text("infotxt"));
    hyperlink->setText(text("hyperlink_txt"));
    hyperlink->setUrl(text("hyperlink"));

    boidtype_txt->setTitle(text("boidtype"));
    boidcount_txt->setTitle(text("boidcount"));
    boidtype_radio1->setChecked(settings.boidmodel == 0);
    boidtype_radio2->setChecked(settings.boidmodel == 1);
    showValue(boidcount_slider, settings.boidcount / SCHOOL_STEP);
    boidcount_slider_valueChanged(boidcount_slider->value());

    fishspecies_txt->setTitle(text("fishtype"));
    fishcount_txt->setTitle(text("fishcount"));
    for (const SPECIES_BOX& species : speciesBoxes())
        species.box->setChecked(settings.*species.flag);
    showValue(fishcount_slider, settings.fishcount);
    fishcount_slider_valueChanged(settings.fishcount);

    birdspecies_txt->setTitle(text("birdtype"));
    birdspecies1->setChecked(settings.bird_gull);

    sky_txt->setTitle(text("skytext"));
    sky_radio1->setChecked(settings.skytype == 0);
    sky_radio2->setChecked(settings.skytype == 1);
    sky_radio1->setText(text("cloudy"));
    sky_radio2->setText(text("cloudless"));

    camera_txt->setTitle(text("cameratext"));
    camerapos_combo->clear();
    for (const char* key : {"automatic", "top", "middle", "bottom"})
        camerapos_combo->addItem(text(key));
    scrollspeed_txt->setText(text("scrollspeed"));
    resttop_txt->setText(text("resttime_top"));
    restbottom_txt->setText(text("resttime_bottom"));
    // What is out of range becomes what the slider shows.
    scrollspeed_slider->setValue(settings.cameraspeed);
    scrollspeed_valueChanged(scrollspeed_slider->value());
    resttop_slider->setValue(settings.camerafix_top);
    resttop_valueChanged(resttop_slider->value());
    restbottom_slider->setValue(settings.camerafix_bottom);
    restbottom_valueChanged(restbottom_slider->value());
    // The combo stays on its first entry, whatever the stored position: a position changes only
    // when the person activates an entry.

    nameAnimals(texts);
    sellist->setAccessibleName(text("pages"));
    sound_txt->setTitle(text("soundtext"));
    usesound->setText(text("on_off"));
    usesound->setChecked(settings.soundOn);

    daytime_txt->setTitle(text("daytime"));
    daytime_radio1->setText(text("noon"));
    daytime_radio2->setText(text("clock"));
    daytime_radio1->setChecked(extras.daytime == 0);
    daytime_radio2->setChecked(extras.daytime == 1);
    volume_txt->setTitle(text("volume"));
    volume_slider->setValue(extras.volume);
    trueproportions->setText(text("proportions"));
    trueproportions->setChecked(extras.proportions == 1);
}

/// Names the buttons that show an animal and nothing else: for the pointer that rests on them, and
/// for those who cannot see the picture. Without a text the scientific name serves.
void KMarivistaSetup::nameAnimals(LanguagePack& texts) {
    const struct {
        QAbstractButton* button;
        const char* key;
        const char* species;
    } animals[] = {
        {boidtype_radio1, "school_silver", "Caesio caerulaurea"},
        {boidtype_radio2, "school_angel", "Centropyge bicolor"},
        {fishspecies1, "fish_red", "Pseudanthias squamipinnis"},
        {fishspecies2, "fish_blue", "Paracanthurus hepatus"},
        {fishspecies3, "fish_stripe", "Zanclus cornutus"},
        {fishspecies4, "fish_dot", "Cephalopholis miniata"},
        {fishspecies5, "fish_yell_blu", "Chaetodontoplus septentrionalis"},
        {fishspecies6, "fish_big_grey", "Plectorhinchus flavomaculatus"},
        {fishspecies7, "fish_big_red", "Lutjanus sebae"},
        {fishspecies8, "fish_manta", "Mobula birostris"},
        {birdspecies1, "gull", "Larus argentatus"},
    };
    for (const auto& animal : animals) {
        const QString text = QString::fromUtf8(texts.getString(animal.key));
        const QString name = text.isEmpty() ? QString::fromLatin1(animal.species) : text;
        animal.button->setToolTip(name);
        animal.button->setAccessibleName(name);
    }
}

/// Gives the list and the information text the room that their texts need, and the sliders and the
/// combo the names that screen readers give them.
void KMarivistaSetup::fitTexts() {
    const QFontMetrics letters = sellist->fontMetrics();
    for (int row = 0; row < sellist->count(); ++row) {
        QListWidgetItem* item = sellist->item(row);
        item->setSizeHint(
            QSize(letters.horizontalAdvance(item->text()) + 12, letters.height() + 8));
    }
    sellist->setFixedWidth(sellist->sizeHintForColumn(0) + 2 * sellist->frameWidth());
    // The window's smallest size does not follow from texts that wrap by themselves.
    layout()->activate();
    page_intro->layout()->activate();
    const int width = infotext->width();
    infotext->setMinimumSize(width, std::max(0, infotext->heightForWidth(width)));

    boidcount_slider->setAccessibleName(boidcount_txt->title());
    fishcount_slider->setAccessibleName(fishcount_txt->title());
    volume_slider->setAccessibleName(volume_txt->title());
    camerapos_combo->setAccessibleName(camera_txt->title());
    scrollspeed_slider->setAccessibleName(scrollspeed_txt->text());
    resttop_slider->setAccessibleName(resttop_txt->text());
    restbottom_slider->setAccessibleName(restbottom_txt->text());
}

void KMarivistaSetup::readConfig() {
    const std::unique_ptr<KConfig> file = openSettings(QLatin1String(SETTINGS_FILE));
    const KConfigGroup keys = settingsKeys(*file);
    const SaverSettings defaults;
    for (const SETTING& setting : settings_written) {
        if (setting.number)
            settings.*setting.number = keys.readEntry(setting.key, defaults.*setting.number);
        else
            settings.*setting.flag = keys.readEntry(setting.key, defaults.*setting.flag);
    }
    for (const EXTRA_SETTING& setting : extra_settings)
        extras.*setting.field = std::clamp(keys.readEntry(setting.key, usual.*setting.field),
                                           setting.low, setting.high);
}

void KMarivistaSetup::writeConfig() {
    const std::unique_ptr<KConfig> everyone = openSettings(QLatin1String(SETTINGS_FILE));
    if (everyone->name().isEmpty()) {  // What stands in the file's place takes no settings.
        tellNotSaved();
        return;
    }
    KConfig file(settingsPath(), KConfig::SimpleConfig);
    KConfigGroup keys = settingsKeys(file);
    // What the administrator has set for everyone stays theirs to change: it comes into the
    // person's own file only when the person wants something else.
    everyone->setReadDefaults(true);
    const KConfigGroup shared = settingsKeys(*everyone);
    const auto write = [&](const char* key, auto value) {
        const bool same = shared.hasKey(key) && shared.readEntry(key, value) == value;
        if (keys.hasKey(key) || !same)
            keys.writeEntry(key, value);
    };
    for (const SETTING& setting : settings_written) {
        if (setting.number)
            write(setting.key, settings.*setting.number);
        else
            write(setting.key, settings.*setting.flag);
    }
    for (const EXTRA_SETTING& setting : extra_settings)
        if (extras.*setting.field != usual.*setting.field || keys.hasKey(setting.key) ||
            shared.hasKey(setting.key))
            write(setting.key, extras.*setting.field);
    if (save(file, settingsPath()))
        accept();
    else
        tellNotSaved();
    file.markAsClean();
}

void KMarivistaSetup::tellNotSaved() {
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Atollia"), notSavedText(language_code),
                    QMessageBox::Ok, this);
    box.setInformativeText(QDir::toNativeSeparators(settingsPath()));
    box.exec();
}

void KMarivistaSetup::leftClickedURL(const QString& url) { QDesktopServices::openUrl(QUrl(url)); }

void KMarivistaSetup::changePage(int index) {
    // Replaces the caption of the language file for good: a known oddity that is kept.
    setWindowTitle(QStringLiteral("frame changed"));
    if (index < 0 || index >= static_cast<int>(pages.size()) || index == actpage)
        return;
    // One repaint for both, or the gap between them would flash.
    setUpdatesEnabled(false);
    pages[actpage].frame->hide();
    actpage = index;
    pages[actpage].frame->show();
    setUpdatesEnabled(true);
}

void KMarivistaSetup::boidcount_slider_valueChanged(int value) {
    boidcount_edit->setText(QString::number(value * SCHOOL_STEP));
    settings.boidcount = value * SCHOOL_STEP;
}

void KMarivistaSetup::boidtype_clicked(int id) { settings.boidmodel = id; }

void KMarivistaSetup::fishspecies_clicked(int id) {
    const auto boxes = speciesBoxes();
    if (id < 0 || id >= static_cast<int>(boxes.size()))
        return;
    const SPECIES_BOX& species = boxes[id];
    settings.*species.flag = species.box->isChecked();
}

void KMarivistaSetup::fishcount_slider_valueChanged(int value) {
    fishcount_edit->setText(QString::number(value));
    settings.fishcount = value;
}

void KMarivistaSetup::birdtype_clicked(int) { settings.bird_gull = birdspecies1->isChecked(); }

void KMarivistaSetup::sky_clicked(int id) { settings.skytype = id; }

void KMarivistaSetup::camerapos_activated(int index) {
    settings.camerapos = index;
    // Speed and rest times concern the camera that travels by itself only.
    for (QWidget* widget : travel_rows)
        widget->setVisible(index == 0);
}

void KMarivistaSetup::scrollspeed_valueChanged(int value) { settings.cameraspeed = value; }

void KMarivistaSetup::resttop_valueChanged(int value) { settings.camerafix_top = value; }

void KMarivistaSetup::restbottom_valueChanged(int value) { settings.camerafix_bottom = value; }

void KMarivistaSetup::usesound_changed(bool on) { settings.soundOn = on; }
