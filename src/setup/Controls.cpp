#include "setup/Controls.h"

#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>
#include <QStyleOptionGroupBox>
#include <QStylePainter>

namespace {

/// Pixels of a slider's way from one value to the next, at least.
constexpr int STEP_WIDTH = 1;
/// What styles that draw marks below the groove cut from the top of the knob, in pixels.
constexpr int KNOB_OVERLAP = 4;

class AccessibleLink : public QAccessibleWidget {
public:
    explicit AccessibleLink(Link& link) : QAccessibleWidget(&link, QAccessible::Link), link(link) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? link.text() : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.linked = true;
        return state;
    }
    QStringList actionNames() const override {
        return QAccessibleWidget::actionNames() << pressAction();
    }
    void doAction(const QString& name) override {
        if (name == pressAction())
            emit link.leftClickedUrl();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    Link& link;
};

class AccessibleSlider : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit AccessibleSlider(Slider& slider)
        : QAccessibleWidget(&slider, QAccessible::Slider), slider(slider) {}

    void* interface_cast(QAccessible::InterfaceType kind) override {
        if (kind == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface*>(this);
        return QAccessibleWidget::interface_cast(kind);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? slider.spoken(slider.value())
                                          : QAccessibleWidget::text(kind);
    }
    QVariant currentValue() const override { return slider.value() * slider.factor; }
    void setCurrentValue(const QVariant& value) override {
        slider.setValue(value.toInt() / slider.factor);
    }
    QVariant maximumValue() const override { return slider.maximum() * slider.factor; }
    QVariant minimumValue() const override { return slider.minimum() * slider.factor; }
    QVariant minimumStepSize() const override { return slider.factor; }

private:
    Slider& slider;
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    if (auto* link = dynamic_cast<Link*>(object))
        return new AccessibleLink(*link);
    if (auto* slider = dynamic_cast<Slider*>(object))
        return new AccessibleSlider(*slider);
    return nullptr;
}

/// The toolkit asks the factory from now on; installing it again changes nothing.
void installAccessibility() {
    QAccessible::removeFactory(makeAccessible);
    QAccessible::installFactory(makeAccessible);
}

}  // namespace

Link::Link(QWidget* parent) : KUrlLabel(parent) {
    setFocusPolicy(Qt::StrongFocus);
    installAccessibility();
}

void Link::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_Space:
            emit leftClickedUrl();
            break;
        default:
            KUrlLabel::keyPressEvent(event);
    }
}

void Link::paintEvent(QPaintEvent* event) {
    KUrlLabel::paintEvent(event);
    if (!hasFocus())
        return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    QPainter painter(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}

void Banner::paintEvent(QPaintEvent*) {
    const QPixmap picture = pixmap(Qt::ReturnByValue);
    if (picture.isNull())
        return;
    const QSizeF part = QSizeF(size()).scaled(picture.size(), Qt::KeepAspectRatio);
    QRectF source(QPointF(), part);
    source.moveCenter(QRectF(picture.rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRectF(rect()), picture, source);
}

void TitledBox::paintEvent(QPaintEvent*) {
    QStyleOptionGroupBox option;
    initStyleOption(&option);
    QFont wider = font();
    wider.setStretch(105);
    option.fontMetrics = QFontMetrics(wider, this);
    QStylePainter(this).drawComplexControl(QStyle::CC_GroupBox, option);
}

Slider::Slider(int low, int high, int tick, QWidget* parent, int factor, const char* unit)
    : QSlider(Qt::Horizontal, parent), factor(factor), unit(QString::fromUtf8(unit)) {
    installAccessibility();
    setRange(low, high);
    setSingleStep(1);
    setPageStep(1);
    setTickPosition(QSlider::TicksBelow);
    setTickInterval(tick);
    setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Fixed);
}

// The toolkit's smallest size follows from this one.
QSize Slider::sizeHint() const {
    const int knob = style()->pixelMetric(QStyle::PM_SliderLength, nullptr, this);
    const int way = (maximum() - minimum()) * STEP_WIDTH + knob;
    return QSlider::sizeHint().expandedTo(QSize(way, 0)) + QSize(0, KNOB_OVERLAP);
}

QSize Slider::minimumSizeHint() const { return sizeHint(); }

QString Slider::spoken(int value) const { return QString::number(value * factor) + unit; }
