// What the setup dialog's pages are made of, beyond the toolkit's own.
#pragma once

#include <KUrlLabel>
#include <QGroupBox>
#include <QLabel>
#include <QSlider>

/// A link that the keyboard reaches and opens too, and that screen readers call a link.
class Link : public KUrlLabel {
public:
    explicit Link(QWidget* parent);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

/// Fills whatever room it has with the middle of its picture.
class Banner : public QLabel {
public:
    using QLabel::QLabel;
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSizeHint() const override { return minimumSize(); }

protected:
    void paintEvent(QPaintEvent*) override;
};

/// A box whose title is never cut. Styles measure a title without the space around its letters and
/// then lose the end of long ones; measuring wider letters leaves room for that.
class TitledBox : public QGroupBox {
public:
    using QGroupBox::QGroupBox;

protected:
    void paintEvent(QPaintEvent*) override;
};

/// A horizontal slider in steps of 1, each of which the mouse can reach, with a mark every `tick`
/// steps. People see and hear its value times `factor`, with the unit behind it.
class Slider : public QSlider {
public:
    Slider(int low, int high, int tick, QWidget* parent, int factor = 1, const char* unit = "");

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    /// A value as people read it, for example "30 s".
    QString spoken(int value) const;

    const int factor;

private:
    const QString unit;
};
